/* SPDX-License-Identifier: Apache-2.0 */
/* Objects in JSON trees of the host's own. */
#ifndef PUBSECSTACK_DOCUMENTS_H
#define PUBSECSTACK_DOCUMENTS_H

#include <pubsecstack/disposition.h>
#include <pubsecstack/face.h>
#include <pubsecstack/motor_vehicle.h>
#include <pubsecstack/non_motor_vehicle.h>
#include <pubsecstack/person.h>
#include <pubsecstack/results.h>

PUBSEC_C_BEGIN

/*
 * Adds faces to an object of a tree that the host made with cJSON, and that it prints and deletes itself. The texts are
 * copied: the records may change or go away afterwards. Keys refer to the library's constants.
 *
 * ptRoot   the object to add to; not null
 * dwMode   1 together with wNum 1 adds one object, "FaceObject"; any other combination adds "FaceListObject" with the
 *          array "FaceObject"
 * wNum     number of records, 1 to 256
 * ptFaces  wNum records in a row, each written with its sub-images; not null
 *
 * Returns PUBSEC_OK; PUBSEC_ERR_PARAM for a null argument or a number out of range (nothing is added);
 * PUBSEC_ERR_FAILED when memory runs out on the way (what was added stays). Does not block. Any thread, as long as no
 * other works on the tree.
 */
PUBSEC_API u32 PubSecFaceObjectStructToJsonObject(struct cJSON* ptRoot, u32 dwMode, u16 wNum,
                                                  const TPubSecFaceObjInfo* ptFaces);

/* The same for persons: "PersonObject", "PersonListObject". */
PUBSEC_API u32 PubSecPersonObjectStructToJsonObject(struct cJSON* ptRoot, u32 dwMode, u16 wNum,
                                                    const TPubSecPersonnelObjInfo* ptPersons);

/* The same for motor vehicles: "MotorVehicleObject", "MotorVehicleListObject". */
PUBSEC_API u32 PubSecMotorVehicleObjectStructToJsonObject(struct cJSON* ptRoot, u32 dwMode, u16 wNum,
                                                          const TPubSecMotorVehicleObjInfo* ptVehicles);

/* The same for non-motor vehicles: "NonMotorVehicleObject", "NonMotorVehicleListObject". */
PUBSEC_API u32 PubSecNonMotorVehicleObjectStructToJsonObject(struct cJSON* ptRoot, u32 dwMode, u16 wNum,
                                                             const TPubSecNonMotorVehicleObjInfo* ptVehicles);

/*
 * Adds disposition notifications to an object of the host's own tree, on the same terms.
 *
 * dwForm     1 together with wNum 1 adds one object, "DispositionNotificationObject"; any other combination adds
 *            "DispositionNotificationListObject" with the array "DispositionNotificationObject"
 * wNum       number of notifications, 1 to 256
 *
 * Returns as above, and the first result other than PUBSEC_OK of an object within a notification: PUBSEC_ERR_PARAM for
 * a disposition list or one of its arrays whose number is out of range or whose pointer is null (what was added stays).
 */
PUBSEC_API u32 PubSecDispositionNotificationObjectStructToJsonObject(struct cJSON* ptParent, u32 dwForm, u16 wNum,
                                                                     const TPubSecDispoNotifyObj* ptObjects);

/* Adds the array "DispositionListObject" with wNum entries, 1 to 256; dwForm is ignored. Returns as above. */
PUBSEC_API u32 PubSecDispositionListObjectStructToJsonObject(struct cJSON* ptParent, u32 dwForm, u16 wNum,
                                                             const TPubSecDispositionListObj* ptEntries);

/*
 * The document that PubSecPostDispositionNotification sends, as unformatted text; the host releases it with free, or
 * with cJSON_free when it gave cJSON an allocator of its own. Null for a null list, a null array, a number of
 * notifications that is not 1 to 256, and when memory runs out.
 */
PUBSEC_API char* PubSecDispositionNotificationStructToString(const TPubsecDispositionNotificationList* ptList);

PUBSEC_C_END

#endif
