/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Everything that can fail under the library, numbered. Each allocation (of the library, of cJSON, of libcurl, from the
 * pool), each call of the host's platform and of libcurl that a thread makes inside faults::run is a point; a run fails
 * the points that it is told to. The calls come here by the linker's --wrap, by cJSON's hooks and by libcurl's.
 *
 *     const faults::Result calm = faults::run(0, faults::Mode::once, call);       // counts
 *     for (size_t point = 1; point <= calm.points; ++point)
 *         EXPECT_EQ(faults::run(point, faults::Mode::once, call).leaks, "");
 *
 * libcurl cannot refuse a callback, its data or a body that it only refers to, so those options are no points.
 */
#ifndef PUBSEC_TESTS_TORTURE_FAULTS_H
#define PUBSEC_TESTS_TORTURE_FAULTS_H

#include <cstddef>
#include <functional>
#include <string>

namespace faults
{

enum class Mode
{
    once,       /* the point alone */
    exhaustion, /* the point, and from there on every allocation */
};

struct Result
{
    size_t points = 0;  /* that the run came to */
    std::string failed; /* the function whose call failed first; empty when none did */
    std::string leaks;  /* blocks that were taken and not given back, by allocator; empty is good */
};

/* Makes libcurl and cJSON take their memory from here: before anything else uses them. */
void install();

/* Runs the call and fails its point of that number, from 1; 0 fails none. */
Result run(size_t failing, Mode mode, const std::function<void()>& call);

/* The overall time-out of transfers from here on, where the library sets one; 0 leaves it as it is set. */
void shortenTimeouts(long milliseconds);

/* While it lives, the thread's calls are no points: for what a host does between calls of the library. */
class Pause
{
  public:
    Pause();
    ~Pause();
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

  private:
    bool m_wasCounting;
};

} // namespace faults

#endif
