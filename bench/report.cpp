/* SPDX-License-Identifier: Apache-2.0 */
#include "report.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bench
{

namespace
{

std::string formatted(double value)
{
    char text[32];
    const int digits = value != 0 && value < 10 && value > -10 ? 3 : 0;
    std::snprintf(text, sizeof(text), "%.*f", digits, value);
    return text;
}

bool keeps(const Limit& limit, double bound, double value)
{
    return limit.sense == Limit::Sense::kNone ||
           (limit.sense == Limit::Sense::kAtMost ? value <= bound : value >= bound);
}

std::string boundText(const Limit& limit)
{
    char text[32] = "";
    if (limit.sense != Limit::Sense::kNone)
    {
        std::snprintf(text, sizeof(text), "%s %g", limit.sense == Limit::Sense::kAtMost ? "<=" : ">=", limit.bound);
    }
    return text;
}

} // namespace

Options parseOptions(int argc, char** argv)
{
    Options options;
    for (int index = 1; index < argc; ++index)
    {
        if (std::strcmp(argv[index], "--short") == 0)
        {
            options.isShort = true;
        }
        else if (std::strcmp(argv[index], "--rows") == 0 && index + 1 < argc)
        {
            options.rowsPath = argv[++index];
        }
        else
        {
            std::fprintf(stderr, "usage: %s [--short] [--rows FILE]\n", argv[0]);
            std::exit(2);
        }
    }
    return options;
}

Report::Report(const Options& options) : m_path(options.rowsPath)
{
}

void Report::add(const std::string& what, const std::string& beside, double value, const std::string& unit, Limit limit,
                 const std::string& remark)
{
    const bool isFar = !keeps(limit, limit.farOff, value);
    const char* const verdict = limit.sense == Limit::Sense::kNone ? ""
                                : keeps(limit, limit.bound, value) ? "met"
                                : isFar                            ? "FAR OFF"
                                                                   : "missed";
    m_status = isFar ? 1 : m_status;
    const std::string shown = formatted(value) + (unit.empty() ? "" : " " + unit);
    std::fprintf(stderr, "  %-46s %14s  %-8s %s %s\n", what.c_str(), shown.c_str(), boundText(limit).c_str(), verdict,
                 remark.c_str());
    if (FILE* const rows = m_path.empty() ? nullptr : std::fopen(m_path.c_str(), "a"))
    {
        std::fprintf(rows, "%s\t%s\t%s\t%s\t%s\t%s\n", what.c_str(), beside.c_str(), boundText(limit).c_str(),
                     shown.c_str(), verdict, remark.c_str());
        std::fclose(rows);
    }
}

void fail(const std::string& why)
{
    std::fprintf(stderr, "bench: %s\n", why.c_str());
    std::exit(3);
}

double median(std::vector<double> values)
{
    if (values.empty())
    {
        fail("nothing was measured");
    }
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace bench
