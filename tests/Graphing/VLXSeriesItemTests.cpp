#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <regex>
#include <set>
#include <string>

#include <VelmarCoreUI/Core/VLXLogger.h>
#include <VelmarCoreUI/Graphing/VLXSeriesItem.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRecord.h>

#include "GraphingTestSupport.h"

namespace {

double f32(double x) {
    return static_cast<double>(static_cast<float>(x));
}

constexpr double kDay = 86400;

}  // namespace

TEST(GraphSeriesRange, EmptinessIsExactZero) {
    EXPECT_TRUE(VLXGraphSeriesRangeIsEmpty(VLXGraphSeriesRangeMake(0, 0)));
    EXPECT_TRUE(VLXGraphSeriesRangeIsEmpty(VLXGraphSeriesRangeMake(-0.0, 0)));
    EXPECT_FALSE(VLXGraphSeriesRangeIsEmpty(VLXGraphSeriesRangeMake(0, 1)));
    EXPECT_FALSE(VLXGraphSeriesRangeIsEmpty(VLXGraphSeriesRangeMake(NAN, 0)));
    EXPECT_TRUE(VLXGraphSeriesRangeIsEmpty(VLXGraphSeriesRangeZero));
    // No ordering: what is given is kept.
    EXPECT_EQ(VLXGraphSeriesRangeMake(5, -5).min, 5);

    const VLXGraphSeriesDomain domain = VLXGraphSeriesDomainMake(1, 2, 3, 4);
    EXPECT_EQ(domain.minX, 1);
    EXPECT_EQ(domain.maxX, 2);
    EXPECT_EQ(domain.minY, 3);
    EXPECT_EQ(domain.maxY, 4);
    EXPECT_FALSE(VLXGraphSeriesDomainIsEmpty(domain));
    EXPECT_FALSE(VLXGraphSeriesDomainIsEmpty(VLXGraphSeriesDomainMake(0, 0, 0, 1)));
    EXPECT_TRUE(VLXGraphSeriesDomainIsEmpty(VLXGraphSeriesDomainZero));
}

TEST(SeriesItem, Defaults) {
    auto item = VLXSeriesItem::create();
    const std::regex pattern("series-([0-9]{1,3})");
    std::smatch match;
    ASSERT_TRUE(std::regex_match(item->identifier(), match, pattern)) << item->identifier();
    EXPECT_EQ(item->title(), item->identifier());
    EXPECT_TRUE(item->data().isNil());
    EXPECT_FALSE(item->xAxisPropertyName().has_value());
    EXPECT_EQ(item->interval(), 1.0);
    EXPECT_FALSE(item->constrainToPositiveValues());
    EXPECT_FALSE(item->ignoreTime());
    EXPECT_FALSE(item->ignoreZeroValues());
    EXPECT_EQ(item->modifier(), VLXSeriesItemModifierNone);
    EXPECT_EQ(item->rendererType(), 0);
    EXPECT_FALSE(item->fillColor().has_value());
    EXPECT_EQ(item->strokeColor(), VLXColor::blackColor());
    EXPECT_EQ(item->strokeWidth(), 2.0);
    EXPECT_EQ(item->pointRadius(), 5.0);
    EXPECT_TRUE(item->points().empty());
    EXPECT_FALSE(item->minDate().has_value());
    EXPECT_FALSE(item->formatter());
    EXPECT_TRUE(VLXGraphSeriesRangeIsEmpty(item->xAxisDataRange()));
    EXPECT_TRUE(VLXGraphSeriesRangeIsEmpty(item->yAxisDataRange()));

    // The number is random: sixty items do not all share one.
    std::set<std::string> identifiers;
    for (int i = 0; i < 60; ++i) {
        identifiers.insert(VLXSeriesItem::create()->identifier());
    }
    EXPECT_GT(identifiers.size(), 1u);
}

