#include <VelmarCoreUI/Color/VLXColorRamp.h>

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <VelmarCoreUI/Color/VLXColorUtilities.h>

namespace {

using Range = VLXColorRampIntervalRange;

std::vector<double> values(const VLXColorRamp::Intervals& intervals) {
    std::vector<double> out;
    for (const auto& interval : intervals) {
        out.push_back(interval->value());
    }
    return out;
}

std::vector<std::string> labels(const VLXColorRamp::Intervals& intervals) {
    std::vector<std::string> out;
    for (const auto& interval : intervals) {
        out.push_back(interval->label().value_or("nil"));
    }
    return out;
}

std::shared_ptr<VLXColorRamp> twoStopRamp(double from, double to, VLXUInteger steps) {
    auto ramp = VLXColorRamp::create();
    ramp->addStopWithColor(VLXColor::blueColor(), 0, from);
    ramp->addStopWithColor(VLXColor::redColor(), steps, to);
    return ramp;
}

}  // namespace

TEST(VLXColorRamp, EvenStepsWithColoursAndLabels) {
    auto ramp = twoStopRamp(0, 10, 4);
    const auto& intervals = ramp->intervals();
    EXPECT_EQ(values(intervals), (std::vector<double>{0, 2, 4, 6, 8, 10}));
    EXPECT_EQ(labels(intervals), (std::vector<std::string>{"0", "2", "4", "6", "8", "10"}));
    EXPECT_EQ(ramp->totalIntervals(), 6);
    for (std::size_t k = 0; k < 5; ++k) {
        const VLXColor expected = ramp->interpolatedColorFromColor(
            VLXColor::blueColor(), VLXColor::redColor(), static_cast<double>(k) / 5.0);
        EXPECT_EQ(*intervals[k]->color(), expected) << k;
        EXPECT_EQ(intervals[k]->labelAlignment(), 1);
    }
    EXPECT_NEAR(vlx_red(*intervals[1]->color()), 0.2, 1e-12);
    EXPECT_NEAR(vlx_blue(*intervals[1]->color()), 0.8, 1e-12);
    EXPECT_EQ(*intervals[5]->color(), VLXColor::redColor());

    auto three =
        VLXColorRamp::create({VLXColorStop::stopWithColor(VLXColor::blueColor(), 0.0),
                              VLXColorStop::stopWithColor(VLXColor::greenColor(), 1, 10.0), nullptr,
                              VLXColorStop::stopWithColor(VLXColor::redColor(), 1, 20.0)});
    EXPECT_EQ(three->totalIntervals(), 5);
    EXPECT_EQ(values(three->intervals()), (std::vector<double>{0, 5, 10, 15, 20}));
}

TEST(VLXColorRamp, SnappingRoundingAndLabelFormats) {
    // 2.5 is not rounded but snaps down to 2 (remainder 0.5 <= 0.55).
    EXPECT_EQ(values(twoStopRamp(0, 5, 1)->intervals()), (std::vector<double>{0, 2, 5}));
    // 10.75 keeps its value (remainder 0.75) and is labelled with the rounded whole number.
    auto wide = twoStopRamp(0, 21.5, 1);
    wide->setLabelIntervalRanges({Range::rangeFromValue(-100, 100, 0.25)});
    EXPECT_EQ(values(wide->intervals()), (std::vector<double>{0, 10.75, 21}));
    EXPECT_EQ(labels(wide->intervals()), (std::vector<std::string>{"0", "11", "21"}));

    auto small = twoStopRamp(0, 0.1, 1);
    small->setLabelIntervalRanges({Range::rangeFromValue(-1, 1, 0.05)});
    EXPECT_EQ(labels(small->intervals()), (std::vector<std::string>{"0", "0.05", "0.1"}));

    // The single-precision 0.1 is above 0.1, so it rounds to hundredths; 0.05f to thousandths.
    auto hundredths = twoStopRamp(0, 0.0246, 1);
    hundredths->setColorIntervalRanges(Range::arrayOfRangesFromString("1:0.1"));
    EXPECT_DOUBLE_EQ(hundredths->intervals()[1]->value(), 0.01);
    auto thousandths = twoStopRamp(0, 0.0246, 1);
    thousandths->setColorIntervalRanges(Range::arrayOfRangesFromString("1:0.05"));
    EXPECT_DOUBLE_EQ(thousandths->intervals()[1]->value(), 0.012);

    // 0.05 stays (the multiple below it is 0, not above 0) and is unlabelled with L = 1.
    auto tenth = twoStopRamp(0, 0.1, 1);
    tenth->setColorIntervalRanges(Range::arrayOfRangesFromString("1:0.1"));
    EXPECT_EQ(values(tenth->intervals())[1], 0.05);
    EXPECT_EQ(labels(tenth->intervals()), (std::vector<std::string>{"0", "nil", "nil"}));

    wide->setIncludeValueLabels(false);
    wide->setCachedIntervals({});
    EXPECT_EQ(labels(wide->intervals()), (std::vector<std::string>{"nil", "nil", "nil"}));
}

