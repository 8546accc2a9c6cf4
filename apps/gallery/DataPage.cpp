// Gallery page for the graph data model: series items built from records, JSON, pairs, model
// objects, boxed points and nested periods, with their derived points, ranges and formatted
// values; the cumulative modifier and the padding of the y range drawn as small plots; the
// nearest-point walk and appending. Every value shown is computed here by the library.
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <VelmarCoreUI/Graphing/VLXGraphSeries.h>
#include <VelmarCoreUI/Graphing/VLXSeriesItem.h>
#include <VelmarCoreUI/Platform/Foundation/VLXKeyValueObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRecord.h>
#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>
#include "GalleryPage.h"

// A host model object, read through its properties like any record.
class GallerySample : public VLXObject, public VLXKeyValueObject {
public:
    static std::shared_ptr<GallerySample> create(double hour, double load) {
        auto sample = VLXMakeShared<GallerySample>();
        sample->m_hour = hour;
        sample->m_load = load;
        return sample;
    }
    bool respondsToKey(std::string_view key) const override {
        return key == "hour" || key == "load";
    }
    VLXValue valueForKey(std::string_view key) const override {
        return key == "hour" ? VLXValue(m_hour) : key == "load" ? VLXValue(m_load) : VLXValue();
    }

private:
    double m_hour = 0;
    double m_load = 0;
};

