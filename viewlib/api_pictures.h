/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "api.h"
#include "store.h"

namespace viewlib
{

/* The pictures as the page shows them: neither logged nor spoilt, as those at /VIID/Pictures are. */
void addPictureEndpoint(Api& api, const Store& store);

} // namespace viewlib