TEST(SeriesItem, EveryKindOfHostDataReadsTheSame) {
    const VLXDate date = VLXDate::dateWithTimeIntervalSince1970(1.7e9 + 0.25);
    // The same two samples as a record, a JSON object, a model object and a pair (pairs read
    // numbers only, so the date travels as its seconds there).
    auto fromRecords = itemReading("x", "y");
    fromRecords->setData(VLXValue::Array{record(date, 0.1), record(3, 12.5)});
    auto fromJSON = itemReading("x", "y");
    fromJSON->setData(
        VLXValue::fromJSON(R"([{"x": 1700000000.25, "y": 0.1}, {"x": 3, "y": 12.5}])"));
    auto fromModels = itemReading("time", "amount");
    fromModels->setData(VLXValue::Array{VLXValue(TestSample::create(date, 0.1)),
                                        VLXValue(TestSample::create(3, 12.5))});
    auto fromPairs = VLXSeriesItem::create();
    fromPairs->setData(VLXValue::Array{pair(1.7e9 + 0.25, 0.1), pair(3, 12.5)});

    // Numbers are read at single precision; dates give their seconds as they are.
    const std::vector<VLXSeriesPoint> dated = {{1.7e9 + 0.25, f32(0.1)}, {3, 12.5}};
    EXPECT_EQ(pointsOf(*fromRecords), dated);
    EXPECT_EQ(pointsOf(*fromModels), dated);
    const std::vector<VLXSeriesPoint> numeric = {{f32(1.7e9 + 0.25), f32(0.1)}, {3, 12.5}};
    EXPECT_EQ(pointsOf(*fromJSON), numeric);
    EXPECT_EQ(pointsOf(*fromPairs), numeric);

    // Pair members are read like any value: strings as numbers, other kinds as 0.
    auto mixed = VLXSeriesItem::create();
    mixed->setData(VLXValue::Array{pair(" 2.5e1xyz", VLXValue::null()), pair(date, "abc")});
    EXPECT_EQ(pointsOf(*mixed),
              (std::vector<VLXSeriesPoint>{{25, 0}, {f32(date.timeIntervalSince1970()), 0}}));

    // A boxed series point is taken as is: full precision, no names needed.
    auto boxed = VLXSeriesItem::create();
    boxed->setData(VLXValue::Array{VLXSeriesPoint::pointWithX(0.1, 1e300).value()});
    EXPECT_EQ(pointsOf(*boxed), (std::vector<VLXSeriesPoint>{{0.1, 1e300}}));
    EXPECT_EQ(VLXSeriesPoint::fromValue(VLXSeriesPoint::pointWithX(1, 2).value()),
              VLXSeriesPoint::pointWithX(1, 2));
    EXPECT_FALSE(VLXSeriesPoint::fromValue(record(1, 2)).has_value());
    EXPECT_EQ(VLXSeriesPoint::fromValue(VLXValue::valueWithPoint(VLXPointMake(3, 4))),
              VLXSeriesPoint::pointWithX(3, 4));
    EXPECT_FALSE(VLXSeriesPoint::fromValue(VLXValue::valueWithSize(VLXSizeMake(3, 4))));
    // Other boxes are no data objects: with names set they add nothing.
    auto sizes = itemReading("x", "y");
    sizes->setData(VLXValue::Array{VLXValue::valueWithSize(VLXSizeMake(3, 4))});
    EXPECT_TRUE(sizes->points().empty());
}

TEST(SeriesItem, ValuesThatAreNotNumbersOrDates) {
    // x names a string, a null, a nested array, a missing key and a nil field.
    auto item = itemReading("x", "y");
    auto withNil = VLXRecord::create({{"x", VLXValue()}, {"y", 4}});
    item->setData(VLXValue::Array{
        record("12", 1),                                     // string: x stays 0
        record(VLXValue::null(), 2),                         // null: skipped
        record(VLXValue::Array{1, 2}, 3),                    // array: x 0
        VLXValue(VLXRecord::create({{"y", 5}})),             // no x: x 0, not skipped
        VLXValue(withNil),                                   // nil field: x 0
        record(1, std::numeric_limits<double>::infinity()),  // infinities survive
        record(NAN, 1e39),                                   // beyond float: inf
    });
    const auto points = pointsOf(*item);
    ASSERT_EQ(points.size(), 6u);
    EXPECT_EQ(points[0], (VLXSeriesPoint{0, 1}));
    EXPECT_EQ(points[1], (VLXSeriesPoint{0, 3}));
    EXPECT_EQ(points[2], (VLXSeriesPoint{0, 5}));
    EXPECT_EQ(points[3], (VLXSeriesPoint{0, 4}));
    EXPECT_EQ(points[4].y, INFINITY);
    EXPECT_TRUE(std::isnan(points[5].x));
    EXPECT_EQ(points[5].y, INFINITY);

    // With ignoreZeroValues, values that are neither numbers nor dates and read as 0 skip the
    // element; a number 0 never does.
    auto zeros = itemReading("x", "y");
    zeros->setIgnoreZeroValues(true);
    zeros->setData(VLXValue::Array{record("0", 1), record("7", 2), record(0, 0), record(1, "x")});
    EXPECT_EQ(pointsOf(*zeros), (std::vector<VLXSeriesPoint>{{0, 2}, {0, 0}}));

    // Elements that are no data objects: nil adds nothing, and neither do scalars, which answer
    // no names. Arrays of the wrong length add nothing.
    auto odd = itemReading("x", "y");
    odd->setData(VLXValue::Array{VLXValue(), VLXValue(5), VLXValue("s"), VLXValue::null(),
                                 VLXValue(VLXValue::Array{1, 2, 3}), VLXValue(VLXValue::Array{}),
                                 record(1, 1)});
    EXPECT_EQ(pointsOf(*odd), (std::vector<VLXSeriesPoint>{{1, 1}}));
}

