/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How the time for a document grows with members, objects and picture size, and how it does for cJSON by hand. Prints
 * the figures; --plot FILE draws them as SVG. Each point is the shortest of many rounds that go over all points.
 */
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>

#include <cjson/cJSON.h>

#include "clocks.h"
#include "objects/documents.h"
#include "records.h"
#include "report.h"
#include "writers.h"

namespace
{

using namespace bench;

struct Point
{
    double x;
    std::function<char*()> library;
    std::function<char*()> byHand;
    double libraryTime = 1e300; /* microseconds */
    double byHandTime = 1e300;
};

struct Panel
{
    std::string title;
    std::string unit;
    std::vector<Point> points;
};

/* The shorter of the time so far and that of so many calls. */
double shortest(double soFar, const std::function<char*()>& build, int times)
{
    const long long begin = threadNanoseconds();
    for (int index = 0; index < times; ++index)
    {
        cJSON_free(build());
    }
    return std::min(soFar, static_cast<double>(threadNanoseconds() - begin) / 1000 / times);
}

Point facesPoint(double x, const std::shared_ptr<std::vector<TPubSecFaceObjInfo>>& records)
{
    Point point = {x, nullptr, nullptr};
    point.library = [records] { return _PubSecImageFaceJSON(records->data(), static_cast<u32>(records->size())); };
    point.byHand = [records] {
        CjsonOut out;
        writeList(out, "FaceListObject", "FaceObject", records->data(), records->size());
        return out.finish();
    };
    return point;
}

Panel membersPanel()
{
    Panel panel = {"members of one face", "members", {}};
    for (const unsigned members : {10u, 20u, 30u, 40u, 50u, 60u})
    {
        /* By hand all 60 are written, so only the library is drawn. */
        auto records = std::make_shared<std::vector<TPubSecFaceObjInfo>>(1, face(members));
        Point point = facesPoint(members, records);
        point.byHand = nullptr;
        panel.points.push_back(point);
    }
    return panel;
}

Panel objectsPanel()
{
    Panel panel = {"faces of 60 members", "faces", {}};
    for (const unsigned count : {1u, 32u, 64u, 128u, 192u, 256u})
    {
        panel.points.push_back(facesPoint(count, std::make_shared<std::vector<TPubSecFaceObjInfo>>(faces(count))));
    }
    return panel;
}

Panel picturePanel()
{
    Panel panel = {"one image", "MB of picture", {}};
    for (const unsigned megabytes : {0u, 1u, 2u, 4u, 6u, 8u, 10u})
    {
        const auto picture = std::make_shared<Picture>(size_t{megabytes} * 1'000'000);
        Point point = {static_cast<double>(megabytes), nullptr, nullptr};
        point.library = [picture] { return _PubSecImageGatherJSON(&picture->record()); };
        point.byHand = [picture] {
            CjsonOut out;
            writePicture(out, picture->record());
            return out.finish();
        };
        panel.points.push_back(point);
    }
    return panel;
}

void measureRound(std::vector<Panel>& panels)
{
    for (Panel& panel : panels)
    {
        for (Point& point : panel.points)
        {
            const int times = point.x * (panel.unit == "members" ? 1 : 100) > 200 ? 2 : 20;
            point.libraryTime = shortest(point.libraryTime, point.library, times);
            if (point.byHand)
            {
                point.byHandTime = shortest(point.byHandTime, point.byHand, times);
            }
        }
    }
}

void print(const std::vector<Panel>& panels)
{
    for (const Panel& panel : panels)
    {
        std::printf("\n  %-14s %14s %18s\n", panel.unit.c_str(), "library, us", "cJSON by hand, us");
        for (const Point& point : panel.points)
        {
            std::printf("  %-14g %14.1f", point.x, point.libraryTime);
            if (point.byHand)
            {
                std::printf(" %18.1f", point.byHandTime);
            }
            std::printf("\n");
        }
    }
}

/* ---------------------------------------------------------------------------------------------------- drawing */

constexpr double kWidth = 300;
constexpr double kHeight = 220;
constexpr double kLeft = 60;
constexpr double kTop = 44;
constexpr double kGap = 80;

/* A round number at or above the value: 1, 2, 4, 5, 8 or 10 times a power of ten. */
double roundedUp(double value)
{
    double power = 1;
    while (power * 10 < value)
    {
        power *= 10;
    }
    for (const double factor : {1.0, 2.0, 4.0, 5.0, 8.0})
    {
        if (power * factor >= value)
        {
            return power * factor;
        }
    }
    return power * 10;
}

class Drawing
{
  public:
    Drawing(FILE* file, const Panel& panel, double left) : m_file(file), m_panel(panel), m_left(left)
    {
        m_xMax = panel.points.back().x;
        const Point& last = panel.points.back();
        m_yMax = roundedUp(last.byHand ? std::max(last.libraryTime, last.byHandTime) : last.libraryTime);
    }