namespace {

using Row = std::vector<std::string>;
constexpr double kScale = 2;
constexpr double kDay = 86400;

std::string num(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

std::string rangeText(VLXGraphSeriesRange range) {
    return "{" + num(range.min) + ", " + num(range.max) + "}";
}

std::string pointsText(const VLXSeriesItem& item, std::size_t limit = 6) {
    std::string text;
    const auto points = item.points();
    for (std::size_t i = 0; i < points.size() && i < limit; ++i) {
        text +=
            (i ? "\n" : "") + std::string("(") + num(points[i].x) + ", " + num(points[i].y) + ")";
    }
    if (points.size() > limit) {
        text += "\n… " + std::to_string(points.size()) + " points";
    }
    return text.empty() ? "(none)" : text;
}

std::string formattedText(const VLXSeriesItem& item) {
    std::string text;
    for (const auto& point : item.points()) {
        text += (text.empty() ? "" : ", ") + item.formatValue(point.y);
    }
    return text;
}

std::string cells(const std::string& tag, const Row& row) {
    std::string html;
    for (const auto& cell : row) {
        html += "<" + tag + ">" + galleryEscapeHTML(cell) + "</" + tag + ">";
    }
    return html;
}

std::string table(const Row& header, const std::vector<Row>& rows) {
    std::string html = "<table class=\"data\"><tr>" + cells("th", header) + "</tr>\n";
    for (const auto& row : rows) {
        html += "<tr>" + cells("td", row) + "</tr>\n";
    }
    return html + "</table>\n";
}

std::string heading(const std::string& title, const std::string& intro) {
    return "<h2>" + galleryEscapeHTML(title) + "</h2>\n<p>" + galleryEscapeHTML(intro) + "</p>\n";
}

std::shared_ptr<VLXSeriesItem> itemReading(const char* x, const char* y) {
    auto item = VLXSeriesItem::create();
    item->setXAxisPropertyName(std::string(x));
    item->setYAxisPropertyName(std::string(y));
    return item;
}

VLXValue pair(double x, double y) {
    return VLXValue(VLXValue::Array{x, y});
}

// --- items from every kind of host data -------------------------------------------------------

struct Example {
    std::string source;
    std::string data;
    std::shared_ptr<VLXSeriesItem> item;
};

std::vector<Example> examples() {
    std::vector<Example> list;
    const VLXDate monday = VLXDate::dateWithTimeIntervalSince1970(20454 * kDay);  // 2026-01-05

    VLXValue::Array records;
    const double rain[] = {12.5, 14, 9.75};
    for (int i = 0; i < 3; ++i) {
        records.emplace_back(VLXRecord::create(
            {{"date", monday.dateByAddingTimeInterval(i * kDay + 9 * 3600)}, {"mm", rain[i]}}));
    }
    auto fromRecords = itemReading("date", "mm");
    fromRecords->setValueFormatter([](double v) {
        char text[32];
        std::snprintf(text, sizeof text, "%.1f mm", v);
        return std::string(text);
    });
    fromRecords->setData(VLXValue(records));
    list.push_back({"VLXRecord (dates at 09:00)", VLXValue(records).toJSON(), fromRecords});

    auto dayOnly = itemReading("date", "mm");
    dayOnly->setIgnoreTime(true);
    dayOnly->setData(VLXValue(records));
    list.push_back({"VLXRecord, ignoreTime", "the same records", dayOnly});

    const std::string json =
        R"([{"t": 0.1, "v": 3.3}, {"t": 0.2, "v": "4.5"}, {"t": 0.3, "v": 5}])";
    auto fromJSON = itemReading("t", "v");
    fromJSON->setData(VLXValue::fromJSON(json));
    list.push_back({"JSON objects (a string y is not a number)", json, fromJSON});

    const VLXValue pairs(VLXValue::Array{pair(1, 3.2), pair(2, 7.6), pair(3, 5)});
    auto fromPairs = VLXSeriesItem::create();
    fromPairs->setData(pairs);
    list.push_back({"pairs [x, y] (single precision)", pairs.toJSON(), fromPairs});

    VLXValue::Array models;
    for (int hour = 8; hour <= 11; ++hour) {
        models.emplace_back(GallerySample::create(hour, 40 + 7 * (hour % 3)));
    }
    auto fromModels = itemReading("hour", "load");
    fromModels->setData(VLXValue(models));
    list.push_back({"VLXKeyValueObject (hour, load)", "GallerySample × 4", fromModels});

    const VLXValue points(VLXValue::Array{VLXSeriesPoint::pointWithX(0.1, 1.0 / 3).value(),
                                          VLXSeriesPoint::pointWithX(0.2, 2.0 / 3).value()});
    auto fromPoints = VLXSeriesItem::create();
    fromPoints->setData(points);
    list.push_back(
        {"boxed VLXSeriesPoint (taken as is)", "pointWithX(0.1, 1/3), (0.2, 2/3)", fromPoints});

    const std::string nested =
        R"([{"station": "north", "periods": [{"day": 1, "mm": 2}, {"day": 2, "mm": 0}, {"day": 3, "mm": 4}]},
  {"station": "south", "periods": [{"day": 1, "mm": 1}, {"day": 2}]}])";
    auto fromPeriods = itemReading("periods.#.day", "periods.#.mm");
    fromPeriods->setData(VLXValue::fromJSON(nested));
    list.push_back(
        {"nested periods \"periods.#.day\" (south: counts differ)", nested, fromPeriods});

    const std::string bad =
        R"([{"x": 1, "y": 2}, {"x": null, "y": 3}, {"y": 4}, {"x": "7", "y": 5}, [1], [1, 2, 3], null, {"z": 1}])";
    auto badInput = itemReading("x", "y");
    badInput->setData(VLXValue::fromJSON(bad));
    list.push_back({"odd input: null x skipped, missing or text x reads 0, wrong arrays left out",
                    bad, badInput});
    return list;
}

std::string itemsSection() {
    std::vector<Row> rows;
    for (const auto& example : examples()) {
        auto& item = *example.item;
        rows.push_back({example.source, example.data, pointsText(item),
                        rangeText(item.rangeForAxis(VLXGraphAxisTypeX)),
                        rangeText(item.rangeForAxis(VLXGraphAxisTypeY)), formattedText(item)});
    }
    return heading("Items from host data",
                   "Each item reads x and y by name (or takes pairs and boxed points as they "
                   "are). Numbers are read at single precision, dates as seconds since 1970. The "
                   "x range widens a single value by 0.5 each way; the y range is rounded out to "
                   "the interval (1). Formatted values use the item's formatter, else \"%.0f\".") +
           table({"source", "data", "points", "x range", "y range", "formatted y"}, rows);
}