TEST(SeriesItem, CumulativeModifier) {
    auto pairs = VLXSeriesItem::create();
    pairs->setModifier(VLXSeriesItemModifierCumulative);
    pairs->setData(VLXValue::Array{pair(0, 1), pair(1, 2), pair(2, 3)});
    EXPECT_EQ(pointsOf(*pairs), (std::vector<VLXSeriesPoint>{{0, 1}, {1, 3}, {2, 6}}));

    // A null y skips the element and restarts the total from its unadjusted y (0); a wrong-length
    // array, a nil element and a boxed point restart it too.
    auto records = itemReading("x", "y");
    records->setModifier(VLXSeriesItemModifierCumulative);
    records->setData(
        VLXValue::Array{record(0, 1), record(1, 2), record(2, VLXValue::null()), record(3, 4),
                        VLXValue(VLXValue::Array{1}), record(4, 5), VLXValue(), record(5, 6),
                        VLXSeriesPoint::pointWithX(6, 100).value(), record(7, 1), record(8, 1)});
    EXPECT_EQ(pointsOf(*records),
              (std::vector<VLXSeriesPoint>{
                  {0, 1}, {1, 3}, {3, 4}, {4, 5}, {5, 6}, {6, 100}, {7, 1}, {8, 2}}));

    // A skipped element hands on its own unadjusted y: a null x with y 10 makes the next 10 + 1.
    auto skipped = itemReading("x", "y");
    skipped->setModifier(VLXSeriesItemModifierCumulative);
    skipped->setData(VLXValue::Array{record(0, 5), record(VLXValue::null(), 10), record(2, 1)});
    EXPECT_EQ(pointsOf(*skipped), (std::vector<VLXSeriesPoint>{{0, 5}, {2, 11}}));

    // Other modifier values behave as none.
    auto other = VLXSeriesItem::create();
    other->setModifier(7);
    other->setData(VLXValue::Array{pair(0, 1), pair(1, 2)});
    EXPECT_EQ(pointsOf(*other), (std::vector<VLXSeriesPoint>{{0, 1}, {1, 2}}));
}

TEST(SeriesItem, MissingPropertyNamesAreLoggedPerObject) {
    VLXLogCapture capture;
    auto item = VLXSeriesItem::create();
    item->setYAxisPropertyName(std::string("y"));  // x stays nil
    item->setData(VLXValue::Array{record(1, 2), pair(3, 4), VLXValue(VLXValue::Dictionary{}),
                                  VLXValue(), VLXValue::null(),
                                  VLXSeriesPoint::pointWithX(5, 6).value()});
    // Pairs and boxed points need no names; nil elements are not objects.
    EXPECT_EQ(pointsOf(*item), (std::vector<VLXSeriesPoint>{{f32(3), f32(4)}, {5, 6}}));
    ASSERT_EQ(capture.records().size(), 3u);
    const VLXLogRecord& first = capture.records()[0];
    EXPECT_EQ(first.level, 4);
    EXPECT_EQ(first.file, "Source/Graphing/VLXSeriesItem");
    EXPECT_EQ(first.function, "-[VLXSeriesItem seriesData]_block_invoke");
    EXPECT_EQ(first.line, 242);
    EXPECT_EQ(first.message,
              "Cannot add VLXRecord object to graph series at index 0, xAxisPropertyName or "
              "yAxisPropertyName are not defined.");
    EXPECT_NE(capture.records()[1].message.find("NSDictionary object to graph series at index 2"),
              std::string::npos);
    EXPECT_NE(capture.records()[2].message.find("NSNull object to graph series at index 4"),
              std::string::npos);

    // An empty name counts as missing.
    capture.clear();
    auto empty = itemReading("", "y");
    empty->setData(VLXValue::Array{record(1, 2)});
    EXPECT_EQ(capture.records().size(), 1u);
    EXPECT_TRUE(empty->points().empty());
}

