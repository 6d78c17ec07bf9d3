/* SPDX-License-Identifier: Apache-2.0 */
/* How trees are printed. */
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include <cjson/cJSON.h>

#include "core/json_tree.h"

namespace
{

std::string printed(cJSON* root)
{
    char* const text = PubSecJsonPrint(root);
    const std::string copy = text != nullptr ? text : "(null)";
    cJSON_free(text);
    return copy;
}

std::string printedText(const char* value)
{
    cJSON* const root = cJSON_CreateObject();
    PubSecJsonAddText(root, "T", value);
    return printed(root);
}

std::string printedNumber(double value)
{
    cJSON* const root = cJSON_CreateObject();
    PubSecJsonAddNumber(root, "N", value);
    return printed(root);
}

TEST(JsonPrint, EmptyContainers)
{
    EXPECT_EQ(printed(cJSON_CreateObject()), "{}");
    EXPECT_EQ(printed(cJSON_CreateArray()), "[]");
    EXPECT_EQ(PubSecJsonPrint(nullptr), nullptr);
}

TEST(JsonPrint, NestsObjectsAndArrays)
{
    cJSON* const root = cJSON_CreateObject();
    PubSecJsonAddText(root, "First", "1");
    cJSON* const array = PubSecJsonAddArray(PubSecJsonAddObject(root, "List"), "Object");
    PubSecJsonAddNumber(PubSecJsonAppendObject(array), "A", 1);
    PubSecJsonAppendObject(array);
    PubSecJsonAddText(root, "Last", "");
    EXPECT_EQ(printed(root), R"({"First":"1","List":{"Object":[{"A":1},{}]},"Last":""})");
}

TEST(JsonPrint, EscapesWhatJsonWantsEscaped)
{
    EXPECT_EQ(printedText("a\"b"), R"({"T":"a\"b"})");
    EXPECT_EQ(printedText("a\\b"), R"({"T":"a\\b"})");
    EXPECT_EQ(printedText("\b\f\n\r\t"), R"({"T":"\b\f\n\r\t"})");
    EXPECT_EQ(printedText("\x01\x1f"), R"({"T":"\u0001\u001f"})");
}

TEST(JsonPrint, LeavesTheRestAsItIs)
{
    EXPECT_EQ(printedText(" !#[]/~\x7f"), "{\"T\":\" !#[]/~\x7f\"}");
    EXPECT_EQ(printedText("\xe4\xba\xac\xff\x80"), "{\"T\":\"\xe4\xba\xac\xff\x80\"}");
}

/* Texts are looked at eight characters at a time: the escaped one stands at each place of texts of each length. */
TEST(JsonPrint, FindsAnEscapeAtEveryPlace)
{
    for (const char* const pair : {"\"\\\"", "\\\\\\", "\n\\n"})
    {
        for (size_t length = 1; length <= 20; ++length)
        {
            for (size_t place = 0; place < length; ++place)
            {
                const std::string before(place, '\xe9');
                const std::string after(length - place - 1, '!');
                const std::string text = before + pair[0] + after;
                EXPECT_EQ(printedText(text.c_str()), "{\"T\":\"" + before + (pair + 1) + after + "\"}");
            }
        }
    }
}

TEST(JsonPrint, WholeNumbers)
{
    EXPECT_EQ(printedNumber(0), R"({"N":0})");
    EXPECT_EQ(printedNumber(-0.0), R"({"N":0})");
    EXPECT_EQ(printedNumber(-7), R"({"N":-7})");
    EXPECT_EQ(printedNumber(2147483647), R"({"N":2147483647})");
    EXPECT_EQ(printedNumber(-2147483648.0), R"({"N":-2147483648})");
    EXPECT_EQ(printedNumber(4294967295.0), R"({"N":4294967295})");
}

TEST(JsonPrint, OtherNumbers)
{
    EXPECT_EQ(printedNumber(0.5), R"({"N":0.5})");
    EXPECT_EQ(printedNumber(-121.4737), R"({"N":-121.4737})");
    EXPECT_EQ(printedNumber(1e300), R"({"N":1e+300})");
    EXPECT_EQ(printedNumber(static_cast<double>(0.1f)), R"({"N":0.10000000149011612})");
    EXPECT_EQ(printedNumber(NAN), R"({"N":null})");
    EXPECT_EQ(printedNumber(INFINITY), R"({"N":null})");
}

} // namespace