// --- small plots ------------------------------------------------------------------------------

struct Line {
    std::shared_ptr<VLXSeriesItem> item;
    VLXColor color;
};

VLXColor ink() {
    return VLXColor::colorWithWhite(0.2, 1);
}

void label(VLXGraphicsContext& context, const std::string& text, VLXPoint at, double size = 9) {
    VLXTextAttributes attributes;
    attributes.font = VLXFont::systemFontOfSize(size);
    attributes.foregroundColor = ink();
    VLXStringDrawAtPoint(context, text, at, attributes);
}

// Draws the items into a plot whose vertical extent is `yRange`, with a grid line at each
// `step` and the bounds labelled; the x extent covers every item's points.
std::string plot(const std::filesystem::path& directory, const std::string& file,
                 const std::string& caption, const std::vector<Line>& lines,
                 VLXGraphSeriesRange yRange, double step, const std::string& note = "") {
    const VLXSize size = VLXSizeMake(260, 170);
    auto context = VLXGraphicsContext::createBitmap(size, kScale);
    context->setFillColor(VLXColor::whiteColor());
    context->fillRect(VLXRectMake(0, 0, size.width, size.height));
    const VLXRect area = VLXRectMake(40, 14, 200, 130);

    double minX = INFINITY;
    double maxX = -INFINITY;
    for (const auto& line : lines) {
        for (const auto& p : line.item->points()) {
            minX = std::fmin(minX, p.x);
            maxX = std::fmax(maxX, p.x);
        }
    }
    if (!(maxX > minX)) {
        minX -= 1;
        maxX += 1;
    }
    auto map = [&](VLXSeriesPoint p) {
        return VLXPointMake(area.origin.x + (p.x - minX) / (maxX - minX) * area.size.width,
                            area.origin.y + area.size.height -
                                (p.y - yRange.min) / (yRange.max - yRange.min) * area.size.height);
    };

    // Grid at each step of the range, the bounds labelled.
    context->setLineWidth(0.5);
    for (double y = yRange.min; y <= yRange.max + step * 1e-9; y += step) {
        const bool bound = y == yRange.min || std::fabs(y - yRange.max) < step * 1e-9;
        context->setStrokeColor(VLXColor::colorWithWhite(0, bound ? 0.45 : 0.12));
        const VLXPoint left = map({minX, y});
        context->moveToPoint(VLXPointMake(area.origin.x, left.y));
        context->addLineToPoint(VLXPointMake(area.origin.x + area.size.width, left.y));
        context->strokePath();
        label(*context, num(y), VLXPointMake(6, left.y - 6));
    }
    // Data outside the range (below a constrained lower bound) are cut at the plot's edge.
    context->saveGState();
    context->clipToRect(VLXRectInset(area, -4, -4));
    for (const auto& line : lines) {
        const auto points = line.item->points();
        context->setStrokeColor(line.color);
        context->setLineWidth(line.item->strokeWidth());
        for (std::size_t i = 0; i < points.size(); ++i) {
            i == 0 ? context->moveToPoint(map(points[i])) : context->addLineToPoint(map(points[i]));
        }
        context->strokePath();
        context->setFillColor(line.color);
        for (const auto& p : points) {
            const VLXPoint c = map(p);
            context->fillEllipseInRect(VLXRectMake(c.x - 3, c.y - 3, 6, 6));
        }
    }
    context->restoreGState();
    if (!note.empty()) {
        label(*context, note, VLXPointMake(area.origin.x, area.origin.y + area.size.height + 8),
              10);
    }
    return galleryFigure(directory, file, *context, caption);
}