TEST(SeriesItem, NestedPeriods) {
    const VLXDate day1 = VLXDate::dateWithTimeIntervalSince1970(20 * kDay + 3600);
    const VLXDate day2 = VLXDate::dateWithTimeIntervalSince1970(21 * kDay + 7200);
    auto period = [](VLXValue date, VLXValue value) {
        return VLXValue(
            VLXValue::Dictionary{{"date", std::move(date)}, {"value", std::move(value)}});
    };
    auto holder = [](VLXValue periods) {
        return VLXValue(VLXRecord::create({{"name", "a"}, {"periods", std::move(periods)}}));
    };
    auto item = itemReading("periods.#.date", "periods.#.value");
    item->setModifier(VLXSeriesItemModifierCumulative);
    item->setData(VLXValue::Array{
        pair(0, 100),  // the periods restart the running total
        holder(VLXValue::Array{period(day1, 1), period(day2, "2.5")}),
        holder(VLXValue::Array{period(day1, 1), VLXValue(VLXValue::Dictionary{{"date", day2}})}),
        holder(VLXValue("not an array")),
        VLXValue(VLXRecord::create({{"name", "no periods"}})),
        pair(9, 1),
    });
    // Dates in periods are read at single precision; strings read as numbers here. The second
    // holder's counts differ (one period lacks a value) and adds nothing but restarts the total.
    EXPECT_EQ(pointsOf(*item),
              (std::vector<VLXSeriesPoint>{
                  {0, 100}, {f32(20 * kDay + 3600), 1}, {f32(21 * kDay + 7200), 3.5}, {9, 1}}));

    // ignoreTime reduces the dates to their day; a zero total with ignoreZeroValues adds nothing
    // but still carries on.
    auto days = itemReading("periods.#.date", "periods.#.value");
    days->setIgnoreTime(true);
    days->setIgnoreZeroValues(true);
    days->setModifier(VLXSeriesItemModifierCumulative);
    days->setData(VLXValue::Array{holder(
        VLXValue::Array{period(day1, 0), period(day2, 2), period(day1, -2), period(day2, 1)})});
    EXPECT_EQ(pointsOf(*days),
              (std::vector<VLXSeriesPoint>{{f32(21 * kDay), 2}, {f32(21 * kDay), 1}}));
}

TEST(SeriesItem, KeyPathParsing) {
    auto item = VLXSeriesItem::create();
    const VLXValue inner = VLXValue(VLXValue::Dictionary{{"b", 7}});
    const VLXValue object = VLXValue(VLXRecord::create({{"a", inner}, {"c", 3}}));
    EXPECT_EQ(item->parseKeyPath("a.b", object), VLXValue(7));
    EXPECT_TRUE(item->parseKeyPath("a.zz", object).isNil());
    EXPECT_TRUE(item->parseKeyPath("", object).isNil());

    // Arrays map the path and leave out nil results.
    const VLXValue list = VLXValue(VLXValue::Array{object, VLXValue(VLXRecord::create({{"x", 1}})),
                                                   VLXValue(VLXValue::Array{object})});
    EXPECT_EQ(item->parseKeyPath("c", list),
              VLXValue(VLXValue::Array{3, VLXValue(VLXValue::Array{3})}));

    // ".#.": the array under the first component, mapped with the second; later components
    // are ignored; a missing first component gives nil; a non-array value comes back as is.
    const VLXValue holder = VLXValue(VLXRecord::create(
        {{"periods", VLXValue(VLXValue::Array{object, object})}, {"single", object}}));
    EXPECT_EQ(item->parseKeyPath("periods.#.c", holder), VLXValue(VLXValue::Array{3, 3}));
    EXPECT_EQ(item->parseKeyPath("periods.#.a.b.#.ignored", holder),
              VLXValue(VLXValue::Array{7, 7}));
    EXPECT_TRUE(item->parseKeyPath("missing.#.c", holder).isNil());
    EXPECT_EQ(item->parseKeyPath("single.#.c", holder), object);

    // Dates become their day with ignoreTime, in plain reads only.
    const VLXDate noon = VLXDate::dateWithTimeIntervalSince1970(3 * kDay + 43200);
    const VLXValue dated = VLXValue(VLXRecord::create({{"d", noon}}));
    EXPECT_EQ(item->parseKeyPath("d", dated), VLXValue(noon));
    item->setIgnoreTime(true);
    EXPECT_EQ(item->parseKeyPath("d", dated),
              VLXValue(VLXDate::dateWithTimeIntervalSince1970(3 * kDay)));
    EXPECT_EQ(item->timeIntervalForPointValueWithDate(noon), 3 * kDay);

    // Deep nesting is walked without recursion.
    VLXValue deep = object;
    for (int i = 0; i < 3000; ++i) {
        deep = VLXValue(VLXValue::Array{deep});
    }
    VLXValue result = item->parseKeyPath("c", deep);
    int depth = 0;
    while (result.isArray() && result.count() == 1) {
        result = result.objectAtIndex(0);
        ++depth;
    }
    EXPECT_EQ(depth, 3000);
    EXPECT_EQ(result, VLXValue(3));
}

