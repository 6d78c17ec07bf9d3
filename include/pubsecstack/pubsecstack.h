/* SPDX-License-Identifier: Apache-2.0 */
/*
 * PubSecStack: reports a recording host's pictures, objects and events to public-security view libraries.
 *
 *     PubSecStackRegisterCB(OnStatus);
 *     PubSecStackUpdateRegisterInfo(0, &tConfiguration);
 *     PubSecStackInit();
 *     ... once OnStatus(0, 1, ...) was called:
 *     PubSecPostImageFace(0, &tFace, 1);
 *
 * Records are plain and of fixed layout; fill them from all zeros, and set numbers that are written "unless -1"
 * (image.h) to -1 where there is none. Texts are NUL-terminated; one that fills its field needs no terminator.
 */
#ifndef PUBSECSTACK_PUBSECSTACK_H
#define PUBSECSTACK_PUBSECSTACK_H

#include <pubsecstack/access.h>
#include <pubsecstack/config.h>
#include <pubsecstack/disposition.h>
#include <pubsecstack/documents.h>
#include <pubsecstack/face.h>
#include <pubsecstack/file.h>
#include <pubsecstack/helpers.h>
#include <pubsecstack/image.h>
#include <pubsecstack/log_event.h>
#include <pubsecstack/motor_vehicle.h>
#include <pubsecstack/non_motor_vehicle.h>
#include <pubsecstack/person.h>
#include <pubsecstack/picture.h>
#include <pubsecstack/posts.h>
#include <pubsecstack/records.h>
#include <pubsecstack/results.h>
#include <pubsecstack/sensor.h>
#include <pubsecstack/session.h>
#include <pubsecstack/thing_scene.h>
#include <pubsecstack/types.h>
#include <pubsecstack/video_slice.h>
#include <pubsecstack/violation.h>

#endif
