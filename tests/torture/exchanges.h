/* SPDX-License-Identifier: Apache-2.0 */
/* One call for each kind of exchange with a server, with records that take it through all of its steps. */
#ifndef PUBSEC_TESTS_TORTURE_EXCHANGES_H
#define PUBSEC_TESTS_TORTURE_EXCHANGES_H

#include <cstddef>
#include <cstdint>
#include <string>

#include <pubsecstack/config.h>

namespace torture
{

/* Where the calls go, on this machine, and a file that they may read. */
struct Place
{
    std::uint16_t port = 0;
    bool secure = false;
    std::string file;
};

Place& place();

/* The file of the place, so many bytes. */
void makeFile(size_t size);
void removeFile();

/* An enabled platform at that place, and the same for the direct calls. */
TPubSecPlatRegInfo configuration();
TPubSecRegParam param();

/* Of the file when it has been uploaded. */
std::string url();

/* Results are those of the calls, of the registrations 1 or 0. All are made by platform 0, which is registered. */
u32 registration();
u32 directRegistration();
u32 unregistration();
u32 keepalive();
u32 clockQuery();
u32 picture(); /* reads the answer, and has a code of its own for 400 */
u32 face();
u32 gps();   /* leaves the answer */
u32 slice(); /* has no time-out */
u32 upload();
u32 transferState();

} // namespace torture

#endif
