/* SPDX-License-Identifier: Apache-2.0 */
/* Trees and their text: what the library prepares must come out as what cJSON makes of it. */
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>

#include <cjson/cJSON.h>
#include <gtest/gtest.h>

#include "core/json_leaves.h"
#include "core/json_tree.h"

namespace
{

size_t s_largest;

void* measuredMalloc(size_t size)
{
    s_largest = std::max(s_largest, size);
    return std::malloc(size);
}

bool s_arraysRefuse = false;

} // namespace

PUBSEC_C_BEGIN

cJSON_bool __real_cJSON_AddItemToArray(cJSON* array, cJSON* item);

/* The linker sends the library's calls here. */
cJSON_bool __wrap_cJSON_AddItemToArray(cJSON* array, cJSON* item)
{
    return s_arraysRefuse ? 0 : __real_cJSON_AddItemToArray(array, item);
}

PUBSEC_C_END

namespace
{

std::string taken(char* text)
{
    const std::string copy = text != nullptr ? text : "(null)";
    cJSON_free(text);
    return copy;
}

/* {"N":...} */
std::string printedNumber(double value)
{
    cJSON* root = cJSON_CreateObject();
    PubSecJsonAddNumber(root, "N", value);
    return taken(PubSecJsonPrint(root));
}

struct NumberCase
{
    const char* name;
    double value;
    const char* text;
};

class JsonNumber : public testing::TestWithParam<NumberCase>
{
};

TEST_P(JsonNumber, IsWrittenAs)
{
    EXPECT_EQ(printedNumber(GetParam().value), std::string(R"({"N":)") + GetParam().text + "}");
}

TEST_P(JsonNumber, IsANumberInAHostsTree)
{
    cJSON* root = cJSON_CreateObject();
    PubSecJsonAddNumber(root, "N", GetParam().value);
    EXPECT_TRUE(PubSecJsonOwnAfter(root, nullptr));
    cJSON* node = cJSON_GetObjectItemCaseSensitive(root, "N");
    EXPECT_TRUE(cJSON_IsNumber(node));
    EXPECT_EQ(cJSON_GetStringValue(node), nullptr);
    EXPECT_EQ(node->valuedouble, GetParam().value);
    EXPECT_EQ(taken(cJSON_PrintUnformatted(root)), std::string(R"({"N":)") + GetParam().text + "}");
    cJSON_SetNumberValue(node, 77);
    EXPECT_EQ(taken(cJSON_PrintUnformatted(root)), R"({"N":77})");
    cJSON_Delete(root);
}

INSTANTIATE_TEST_SUITE_P(
    Values, JsonNumber,
    testing::Values(NumberCase{"Zero", 0, "0"}, NumberCase{"One", 1, "1"}, NumberCase{"MinusOne", -1, "-1"},
                    NumberCase{"Ten", 10, "10"}, NumberCase{"LargestS32", 2147483647.0, "2147483647"},
                    NumberCase{"SmallestS32", -2147483648.0, "-2147483648"},
                    NumberCase{"LargestU32", 4294967295.0, "4294967295"},
                    NumberCase{"FifteenDigits", 999999999999999.0, "999999999999999"},
                    NumberCase{"FifteenDigitsBelowZero", -999999999999999.0, "-999999999999999"},
                    NumberCase{"SixteenDigits", 1e15, "1e+15"}, NumberCase{"SixteenDigitsBelowZero", -1e15, "-1e+15"},
                    NumberCase{"Half", 0.5, "0.5"}, NumberCase{"Fraction", -116.397128, "-116.397128"},
                    NumberCase{"Huge", 1e300, "1e+300"}, NumberCase{"Infinite", INFINITY, "null"}),
    [](const auto& parameter) { return parameter.param.name; });

TEST(JsonNumber, IsNullWhenItIsNone)
{
    EXPECT_EQ(printedNumber(std::nan("")), R"({"N":null})");
}

TEST(JsonNumber, HasTheValuesOfAnIntegerToo)
{
    for (const auto& [value, integer] : {std::pair{7.0, 7}, {-7.0, -7}, {3e9, INT_MAX}, {-3e9, INT_MIN}})
    {
        cJSON* root = cJSON_CreateObject();
        PubSecJsonAddNumber(root, "N", value);
        PubSecJsonOwnAfter(root, nullptr);
        EXPECT_EQ(cJSON_GetObjectItemCaseSensitive(root, "N")->valueint, integer);
        cJSON_Delete(root);
    }
}

/* Which sign a zero keeps is for cJSON to say. */
TEST(JsonNumber, OfMinusZeroIsThatOfCjson)
{
    cJSON* root = cJSON_CreateObject();
    cJSON_AddNumberToObject(root, "N", -0.0);
    EXPECT_EQ(printedNumber(-0.0), taken(cJSON_PrintUnformatted(root)));
    cJSON_Delete(root);
}

/* ------------------------------------------------------------------------------------------------- long texts */

std::string printedTexts(const std::string& first, const std::string& second)
{
    cJSON* root = cJSON_CreateObject();
    cJSON* inner = PubSecJsonAppendObject(PubSecJsonAddArray(root, "L"));
    PubSecJsonAddText(inner, "A", first.c_str());
    PubSecJsonAddText(inner, "N", "\x01");
    PubSecJsonAddText(root, "B", second.c_str());
    PubSecJsonAddNumber(root, "C", 5);
    return taken(PubSecJsonPrint(root));
}

std::string expectedTexts(const std::string& first, const std::string& second)
{
    return R"({"L":[{"A":")" + first + R"(","N":"\u0001"}],"B":")" + second + R"(","C":5})";
}

TEST(JsonText, OfAnyLengthStandsWhereItBelongs)
{
    for (const size_t length :
         std::initializer_list<size_t>{0, 1, 4094, 4095, 4096, 4097, 8191, 8192, 8193, 12288, 300001})
    {
        SCOPED_TRACE(length);
        const std::string a(length, 'a');
        const std::string b(length, 'b');
        EXPECT_EQ(printedTexts(a, b), expectedTexts(a, b));
        EXPECT_EQ(printedTexts(a, "short"), expectedTexts(a, "short"));
        EXPECT_EQ(printedTexts("short", b), expectedTexts("short", b));
    }
}

struct EscapeCase
{
    const char* name;
    char character;
    const char* text;
};

class JsonEscape : public testing::TestWithParam<EscapeCase>
{
};

/* Wherever it stands among characters that are written as they are. */
TEST_P(JsonEscape, OfALongText)
{
    for (const size_t length : std::initializer_list<size_t>{4096, 5000, 8192, 9000})
    {
        for (const size_t place : {size_t{0}, size_t{1}, size_t{4095}, length - 1})
        {
            SCOPED_TRACE(std::to_string(place) + " of " + std::to_string(length));
            std::string text(length, 'a');
            text[place] = GetParam().character;
            const std::string escaped =
                std::string(place, 'a') + GetParam().text + std::string(length - place - 1, 'a');
            EXPECT_EQ(printedTexts(text, std::string(5000, 'b')), expectedTexts(escaped, std::string(5000, 'b')));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Characters, JsonEscape,
                         testing::Values(EscapeCase{"One", '\x01', "\\u0001"}, EscapeCase{"Tab", '\t', "\\t"},
                                         EscapeCase{"Line", '\n', "\\n"}, EscapeCase{"Return", '\r', "\\r"},
                                         EscapeCase{"Backspace", '\b', "\\b"}, EscapeCase{"FormFeed", '\f', "\\f"},
                                         EscapeCase{"LastControl", '\x1F', "\\u001f"}, EscapeCase{"Quote", '"', "\\\""},
                                         EscapeCase{"Backslash", '\\', "\\\\"}, EscapeCase{"Space", ' ', " "},
                                         EscapeCase{"Slash", '/', "/"}, EscapeCase{"Delete", '\x7F', "\x7F"},
                                         EscapeCase{"AboveAscii", '\x80', "\x80"},
                                         EscapeCase{"Highest", '\xFF', "\xFF"}),
                         [](const auto& parameter) { return parameter.param.name; });

/* As one that cJSON prints alone. */
TEST(JsonText, MakesNoDocumentOf2GiB)
{
    const std::string text(64u << 20, 'a');
    cJSON* root = cJSON_CreateArray();
    for (int member = 0; member < 32; ++member)
    {
        cJSON_AddItemToArray(root, PubSecJsonNewLongText(text.c_str(), text.size()));
    }
    EXPECT_EQ(PubSecJsonPrint(root), nullptr);
}

/* What the host has in its tree, references and raw JSON among it, stays as it is. */
TEST(JsonTree, OfTheHostIsLeftAlone)
{
    char text[] = "before";
    cJSON* shared = cJSON_CreateObject();
    cJSON* root = cJSON_CreateObject();
    cJSON_AddItemToObject(root, "text", cJSON_CreateStringReference(text));
    cJSON_AddItemToObject(root, "raw", cJSON_CreateRaw("\x01"));
    cJSON_AddItemReferenceToObject(root, "shared", shared);
    root->child->prev = nullptr; /* as a host may that links nodes itself */
    const cJSON* last = PubSecJsonLast(root);
    EXPECT_STREQ(last->string, "shared");
    root->child->prev = const_cast<cJSON*>(last);
    PubSecJsonAddNumber(root, "n", 7);
    cJSON_AddItemReferenceToObject(root, "again", shared);
    EXPECT_TRUE(PubSecJsonOwnAfter(root, last));
    std::memcpy(text, "behind", sizeof(text));
    EXPECT_EQ(taken(cJSON_PrintUnformatted(root)),
              "{\"text\":\"behind\",\"raw\":\x01,\"shared\":{},\"n\":7,\"again\":{}}");
    cJSON_Delete(root);
    cJSON_Delete(shared);
}

/* Base64 in lines is found in pictures: the block is as large as the document, and not grown. */
TEST(JsonText, InLinesTakesNoMoreThanItsDocument)
{
    std::string text;
    while (text.size() < 1000000)
    {
        text += std::string(76, 'A') + "\r\n";
    }
    text += "\x0b\x01\b\f\t\"\\";
    cJSON* root = cJSON_CreateObject();
    PubSecJsonAddText(root, "A", text.c_str());
    s_largest = 0;
    cJSON_Hooks hooks = {measuredMalloc, std::free};
    cJSON_InitHooks(&hooks);
    const std::string document = taken(PubSecJsonPrint(root));
    cJSON_InitHooks(nullptr);
    EXPECT_LT(s_largest, document.size() + 256);
    EXPECT_GT(s_largest, document.size());
}

/* Such a size is no int, which is what cJSON takes; the tree has to be printed in blocks that grow. */
TEST(JsonText, OfMoreThan2GiBIsNotAskedForInOneBlock)
{
    const std::string key(64u << 20, 'k');
    cJSON* root = cJSON_CreateObject();
    for (int member = 0; member < 32; ++member)
    {
        PubSecJsonAddText(root, key.c_str(), "a");
    }
    s_largest = 0;
    cJSON_Hooks hooks = {[](size_t size) -> void* {
                             s_largest = std::max(s_largest, size);
                             return nullptr;
                         },
                         free};
    cJSON_InitHooks(&hooks);
    EXPECT_EQ(PubSecJsonPrint(root), nullptr);
    cJSON_InitHooks(nullptr);
    EXPECT_GT(s_largest, 0u);
    EXPECT_LT(s_largest, 4096u);
}

TEST(JsonText, OfAHostsTreeIsItsOwn)
{
    std::string text(5000, 'a');
    cJSON* root = cJSON_CreateObject();
    PubSecJsonAddText(root, "A", text.c_str());
    ASSERT_TRUE(PubSecJsonOwnAfter(root, nullptr));
    text.assign(5000, 'x');
    cJSON* node = cJSON_GetObjectItemCaseSensitive(root, "A");
    EXPECT_TRUE(cJSON_IsString(node));
    ASSERT_NE(cJSON_GetStringValue(node), nullptr);
    EXPECT_EQ(cJSON_GetStringValue(node), std::string(5000, 'a'));
    EXPECT_NE(cJSON_SetValuestring(node, "other"), nullptr);
    EXPECT_EQ(taken(cJSON_PrintUnformatted(root)), R"({"A":"other"})");
    cJSON_Delete(root);
}

TEST(JsonText, WithoutATerminatorEndsWithItsField)
{
    const char field[3] = {'a', 'b', 'c'};
    cJSON* root = cJSON_CreateObject();
    PubSecJsonAddBoundedText(root, "A", field, 3, 3);
    PubSecJsonOwnAfter(root, nullptr);
    EXPECT_EQ(taken(cJSON_PrintUnformatted(root)), R"({"A":"abc"})");
    cJSON_Delete(root);
}

TEST(JsonText, ThatIsLongIsFoundInAFieldToo)
{
    char field[6000] = {};
    std::memset(field, 'a', 5000);
    cJSON* root = cJSON_CreateObject();
    PubSecJsonAddBoundedText(root, "A", field, 5000, sizeof(field));
    EXPECT_EQ(taken(PubSecJsonPrint(root)), "{\"A\":\"" + std::string(5000, 'a') + "\"}");
}

/* The leak checker sees that what finds no place is gone, here and below. */
TEST(JsonTree, WithoutAnObjectTakesNothing)
{
    EXPECT_EQ(PubSecJsonAddObject(nullptr, "A"), nullptr);
    EXPECT_EQ(PubSecJsonAddArray(nullptr, "A"), nullptr);
    PubSecJsonAddNumber(nullptr, "A", 7);
    PubSecJsonAddText(nullptr, "A", "text");
    PubSecJsonAddBoundedText(nullptr, "A", "text", 4, 5);
    PubSecJsonAddBoundedText(nullptr, "A", "text", 4, 4);
    EXPECT_EQ(PubSecJsonAppendObject(nullptr), nullptr);
    EXPECT_EQ(PubSecJsonPrint(nullptr), nullptr);
}

TEST(JsonTree, AnArrayThatRefusesAnObjectGivesNone)
{
    cJSON* root = cJSON_CreateObject();
    cJSON* array = PubSecJsonAddArray(root, "A");
    EXPECT_NE(PubSecJsonAppendObject(array), nullptr);
    s_arraysRefuse = true;
    EXPECT_EQ(PubSecJsonAppendObject(array), nullptr);
    s_arraysRefuse = false;
    EXPECT_EQ(taken(PubSecJsonPrint(root)), R"({"A":[{}]})");
}

} // namespace
