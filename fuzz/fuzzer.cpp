/* SPDX-License-Identifier: Apache-2.0 */
/* The entry of libFuzzer. FUZZ_TARGET names the target. */
#include "fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const fuzz::Target* const target = fuzz::targetNamed(FUZZ_TARGET);
    target->run(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
