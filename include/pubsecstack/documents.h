/* SPDX-License-Identifier: Apache-2.0 */
/* Objects in JSON trees of the host's own. */
#ifndef PUBSECSTACK_DOCUMENTS_H
#define PUBSECSTACK_DOCUMENTS_H

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

PUBSEC_C_END

#endif