std::string cumulativeSection(const std::filesystem::path& directory) {
    const VLXValue data(
        VLXValue::Array{pair(1, 2), pair(2, 3), pair(3, 1), pair(4, 4), pair(5, 2)});
    auto plain = VLXSeriesItem::create();
    plain->setData(data);
    auto total = VLXSeriesItem::create();
    total->setModifier(VLXSeriesItemModifierCumulative);
    total->setData(data);

    // A null y in keyed data restarts the total: the skipped element hands on its own y (0).
    const VLXValue keyed = VLXValue::fromJSON(
        R"([{"x": 1, "y": 2}, {"x": 2, "y": 3}, {"x": 3, "y": null}, {"x": 4, "y": 4}, {"x": 5, "y": 2}])");
    auto restarted = itemReading("x", "y");
    restarted->setModifier(VLXSeriesItemModifierCumulative);
    restarted->setData(keyed);

    auto combined = VLXGraphSeries::seriesWithItems({plain, total});
    const VLXGraphSeriesRange range = combined->rangeForAxis(VLXGraphAxisTypeY);
    const std::string figures =
        plot(directory, "data-cumulative.png",
             "grey: y as read; blue: VLXSeriesItemModifierCumulative (running total)",
             {{plain, VLXColor::colorWithWhite(0.55, 1)},
              {total, VLXColor::colorWithRed(0.15, 0.4, 0.8, 1)}},
             range, 1, "combined y range " + rangeText(range)) +
        plot(directory, "data-cumulative-null.png",
             "keyed data with a null y at x = 3: skipped, the total restarts",
             {{restarted, VLXColor::colorWithRed(0.8, 0.35, 0.1, 1)}},
             restarted->rangeForAxis(VLXGraphAxisTypeY), 1,
             "y range " + rangeText(restarted->rangeForAxis(VLXGraphAxisTypeY)));
    return heading("Cumulative modifier",
                   "With the cumulative modifier each y has the previous derived point's y "
                   "added. Elements that add no point (a null value, an array of the wrong "
                   "length) restart the running total.") +
           "<div class=\"columns\">" + figures + "</div>\n" +
           table({"data", "as read", "cumulative", "null y at x = 3"},
                 {{data.toJSON(), pointsText(*plain), pointsText(*total), pointsText(*restarted)}});
}

std::string paddingSection(const std::filesystem::path& directory) {
    struct Case {
        const char* file;
        const char* caption;
        std::vector<double> ys;
        double interval;
        bool constrain;
    };
    const std::vector<Case> cases = {
        {"data-padding-between.png",
         "y 3.2 … 7.6, interval 1: rounded out to {3, 8}",
         {3.2, 6.1, 4.4, 7.6},
         1,
         false},
        {"data-padding-on-step.png",
         "y 3 … 8, interval 1: on the step, padded a whole step",
         {3, 6, 4, 8},
         1,
         false},
        {"data-padding-interval.png",
         "y 3.2 … 7.6, interval 2.5",
         {3.2, 6.1, 4.4, 7.6},
         2.5,
         false},
        {"data-padding-constrained.png",
         "y −1.5 … 4, constrainToPositiveValues: low end at 0",
         {-1.5, 2, 0.5, 4},
         1,
         true},
    };
    std::string figures;
    std::vector<Row> rows;
    for (const auto& c : cases) {
        VLXValue::Array data;
        for (std::size_t i = 0; i < c.ys.size(); ++i) {
            data.push_back(VLXSeriesPoint::pointWithX(static_cast<double>(i), c.ys[i]).value());
        }
        auto item = VLXSeriesItem::create();
        item->setInterval(c.interval);
        item->setConstrainToPositiveValues(c.constrain);
        item->setData(VLXValue(std::move(data)));
        const VLXGraphSeriesRange range = item->rangeForAxis(VLXGraphAxisTypeY);
        figures +=
            plot(directory, c.file, c.caption, {{item, VLXColor::colorWithRed(0.1, 0.55, 0.35, 1)}},
                 range, c.interval, "y range " + rangeText(range));
        std::string ys;
        for (double y : c.ys) {
            ys += (ys.empty() ? "" : ", ") + num(y);
        }
        rows.push_back({ys, num(c.interval), c.constrain ? "yes" : "no", rangeText(range)});
    }
    return heading("Padding of the y range",
                   "The y range is rounded out to the interval; a bound already on a step is "
                   "moved out by a whole step, so the data never touch the plot's edge. Grid "
                   "lines mark each step; the darker lines are the range's bounds.") +
           "<div class=\"columns\">" + figures + "</div>\n" +
           table({"y values", "interval", "constrained", "y range"}, rows);
}

