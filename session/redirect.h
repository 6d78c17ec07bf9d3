/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_SESSION_REDIRECT_H
#define PUBSEC_SESSION_REDIRECT_H

#include "core/http.h"

/*
 * Takes the redirect that the handle's answer names: remembers the address in force and points the pending record at
 * the target. A target that cannot be split changes nothing.
 */
void PubSecFollowRedirect(u32 dwPlatform, CURL* ptHandle, const char* pchFunction);

/* Points the pending record back at the address before the redirect, if one was followed. */
void PubSecReturnFromRedirect(u32 dwPlatform);

#endif