TEST(SeriesItem, Ranges) {
    auto item = VLXSeriesItem::create();
    // No points: the start values, min above max.
    EXPECT_EQ(item->xDataRange().min, DBL_MAX);
    EXPECT_EQ(item->xDataRange().max, DBL_MIN);
    EXPECT_FALSE(item->containsData());

    item->setData(VLXValue::Array{pair(5, 5)});
    EXPECT_EQ(item->xDataRange().min, 4.5);
    EXPECT_EQ(item->xDataRange().max, 5.5);
    EXPECT_EQ(item->yDataRange().min, 4);
    EXPECT_EQ(item->yDataRange().max, 6);

    item->setData(VLXValue::Array{pair(-3, 3.2), pair(-1, 7.6), pair(-2, 5)});
    // All-negative x keep the smallest positive double as max.
    EXPECT_EQ(item->xDataRange().min, -3);
    EXPECT_EQ(item->xDataRange().max, DBL_MIN);
    EXPECT_EQ(item->yDataRange().min, 3);
    EXPECT_EQ(item->yDataRange().max, 8);
    item->setInterval(2);
    EXPECT_EQ(item->yDataRange().min, 2);
    EXPECT_EQ(item->yDataRange().max, 8);
    // A negative step rounds the other way: floor(3.2 / -1) = -4, ceil(7.6 / -1) = -7.
    item->setInterval(-1);
    EXPECT_EQ(item->yDataRange().min, 4);
    EXPECT_EQ(item->yDataRange().max, 7);
    // A step of 0 or NaN gives NaN bounds, which are not empty.
    item->setInterval(0);
    EXPECT_TRUE(std::isnan(item->yDataRange().min));
    EXPECT_TRUE(std::isnan(item->yDataRange().max));
    item->setInterval(NAN);
    EXPECT_TRUE(std::isnan(item->yDataRange().max));

    item->setInterval(1);
    item->setData(VLXValue::Array{pair(0, 3), pair(1, 8)});
    EXPECT_EQ(item->yDataRange().min, 2);
    EXPECT_EQ(item->yDataRange().max, 9);

    // One y of 0 with the constraint: lo -1 clamps to 0, hi 1.
    item->setConstrainToPositiveValues(true);
    item->setData(VLXValue::Array{pair(0, 0)});
    EXPECT_EQ(item->yDataRange().min, 0);
    EXPECT_EQ(item->yDataRange().max, 1);
    item->setConstrainToPositiveValues(false);
    EXPECT_EQ(item->yDataRange().min, -1);

    // The quotients go through a float: 16777216.5 narrows to 16777216, so the upper bound lands
    // below the largest y, and 16777217.5 narrows to 16777218 for the lower bound.
    auto wide = VLXSeriesItem::create();
    wide->setData(VLXValue::Array{VLXSeriesPoint::pointWithX(0, 16777217.5).value(),
                                  VLXSeriesPoint::pointWithX(1, 16777300.5).value()});
    EXPECT_EQ(wide->yDataRange().min, 16777218);
    wide->setData(VLXValue::Array{VLXSeriesPoint::pointWithX(0, 1).value(),
                                  VLXSeriesPoint::pointWithX(1, 16777216.5).value()});
    EXPECT_EQ(wide->yDataRange().max, 16777216);

    // NaN coordinates move no bound.
    wide->setData(VLXValue::Array{pair(NAN, 2), pair(3, NAN), pair(1, 4)});
    EXPECT_EQ(wide->xDataRange().min, 1);
    EXPECT_EQ(wide->xDataRange().max, 3);
}

