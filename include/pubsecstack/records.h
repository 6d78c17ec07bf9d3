/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Copy and release of records with the blocks that they own.
 *
 * Every function returns 1 when done and 0 for a refused argument. They run on the caller's thread and take no lock:
 * calls on different records may run in parallel, calls on one record (or on a record and its copy, while the copy is
 * being made) may not. They do not block beyond what the allocators do.
 *
 * Allocators. The first argument of every release function names the allocator that the blocks came from:
 *
 *   PUBSEC_MODE_HEAP     the process heap: free.
 *   PUBSEC_MODE_SERVICE  the host's system service: NvrSrvFree.
 *   PUBSEC_MODE_POOL     the memory pool: AppMemPoolFreeEx. Any other number means the pool too.
 *
 * The mode holds for all blocks of the record. The copy functions always take blocks from the library's pool, which
 * PubSecStackInit creates.
 */
#ifndef PUBSECSTACK_RECORDS_H
#define PUBSECSTACK_RECORDS_H

#include "disposition.h"
#include "face.h"
#include "image.h"
#include "motor_vehicle.h"
#include "non_motor_vehicle.h"
#include "person.h"
#include "picture.h"
#include "types.h"
#include "video_slice.h"

PUBSEC_C_BEGIN

#define PUBSEC_MODE_HEAP 0
#define PUBSEC_MODE_POOL 1
#define PUBSEC_MODE_SERVICE 2

/* The most sub-images of a record, and the most notifications of a list, that can be copied. */
#define PUBSEC_COPY_MAX 256

/* ----------------------------------------------------------------------------------------------- copy of records */

/*
 * Copies a record with its sub-images and their data texts (pchData).
 *
 *   ptSrc  the record to copy. Although it is declared const, ITS LIST POINTER IS REPLACED, so it must not be an object
 *          in read-only memory.
 *   ptDst  where the copy goes, another record. What it holds is overwritten, not released.
 *
 * The two records share nothing afterwards of what the release functions release, but the blocks change hands:
 *
 *   ptSrc->ptSubImageList  is a new array from the pool, its entries pointing at the original data texts;
 *   ptDst->ptSubImageList  is the source's former array, its entries pointing at copies of the texts from the pool.
 *
 * Each record thus holds blocks of both origins. Release both with PUBSEC_MODE_POOL, and make the list and the texts of
 * a record that will be copied from the pool too, where the host's allocators differ from each other. What the release
 * functions leave alone (the feature record of a face, the feature data of a sub-image) is shared by both.
 *
 * Returns 1 when copied. Also 1, with less done:
 *
 *   no sub-images (count 0)         ptSrc's list pointer is set to null; ptDst keeps what it was.
 *   a count, but no list            nothing is allocated.
 *   no memory for the array, or a   ptSrc's list pointer is null; ptDst has the array and the original texts, none
 *   negative count                  is copied.
 *   no memory for a text            that entry of ptDst has no text (null); the others are copied.
 *
 * Returns 0 for a null record and for more than 256 sub-images (PUBSEC_COPY_MAX); nothing is changed.
 */
PUBSEC_API u32 PubSecStackDup_TPubSecPersonnelObjInfo(const TPubSecPersonnelObjInfo* ptSrc,
                                                      TPubSecPersonnelObjInfo* ptDst);
PUBSEC_API u32 PubSecStackDup_TPubSecFaceObjInfo(const TPubSecFaceObjInfo* ptSrc, TPubSecFaceObjInfo* ptDst);
PUBSEC_API u32 PubSecStackDup_TPubSecMotorVehicleObjInfo(const TPubSecMotorVehicleObjInfo* ptSrc,
                                                         TPubSecMotorVehicleObjInfo* ptDst);
PUBSEC_API u32 PubSecStackDup_TPubSecNonMotorVehicleObjInfo(const TPubSecNonMotorVehicleObjInfo* ptSrc,
                                                            TPubSecNonMotorVehicleObjInfo* ptDst);

/* -------------------------------------------------------------------------------------------- release of records */

/*
 * Releases the data text of each sub-image, then the array, and clears the pointers. The record itself and its count
 * are left alone, so a second release does nothing. With a negative count only the array is released.
 *
 * Returns 1, also when the record has no list; 0 for a null record.
 *
 *   PubSecStackFree_TPubSecFaceObjInfo(PUBSEC_MODE_HEAP, &tFace);
 */
