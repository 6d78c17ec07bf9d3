/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_OBJECTS_ACCESS_LISTS_H
#define PUBSEC_OBJECTS_ACCESS_LISTS_H

#include <pubsecstack/access.h>

/* "AccessRecordList" with as many records as the first one's dwRecordNum, taken as signed; nothing for none. */
void PubSecAddAccessRecordList(struct cJSON* ptElement, const TPubSecAccessRecordInfo* ptRecords);

/* "AccessRecordObject": [...] with that number of records. */
void PubSecAddAccessRecords(struct cJSON* ptObject, const TPubSecAccessRecordInfo* ptRecords);

#endif