    void draw()
    {
        const double bottom = kTop + kHeight;
        std::fprintf(m_file, "<text x='%g' y='%g' class='title'>%s</text>\n", m_left, kTop - 14, m_panel.title.c_str());
        for (int tick = 0; tick <= 4; ++tick)
        {
            const double y = bottom - kHeight * tick / 4;
            const double x = m_left + kWidth * tick / 4;
            std::fprintf(m_file, "<line x1='%g' y1='%g' x2='%g' y2='%g' class='grid'/>\n", m_left, y, m_left + kWidth,
                         y);
            std::fprintf(m_file, "<text x='%g' y='%g' text-anchor='end'>%g</text>\n", m_left - 6, y + 4,
                         m_yMax * tick / 4);
            std::fprintf(m_file, "<text x='%g' y='%g' text-anchor='middle'>%g</text>\n", x, bottom + 16,
                         m_xMax * tick / 4);
        }
        std::fprintf(m_file, "<text x='%g' y='%g' text-anchor='middle'>%s</text>\n", m_left + kWidth / 2, bottom + 34,
                     m_panel.unit.c_str());
        line("library", [](const Point& point) { return point.libraryTime; });
        if (m_panel.points.back().byHand)
        {
            line("byhand", [](const Point& point) { return point.byHandTime; });
        }
    }

  private:
    void line(const char* name, const std::function<double(const Point&)>& time)
    {
        std::fprintf(m_file, "<polyline class='%s' points='", name);
        for (const Point& point : m_panel.points)
        {
            std::fprintf(m_file, "%.1f,%.1f ", m_left + kWidth * point.x / m_xMax,
                         kTop + kHeight - kHeight * time(point) / m_yMax);
        }
        std::fprintf(m_file, "'/>\n");
    }

    FILE* m_file;
    const Panel& m_panel;
    double m_left;
    double m_xMax = 0;
    double m_yMax = 0;
};

void plot(const std::vector<Panel>& panels, const std::string& path)
{
    FILE* const file = std::fopen(path.c_str(), "w");
    if (file == nullptr)
    {
        fail("cannot write " + path);
    }
    const double width = kLeft + (kWidth + kGap) * static_cast<double>(panels.size());
    std::fprintf(
        file,
        "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 %g %g' font-family='sans-serif' font-size='12'>\n"
        "<style>.title{font-weight:bold}.grid{stroke:#ddd}polyline{fill:none;stroke-width:2}"
        ".library{stroke:#06c}.byhand{stroke:#c60}</style>\n"
        "<rect width='100%%' height='100%%' fill='white'/>\n"
        "<text x='%g' y='14'>Microseconds for a document: <tspan fill='#06c'>the library</tspan>, "
        "<tspan fill='#c60'>cJSON by hand</tspan></text>\n",
        width, kTop + kHeight + 48, kLeft);
    double left = kLeft;
    for (const Panel& panel : panels)
    {
        Drawing(file, panel, left).draw();
        left += kWidth + kGap;
    }
    std::fprintf(file, "</svg>\n");
    std::fclose(file);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 1 && !(argc == 3 && std::strcmp(argv[1], "--plot") == 0))
    {
        std::fprintf(stderr, "usage: %s [--plot FILE]\n", argv[0]);
        return 2;
    }
    std::vector<Panel> panels = {membersPanel(), objectsPanel(), picturePanel()};
    for (int round = 0; round < 40; ++round)
    {
        measureRound(panels);
    }
    print(panels);
    if (argc == 3)
    {
        plot(panels, argv[2]);
    }
}