PUBSEC_API u32 PubSecStackFree_TPubSecPersonnelObjInfo(s32 nMode, TPubSecPersonnelObjInfo* ptRec);
PUBSEC_API u32 PubSecStackFree_TPubSecFaceObjInfo(s32 nMode, TPubSecFaceObjInfo* ptRec);
PUBSEC_API u32 PubSecStackFree_TPubSecMotorVehicleObjInfo(s32 nMode, TPubSecMotorVehicleObjInfo* ptRec);
PUBSEC_API u32 PubSecStackFree_TPubSecNonMotorVehicleObjInfo(s32 nMode, TPubSecNonMotorVehicleObjInfo* ptRec);

/* As above for a video slice. Here a sub-image without a text hands the allocator a null block, which it ignores. */
PUBSEC_API u32 PubSecStackFree_TPubSecVideoSliceInfo(s32 nMode, TPubSecVideoSliceInfo* ptRec);

/*
 * Releases an image's feature data (null is handed to the allocator as it is) and then its feature record, and clears
 * the pointer. Returns 1, also when there is no feature record; 0 for a null image.
 */
PUBSEC_API u32 PubSecStackFree_TPubSecImageObjInfo(s32 nMode, TPubSecImageObjInfo* ptRec);

/*
 * Releases what a picture owns: the feature record of its image and the image block; then the motor vehicles, faces,
 * persons and non-motor vehicles, each list with the sub-images of its records; and clears the pointers. A list that is
 * null is passed over, whatever its count is; the counts are left alone.
 *
 * Only the FIRST image record of the block gives up its feature record, whatever nImageNum is (in an array of pictures
 * that number is the array's length). Release those of further ones with PubSecStackFree_TPubSecImageObjInfo before.
 * Things, scenes, access records and pchData stay with the host.
 *
 * Returns 1; 0 for a null picture.
 */
PUBSEC_API u32 PubSecStackFree_TPubSecIntelliPicObj(s32 nMode, TPubSecIntelliPicObj* ptRec);

/*
 * Releases the sub-images of the FIRST slice of a list and then the array of slices, and clears the pointer to it. The
 * count is left alone. The array goes with the first slice: release the slices of a longer list one by one with
 * PubSecStackFree_TPubSecVideoSliceInfo first, or the sub-images of the others are lost. With a count of 0 nothing is
 * released, an array included.
 *
 * Returns 1, also when there is no array; 0 for a null list.
 */
PUBSEC_API u32 PubSecStackFree_TPubsecVideoSliceList(s32 nMode, TPubsecVideoSliceList* ptList);

/* ------------------------------------------------------------------------------------- disposition notifications */

/*
 * Copies a list of notifications with the persons, faces, motor vehicles and non-motor vehicles embedded in them.
 *
 *   ptSrc  the list to copy; the sub-image lists of its embedded records are replaced as the copy of a record tells.
 *   ptDst  where the copy goes; what it holds is overwritten, not released.
 *
 * The array of notifications is a new block from the pool. An embedded record is copied once when its count is not 0,
 * however high the count is, as the record copy functions do; one with more than 256 sub-images is refused by them and
 * shares its list with the source. The disposition lists are shared: both lists point at the same ones.
 *
 * Returns 1 when copied; 0 for a null list or array, for a count of notifications of 0 or above 256, for a count of an
 * embedded record above 256 (nothing is changed in these cases), and when there is no memory for the array (ptDst has
 * its counts, and no array).
 *
 * The release below does not give the array back: hand ptDst->aptDispoNotifyObj to AppMemPoolFreeEx after it.
 */
PUBSEC_API u32 PubSecStackDup_TPubsecDispositionNotificationList(TPubsecDispositionNotificationList* ptSrc,
                                                                 TPubsecDispositionNotificationList* ptDst);

/*
 * Releases the sub-images of the records embedded in each notification (those whose count is not 0). The array of
 * notifications and the disposition lists are NOT released: they stay with who made them.
 *
 *   dwMode  an allocator, as above.
 *
 * Returns 1, also when there is no array; 0 for a null list.
 */
PUBSEC_API u32 PubSecStackFree_TPubsecDispositionNotificationList(u32 dwMode,
                                                                  TPubsecDispositionNotificationList* ptList);

PUBSEC_C_END

#endif
