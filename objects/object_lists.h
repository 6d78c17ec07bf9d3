/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What image, slice and file documents share: lists of objects of one kind, each object with its sub-images. Their
 * rules differ in when a list is written and whether sub-images are; both are said by the caller.
 */
#ifndef PUBSEC_OBJECTS_OBJECT_LISTS_H
#define PUBSEC_OBJECTS_OBJECT_LISTS_H

#include <pubsecstack/image.h>

#include "objects/member_table.h"

/* When a record's "SubImageList" is written. */
enum EPubSecSubImageRule : u32
{
    PUBSEC_SUB_IMAGES_NEVER,
    PUBSEC_SUB_IMAGES_IF_ANY,   /* pointer not null and count above 0 */
    PUBSEC_SUB_IMAGES_IF_GIVEN, /* pointer not null; a count of 0 or less gives an empty array */
};

/* A kind of object: its keys, its members, and how its records lie in an array. */
struct TPubSecObjectKind
{
    const char* pchList;       /* around the array within an image, slice or file */
    const char* pchListObject; /* around the array in a document of its own */
    const char* pchObject;     /* the array, and a single object */
    const TPubSecTable* ptTable;
    u32 dwRecordSize;
    u32 dwSubImageNum;     /* offset of the count ... */
    u32 dwSubImageNumSize; /* ... and its size: 2 bytes unsigned or 4 bytes signed */
    u32 dwSubImageList;    /* offset of the pointer */
};

/* Records of one kind in a row. */
struct TPubSecObjectArray
{
    const TPubSecObjectKind* ptKind;
    const void* pvRecords;
    s32 nNum;
};

extern const TPubSecObjectKind c_tPersonKind;
extern const TPubSecObjectKind c_tFaceKind;
extern const TPubSecObjectKind c_tMotorVehicleKind;
extern const TPubSecObjectKind c_tNonMotorVehicleKind;
extern const TPubSecObjectKind c_tThingKind;
extern const TPubSecObjectKind c_tSceneKind;
extern const TPubSecObjectKind c_tIllegalRecordKind;
extern const TPubSecObjectKind c_tNonMotorIllegalRecordKind;

/* Each returns false when a node could not be made; what was made stays. */

/* "SubImageList" {"SubImageInfoObject": [...]} with one object per sub-image; a count below 0 is none. */
bool PubSecAddSubImages(struct cJSON* ptObject, const TPubSecSubImageInfo* ptSubImages, s32 nCount);

/* The record's members, and its sub-images by the rule. */
bool PubSecAddObject(struct cJSON* ptObject, const TPubSecObjectKind& tKind, const void* pvRecord,
                     EPubSecSubImageRule eSubImages);

/* pchList {pchObject: [...]} with one object per record of a contiguous array. */
bool PubSecAddObjectList(struct cJSON* ptObject, const char* pchList, const TPubSecObjectKind& tKind,
                         const void* pvRecords, u32 dwNum, EPubSecSubImageRule eSubImages);

/* The array under the kind's pchList unless its pointer is null; a count below 0 gives an empty one. */
bool PubSecAddArrayIfGiven(struct cJSON* ptElement, const TPubSecObjectArray& tArray, EPubSecSubImageRule eSubImages);

/*
 * For trees of the host's: form 1 with one record adds the object itself under pchObject, any other combination adds a
 * list under pchListObject. 50 added; 80 for a null argument or a number that is not 1 to 256; 51 no memory.
 */
u32 PubSecAddByForm(struct cJSON* ptRoot, const TPubSecObjectKind& tKind, u32 dwForm, u16 wNum, const void* pvRecords);

/* Makes what was added to a host's tree its own (PubSecJsonOwnAfter); the result so far, or 51 when memory lacks. */
u32 PubSecOwnAdded(struct cJSON* ptRoot, const struct cJSON* ptFormerLast, u32 dwRet);

constexpr u32 PUBSEC_FORM_LIST = 0;
constexpr u32 PUBSEC_FORM_SINGLE = 1;
constexpr u16 PUBSEC_FORM_MAX = 256;

#endif