TEST(SeriesItem, CachesFollowDataAssignmentOnly) {
    auto item = VLXSeriesItem::create();
    const VLXValue data = VLXValue(VLXValue::Array{pair(1, 3.2), pair(4, 7.6)});
    item->setData(data);
    const std::uint64_t generation = item->pointsGeneration();
    EXPECT_TRUE(VLXGraphSeriesRangeIsEmpty(item->yAxisDataRange()));
    EXPECT_EQ(item->rangeForAxis(VLXGraphAxisTypeX).max, 4);
    EXPECT_EQ(item->rangeForAxis(VLXGraphAxisTypeY).max, 8);
    EXPECT_EQ(item->yAxisDataRange().max, 8);
    // Every non-zero axis is y.
    EXPECT_EQ(item->rangeForAxis(5).min, 3);

    // Options changed later do not touch the cache or the points…
    item->setInterval(10);
    item->setModifier(VLXSeriesItemModifierCumulative);
    EXPECT_EQ(item->rangeForAxis(VLXGraphAxisTypeY).max, 8);
    EXPECT_EQ(item->yDataRange().max, 10);  // the fresh computation does see the new step
    // …nor does assigning the same array again.
    item->setData(data);
    EXPECT_EQ(item->pointsGeneration(), generation);
    EXPECT_EQ(item->points()[1].y, f32(7.6));
    EXPECT_EQ(item->rangeForAxis(VLXGraphAxisTypeY).max, 8);

    // Points assigned directly leave the caches; an equal but different array re-derives.
    item->setPoints({{0, 100}, {1, 200}});
    EXPECT_EQ(item->rangeForAxis(VLXGraphAxisTypeX).max, 4);
    EXPECT_EQ(item->xDataRange().max, 1);
    item->setData(VLXValue(VLXValue::Array(data.arrayValue())));
    EXPECT_EQ(item->points()[1].y, f32(7.6) + f32(3.2));
    EXPECT_EQ(item->rangeForAxis(VLXGraphAxisTypeY).max, 20);

    // A cache set to a range is returned as it is until emptied.
    item->setXAxisDataRange({-1, 1});
    EXPECT_EQ(item->rangeForAxis(VLXGraphAxisTypeX).max, 1);
    item->setXAxisDataRange(VLXGraphSeriesRangeZero);
    EXPECT_EQ(item->rangeForAxis(VLXGraphAxisTypeX).max, 4);

    // A record changed after assignment shows only once a new array is assigned.
    auto mutable_ = VLXRecord::create({{"x", 1}, {"y", 1}});
    auto keyed = itemReading("x", "y");
    const VLXValue records(VLXValue::Array{VLXValue(mutable_)});
    keyed->setData(records);
    mutable_->setValue("y", 5);
    keyed->setData(records);
    EXPECT_EQ(keyed->points()[0].y, 1);
    keyed->setData(VLXValue(VLXValue::Array(records.arrayValue())));
    EXPECT_EQ(keyed->points()[0].y, 5);

    // Nil data and data that are not an array derive nothing.
    item->setData(VLXValue("text"));
    EXPECT_FALSE(item->containsData());
    item->setData(VLXValue());
    EXPECT_FALSE(item->containsData());
    EXPECT_TRUE(item->data().isNil());
}

