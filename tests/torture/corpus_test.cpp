/* SPDX-License-Identifier: Apache-2.0 */
/* The inputs that fuzzing starts from, and those that once found a fault, through every target. */
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>

#include "fuzz/targets.h"

namespace
{

class Corpus : public testing::TestWithParam<fuzz::Target>
{
};

INSTANTIATE_TEST_SUITE_P(Targets, Corpus, testing::ValuesIn(fuzz::kTargets, fuzz::kTargets + fuzz::kTargetCount),
                         [](const testing::TestParamInfo<fuzz::Target>& parameter) {
                             return std::string(parameter.param.name);
                         });

TEST_P(Corpus, KeepsEveryPromise)
{
    const fuzz::Target* const target = fuzz::targetNamed(GetParam().name);
    ASSERT_NE(target, nullptr);
    size_t inputs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(std::string(CORPORA) + "/" + target->name))
    {
        SCOPED_TRACE(entry.path().filename().string());
        std::ifstream file(entry.path(), std::ios::binary);
        target->run(std::string(std::istreambuf_iterator<char>(file), {}));
        ++inputs;
    }
    EXPECT_GE(inputs, 4u);
}

} // namespace
