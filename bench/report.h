/* SPDX-License-Identifier: Apache-2.0 */
/* What a bench program found out: rows of the table that bench.sh prints, and whether any is far off. */
#ifndef PUBSEC_BENCH_REPORT_H
#define PUBSEC_BENCH_REPORT_H

#include <string>
#include <vector>

namespace bench
{

/* What a figure has to keep. Beyond `farOff` it cannot be the noise of the machine. */
struct Limit
{
    enum class Sense
    {
        kNone,
        kAtMost,
        kAtLeast,
    };

    Sense sense = Sense::kNone;
    double bound = 0;
    double farOff = 0;
};

inline Limit noLimit()
{
    return {};
}

inline Limit atMost(double bound, double farOff)
{
    return {Limit::Sense::kAtMost, bound, farOff};
}

inline Limit atLeast(double bound, double farOff)
{
    return {Limit::Sense::kAtLeast, bound, farOff};
}

/* The options that all programs have: --short and --rows FILE. The program ends when it is given others. */
struct Options
{
    bool isShort = false;
    std::string rowsPath;
};

Options parseOptions(int argc, char** argv);

class Report
{
  public:
    explicit Report(const Options& options);

    /* A figure: what was measured, beside what, its value, what it has to keep, and a remark. */
    void add(const std::string& what, const std::string& beside, double value, const std::string& unit, Limit limit,
             const std::string& remark = "");

    /* The program's exit status: 1 when a row is far off. */
    int status() const
    {
        return m_status;
    }

  private:
    std::string m_path;
    int m_status = 0;
};

/* Ends the program with a word why: for what cannot be measured. */
[[noreturn]] void fail(const std::string& why);

double median(std::vector<double> values);

} // namespace bench

#endif