TEST(VLXColorRamp, EveryRangesCountIntervals) {
    auto ramp = twoStopRamp(0, 10, 4);
    auto everySecond = Range::rangeFromValue(-100, 100, 2);
    everySecond->setIsEvery(true);
    ramp->setLabelIntervalRanges({everySecond});
    EXPECT_EQ(labels(ramp->generateIntervalsFromStops()),
              (std::vector<std::string>{"0", "nil", "4", "nil", "8", "nil"}));
    // A colour-range match restarts the count at 1, on the value it matches.
    ramp->setColorIntervalRanges({Range::rangeFromValue(3.5, 4.5, 1)});
    EXPECT_EQ(labels(ramp->generateIntervalsFromStops()),
              (std::vector<std::string>{"0", "nil", "nil", "6", "nil", "10"}));
    // "~2" reads as interval 0: nothing can be labelled.
    ramp->setLabelIntervalRanges(Range::arrayOfRangesFromString("~2"));
    ramp->setColorIntervalRanges({});
    EXPECT_EQ(labels(ramp->generateIntervalsFromStops()),
              (std::vector<std::string>{"0", "nil", "nil", "nil", "nil", "nil"}));
}

TEST(VLXColorRamp, IntervalsAreCachedOnceNonEmpty) {
    auto ramp = VLXColorRamp::create();
    EXPECT_EQ(ramp->totalIntervals(), 0);
    ramp->addStopWithColor(VLXColor::blackColor(), 0, 0);
    EXPECT_TRUE(ramp->intervals().empty());
    EXPECT_EQ(ramp->totalIntervals(), 1);
    // An empty result is not kept: the next read sees the new stop.
    auto second = ramp->addStopWithColor(VLXColor::whiteColor(), 1, 10, "top", 0.5);
    EXPECT_EQ(second->alpha(), 0.5);
    EXPECT_EQ(second->labelValue(), "top");
    ASSERT_EQ(ramp->intervals().size(), 3u);
    ramp->addStopWithColor(VLXColor::redColor(), 3, 20, "ignored");
    ramp->removeStop(second);
    EXPECT_EQ(ramp->stops().size(), 2u);
    EXPECT_EQ(ramp->intervals().size(), 3u);
    EXPECT_EQ(ramp->generateIntervalsFromStops().size(), 5u);
    ramp->removeAllStops();
    EXPECT_EQ(ramp->intervals().size(), 3u);
}

