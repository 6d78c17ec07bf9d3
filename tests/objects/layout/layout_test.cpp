/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The listings leave no field out: the fields of a record lie side by side, with no more between them than alignment
 * asks for. That the listings are true is checked by the compiler, in layout_check.c.
 */
#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

struct Field
{
    std::string name;
    size_t offset;
    size_t size;
};

struct Record
{
    std::string name;
    size_t size;
    std::vector<Field> fields;
};

/* One line of a listing: a record, or a field of the record before it. Data, since code for each takes ages to compile. */
struct Line
{
    const char* record;
    const char* field; /* null: the record itself */
    size_t offset;
    size_t size;
};

#define RECORD(record, size) {#record, nullptr, 0, size},
#define FIELD(record, field, offset, size) {#record, #field, offset, size},
constexpr Line c_listing64[] = {
#include "layout_lp64.inc"
};
constexpr Line c_listing32[] = {
#include "layout_ilp32.inc"
};
#undef RECORD
#undef FIELD

template <size_t count> std::vector<Record> RecordsOf(const Line (&listing)[count])
{
    std::vector<Record> records;
    for (const Line& line : listing)
    {
        if (line.field == nullptr)
        {
            records.push_back({line.record, line.size, {}});
            continue;
        }
        EXPECT_EQ(records.back().name, line.record);
        records.back().fields.push_back({line.field, line.offset, line.size});
    }
    return records;
}

std::vector<Record> Listing64()
{
    return RecordsOf(c_listing64);
}

std::vector<Record> Listing32()
{
    return RecordsOf(c_listing32);
}

void ExpectSideBySide(const Record& record)
{
    constexpr size_t alignment = 8;
    size_t end = 0;
    for (const Field& field : record.fields)
    {
        EXPECT_GE(field.offset, end) << record.name << "." << field.name;
        EXPECT_LT(field.offset - end, alignment) << "a field before " << record.name << "." << field.name;
        end = field.offset + field.size;
    }
    EXPECT_GE(record.size, end) << record.name;
    EXPECT_LT(record.size - end, alignment) << "a field at the end of " << record.name;
}

TEST(Layout, NoFieldIsMissing)
{
    for (const std::vector<Record>& listing : {Listing64(), Listing32()})
    {
        EXPECT_EQ(listing.size(), 37U);
        for (const Record& record : listing)
        {
            ExpectSideBySide(record);
        }
    }
}

TEST(Layout, BothListingsNameTheSameFields)
{
    const std::vector<Record> wide = Listing64();
    const std::vector<Record> narrow = Listing32();
    ASSERT_EQ(wide.size(), narrow.size());
    for (size_t record = 0; record < wide.size(); record++)
    {
        EXPECT_EQ(wide[record].name, narrow[record].name);
        ASSERT_EQ(wide[record].fields.size(), narrow[record].fields.size()) << wide[record].name;
        for (size_t field = 0; field < wide[record].fields.size(); field++)
        {
            EXPECT_EQ(wide[record].fields[field].name, narrow[record].fields[field].name);
        }
    }
}

} // namespace
