/* SPDX-License-Identifier: Apache-2.0 */
#include "api_pictures.h"

#include "text.h"

#include <cstdint>

namespace viewlib
{

void addPictureEndpoint(Api& api, const Store& store)
{
    api.add("GET", "/api/pictures/*", [&store](const ApiRequest& request) {
        const std::uint64_t number = request.nameNumber(0);
        std::optional<Picture> picture =
            number <= INT64_MAX ? store.picture(static_cast<std::int64_t>(number)) : std::nullopt;
        if (!picture)
        {
            throw ApiError(404, "there is no picture " + request.names.at(0));
        }
        Reply reply(200);
        reply.contentType = imageTypeOf(picture->bytes).mediaType;
        reply.body = std::move(picture->bytes);
        reply.with("Cache-Control", "private, max-age=3600"); /* a number never gets another picture */
        reply.with("X-Content-Type-Options", "nosniff");
        reply.with("Content-Security-Policy", "default-src 'none'; sandbox");
        return reply;
    });
}

} // namespace viewlib