TEST(VLXColorRamp, MissingColoursAndBadValues) {
    auto ramp = VLXColorRamp::create();
    // A missing colour blends as black; the pair's last interval keeps the stop's own nil.
    EXPECT_EQ(ramp->interpolatedColorFromColor(std::nullopt, VLXColor::whiteColor(), 0.5),
              VLXColor::colorWithRed(0.5, 0.5, 0.5, 1));
    ramp->addStop(VLXColorStop::stopWithColor(VLXColor::whiteColor(), 0.0));
    ramp->addStop(VLXColorStop::stopWithColor(std::nullopt, 1, 4.0));
    ramp->addStop(nullptr);
    const auto& intervals = ramp->intervals();
    ASSERT_EQ(intervals.size(), 3u);
    EXPECT_EQ(*intervals[1]->color(), VLXColor::colorWithRed(0.5, 0.5, 0.5, 1));
    EXPECT_FALSE(intervals[2]->color());

    const double nan = std::numeric_limits<double>::quiet_NaN();
    auto broken = VLXColorRamp::create(
        {VLXColorStop::create(), VLXColorStop::stopWithColor(std::nullopt, 2, nan)});
    const auto brokenIntervals = broken->generateIntervalsFromStops();
    ASSERT_EQ(brokenIntervals.size(), 4u);
    EXPECT_FALSE(brokenIntervals[3]->label());

    auto huge = twoStopRamp(0, 1, std::numeric_limits<VLXUInteger>::max());
    huge->addStopWithColor(VLXColor::redColor(), std::numeric_limits<VLXUInteger>::max(), 2);
    EXPECT_EQ(huge->totalIntervals(), std::numeric_limits<VLXInteger>::max());
    EXPECT_TRUE(huge->intervals().empty());
}

TEST(VLXColorRampIntervalRange, ParsesRangeStrings) {
    const double smallest = std::numeric_limits<double>::min();
    const double largest = std::numeric_limits<double>::max();
    auto full = Range::rangeFromString("100:10");
    EXPECT_EQ(full->minValue(), smallest);
    EXPECT_EQ(full->maxValue(), 100);
    EXPECT_EQ(full->interval(), 10);
    EXPECT_FALSE(full->isEvery());
    EXPECT_EQ(Range::rangeFromString("25")->maxValue(), largest);
    EXPECT_EQ(Range::rangeFromString("25")->interval(), 25);
    EXPECT_EQ(Range::rangeFromString("1:0.1")->interval(), static_cast<double>(0.1f));
    EXPECT_EQ(Range::rangeFromString("1:2:3")->interval(), 1);
    EXPECT_EQ(Range::rangeFromString("1:2:3")->maxValue(), largest);
    auto every = Range::rangeFromString("50:~5");
    EXPECT_TRUE(every->isEvery());
    EXPECT_EQ(every->interval(), 0);
    EXPECT_FALSE(Range::rangeFromString("5: ~5")->isEvery());
    EXPECT_FALSE(full->containsValue(0));
    EXPECT_TRUE(full->containsValue(100));
    EXPECT_FALSE(full->containsValue(100.5));

    const auto list = Range::arrayOfRangesFromString("100:10, 1000:~100,5");
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[1]->minValue(), smallest);  // not chained to the previous maximum
    EXPECT_EQ(list[1]->maxValue(), 1000);
    EXPECT_TRUE(list[1]->isEvery());
    EXPECT_EQ(list[2]->interval(), 5);
    ASSERT_EQ(Range::arrayOfRangesFromString("").size(), 1u);
    EXPECT_EQ(Range::arrayOfRangesFromString("")[0]->interval(), 0);
}

TEST(VLXColorStop, ArchivesThroughJSON) {
    auto stop =
        VLXColorStop::stopWithColor(VLXColor::colorWithRed(1, 0.25, 0, 0.5), 3, -2.5, "low");
    stop->setAlpha(0.75);
    auto restored = VLXColorStop::create();
    ASSERT_TRUE(restored->restoreFromJSON(stop->archivedJSON()));
    EXPECT_EQ(restored->color(), stop->color());
    EXPECT_EQ(restored->alpha(), 0.75);
    EXPECT_EQ(restored->totalSteps(), 3u);
    EXPECT_EQ(restored->value(), -2.5);
    EXPECT_EQ(restored->labelValue(), "low");

    // Nil colour, nil label and the nil value survive too.
    auto blank = VLXColorStop::stopWithColor(VLXColor::redColor(), 1.0, "x");
    ASSERT_TRUE(blank->restoreFromJSON(VLXColorStop::create()->archivedJSON()));
    EXPECT_FALSE(blank->color());
    EXPECT_FALSE(blank->labelValue());
    EXPECT_EQ(blank->value(), VLXColorStopNilValue);
    EXPECT_FALSE(blank->restoreFromJSON("{not json"));
    EXPECT_EQ(blank->value(), VLXColorStopNilValue);
}
