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
    u32 dwSubImageNum;  /* offset of the s32 count */
    u32 dwSubImageList; /* offset of the pointer */
};

extern const TPubSecObjectKind c_tPersonKind;
extern const TPubSecObjectKind c_tFaceKind;
extern const TPubSecObjectKind c_tMotorVehicleKind;
extern const TPubSecObjectKind c_tNonMotorVehicleKind;
extern const TPubSecObjectKind c_tThingKind;
extern const TPubSecObjectKind c_tSceneKind;

/* Each returns false when a node could not be made; what was made stays. */

/* "SubImageList" {"SubImageInfoObject": [...]} with one object per sub-image; a count below 0 is none. */
bool PubSecAddSubImages(struct cJSON* ptObject, const TPubSecSubImageInfo* ptSubImages, s32 nCount);

/* The record's members, and its sub-images by the rule. */
bool PubSecAddObject(struct cJSON* ptObject, const TPubSecObjectKind& tKind, const void* pvRecord,
                     EPubSecSubImageRule eSubImages);

/* pchList {pchObject: [...]} with one object per record of a contiguous array. */
bool PubSecAddObjectList(struct cJSON* ptObject, const char* pchList, const TPubSecObjectKind& tKind,
                         const void* pvRecords, u32 dwNum, EPubSecSubImageRule eSubImages);

#endif