std::string nearestSection() {
    std::vector<Row> rows;
    auto sorted = VLXSeriesItem::create();
    sorted->setPoints({{0, 0}, {10, 1}, {20, 2}, {30, 3}});
    auto unsorted = VLXSeriesItem::create();
    unsorted->setPoints({{0, 0}, {10, 1}, {1, 2}, {50, 3}, {40, 4}});
    auto answer = [](VLXSeriesItem& item, double value) {
        const auto handle = item.closestPointToValue(value, VLXGraphAxisTypeX);
        return handle ? "#" + std::to_string(handle->index) + " (" + num(handle->x()) + ")"
                      : std::string("nil");
    };
    for (double v : {12.0, 15.0, 16.0, -100.0, 38.0, 40.0, 41.0}) {
        rows.push_back({"0, 10, 20, 30 (sorted: binary search)", num(v), answer(*sorted, v)});
    }
    for (double v : {9.0, 45.0, 60.0}) {
        rows.push_back({"0, 10, 1, 50, 40 (unsorted: walk)", num(v), answer(*unsorted, v)});
    }
    return heading("Nearest point",
                   "The answer is the last point closer than its predecessor (the first exact "
                   "match wins); beyond the x range's end it is the last point when the value "
                   "lies within the last spacing, else nil. On unsorted data that need not be "
                   "the nearest point. Sorted items answer the same in O(log n).") +
           table({"x of the points", "value", "answer"}, rows);
}

std::string appendSection() {
    VLXValue::Array first;
    VLXValue::Array more;
    for (int i = 0; i < 100000; ++i) {
        first.emplace_back(VLXRecord::create({{"x", i}, {"y", std::sin(i * 0.01)}}));
    }
    for (int i = 100000; i < 100010; ++i) {
        more.emplace_back(VLXRecord::create({{"x", i}, {"y", 2.5}}));
    }
    auto appended = itemReading("x", "y");
    appended->setData(VLXValue(first));
    appended->rangeForAxis(VLXGraphAxisTypeY);
    appended->appendData(VLXValue(more));
    VLXValue::Array all = first;
    all.insert(all.end(), more.begin(), more.end());
    auto assigned = itemReading("x", "y");
    assigned->setData(VLXValue(std::move(all)));
    auto row = [](const char* how, VLXSeriesItem& item) {
        return Row{how, std::to_string(item.points().size()),
                   rangeText(item.rangeForAxis(VLXGraphAxisTypeX)),
                   rangeText(item.rangeForAxis(VLXGraphAxisTypeY)),
                   item.isSortedAlongAxis(VLXGraphAxisTypeX) ? "yes" : "no"};
    };
    return heading("Appending",
                   "appendData derives only the new records and extends the extents, with the "
                   "same points and ranges as assigning the whole array.") +
           table({"", "points", "x range", "y range", "sorted along x"},
                 {row("100 000 records, then 10 appended", *appended),
                  row("100 010 records assigned", *assigned)});
}

}  // namespace

GalleryPage makeDataPage(const std::filesystem::path& outputDirectory) {
    GalleryPage page;
    page.id = "data";
    page.title = "Graph data";
    page.summary =
        "series items from records, JSON, pairs and nested periods; ranges, the "
        "cumulative modifier, y-range padding, nearest points and appending";
    page.bodyHTML = "<h1>" + galleryEscapeHTML(page.title) + "</h1>\n" + itemsSection() +
                    cumulativeSection(outputDirectory) + paddingSection(outputDirectory) +
                    nearestSection() + appendSection();
    return page;
}