TEST(SeriesItem, CopyFollowsTheAssignmentOrder) {
    VLXLogCapture capture;
    auto item = itemReading("x", "y");
    item->setData(VLXValue::Array{record(1, 2), record(3, 4)});
    item->setTitle("Temperature");
    item->setInterval(5);
    item->setConstrainToPositiveValues(true);
    item->setIgnoreTime(true);
    item->setIgnoreZeroValues(true);
    item->setModifier(VLXSeriesItemModifierCumulative);
    item->setValueFormatter([](double v) { return std::to_string(static_cast<int>(v)) + " °C"; });
    item->setRendererType(1);
    item->setFillColor(VLXColor::redColor());
    item->setStrokeColor(VLXColor::grayColor());
    item->setStrokeWidth(3);
    item->setPointRadius(7);
    capture.clear();

    auto copy = item->copy();
    // Data are set before the names: keyed objects give no points and one error each.
    EXPECT_TRUE(copy->points().empty());
    EXPECT_EQ(capture.records().size(), 2u);
    EXPECT_EQ(copy->data(), item->data());
    EXPECT_EQ(copy->title(), "Temperature");
    EXPECT_EQ(copy->xAxisPropertyName(), item->xAxisPropertyName());
    EXPECT_EQ(copy->interval(), 5);
    EXPECT_TRUE(copy->constrainToPositiveValues());
    EXPECT_TRUE(copy->ignoreTime());
    EXPECT_EQ(copy->formatValue(21.7), "21 °C");
    EXPECT_EQ(copy->rendererType(), 1);
    EXPECT_EQ(copy->fillColor(), VLXColor::redColor());
    EXPECT_EQ(copy->strokeColor(), VLXColor::grayColor());
    EXPECT_EQ(copy->strokeWidth(), 3);
    EXPECT_EQ(copy->pointRadius(), 7);
    // Not copied: the identifier stays the copy's own, ignoreZeroValues and modifier stay off.
    EXPECT_NE(copy.get(), item.get());
    EXPECT_FALSE(copy->ignoreZeroValues());
    EXPECT_EQ(copy->modifier(), VLXSeriesItemModifierNone);

    // Pairs copy fine, derived without the original's modifier.
    auto pairs = VLXSeriesItem::create();
    pairs->setModifier(VLXSeriesItemModifierCumulative);
    pairs->setData(VLXValue::Array{pair(0, 1), pair(1, 2)});
    EXPECT_EQ(pointsOf(*pairs->copy()), (std::vector<VLXSeriesPoint>{{0, 1}, {1, 2}}));
}

// Subclasses copy as themselves.
class TaggedSeriesItem : public VLXSeriesItem {
protected:
    std::shared_ptr<VLXSeriesItem> newInstance() const override {
        return makeInitialized<TaggedSeriesItem>();
    }
};

TEST(SeriesItem, CopyMakesTheReceiversClass) {
    std::shared_ptr<VLXSeriesItem> tagged = VLXMakeShared<TaggedSeriesItem>();
    EXPECT_NE(std::dynamic_pointer_cast<TaggedSeriesItem>(tagged->copy()), nullptr);
}

TEST(SeriesItem, FormattingAndDates) {
    auto item = VLXSeriesItem::create();
    EXPECT_EQ(item->formatValue(2.5), "2");  // C rounds half to even
    EXPECT_EQ(item->formatValue(3.5), "4");
    EXPECT_EQ(item->formatValue(-0.4), "-0");
    EXPECT_EQ(item->formatValue(NAN), "nan");
    item->setValueFormatter(
        [](double v) { return v > 0 ? std::string("up") : std::string("down"); });
    EXPECT_EQ(item->formatValue(1), "up");

    item->calculateDateRange();
    EXPECT_FALSE(item->minDate().has_value());
    item->setData(VLXValue::Array{pair(300, 1), pair(NAN, 1), pair(100, 2), pair(200, 3)});
    item->calculateDateRange();
    EXPECT_EQ(item->minDate(), VLXDate::dateWithTimeIntervalSince1970(100));
    EXPECT_EQ(item->maxDate(), VLXDate::dateWithTimeIntervalSince1970(300));
}

TEST(SeriesItem, TenMillionElements) {
    // The same pair shared ten million times, summed: the running total is kept in double
    // precision, so the last point holds the exact count.
    auto item = VLXSeriesItem::create();
    item->setModifier(VLXSeriesItemModifierCumulative);
    item->setData(VLXValue(VLXValue::Array(10'000'000, pair(1, 1))));
    ASSERT_EQ(item->points().size(), 10'000'000u);
    EXPECT_EQ(item->points().back().y, 1e7);
    EXPECT_EQ(item->rangeForAxis(VLXGraphAxisTypeY).max, 1e7 + 1);
    EXPECT_LE(item->points().size_bytes(), 10'000'000u * 24);
}
