/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "resources.h"
#include "store.h"
#include "viewlib/answer.h"

#include <cstddef>
#include <optional>
#include <string>

namespace viewlib
{

/* Which part of a list is asked for. */
struct Page
{
    std::size_t start = 1;  /* "RecordStartNo", the number of the first record, from 1 */
    std::size_t size = 100; /* "PageRecordNum" */
};

/* Out of a query; fault says what is wrong with it. */
struct PageQuery
{
    Page page;
    std::string fault;
};
PageQuery parsePage(const std::string& query);

/* What is stored, as a GET of its resource shows it; nothing when there is no such thing. */
std::optional<Answer> showStored(const Store& store, const ResourceMatch& match, const Page& page);

} // namespace viewlib
