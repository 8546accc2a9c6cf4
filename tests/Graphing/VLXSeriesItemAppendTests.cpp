#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include <VelmarCoreUI/Core/VLXLogger.h>
#include <VelmarCoreUI/Graphing/VLXSeriesItem.h>

#include "GraphingTestSupport.h"

namespace {

// Data of every kind an item reads, good and bad, in random order.
VLXValue::Array randomElements(std::mt19937& random, std::size_t count) {
    std::uniform_real_distribution<double> value(-50, 50);
    VLXValue::Array elements;
    for (std::size_t i = 0; i < count; ++i) {
        const double x = value(random);
        const double y = value(random);
        switch (random() % 10) {
            case 0:
                elements.push_back(pair(x, y));
                break;
            case 1:
                elements.push_back(record(VLXValue::null(), y));  // skipped
                break;
            case 2:
                elements.push_back(VLXValue());  // nil element
                break;
            case 3:
                elements.push_back(VLXValue(VLXValue::Array{x}));  // wrong length
                break;
            case 4:
                elements.push_back(VLXSeriesPoint::pointWithX(x, NAN).value());
                break;
            case 5:
                elements.push_back(VLXValue(VLXValue::Dictionary{
                    {"periods", VLXValue(VLXValue::Array{
                                    VLXValue(VLXValue::Dictionary{{"x", x}, {"y", y}}),
                                    VLXValue(VLXValue::Dictionary{{"x", y}, {"y", 0}})})}}));
                break;
            case 6:
                elements.push_back(record(x, "0"));  // zero-valued text
                break;
            default:
                elements.push_back(record(x, y));
                break;
        }
    }
    return elements;
}

}  // namespace

// Appending in pieces gives what assigning the whole array gives: points bit for bit, ranges,
// caches, sortedness and log lines.
TEST(SeriesItemAppend, MatchesAssigningTheWholeArray) {
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        const bool names = round % 5 != 4;  // some rounds log instead
        auto configure = [&](VLXSeriesItem& item) {
            if (names) {
                item.setXAxisPropertyName(std::string(round % 3 == 0 ? "periods.#.x" : "x"));
                item.setYAxisPropertyName(std::string(round % 3 == 0 ? "periods.#.y" : "y"));
            }
            item.setModifier(round % 2 == 0 ? VLXSeriesItemModifierCumulative
                                            : VLXSeriesItemModifierNone);
            item.setIgnoreZeroValues(round % 4 == 1);
            item.setInterval(round % 3 == 2 ? 0.5 : 3);
            item.setConstrainToPositiveValues(round % 6 == 0);
        };
        VLXValue::Array all;
        std::vector<VLXValue::Array> pieces;
        for (int piece = 0; piece < 1 + round % 5; ++piece) {
            pieces.push_back(randomElements(random, random() % 40));
            all.insert(all.end(), pieces.back().begin(), pieces.back().end());
        }

        VLXLogCapture appendedLog;
        auto appended = VLXSeriesItem::create();
        configure(*appended);
        appended->setData(VLXValue(pieces.front()));
        if (pieces.size() > 1) {
            appended->rangeForAxis(VLXGraphAxisTypeY);  // a filled cache must not survive
        }
        for (std::size_t i = 1; i < pieces.size(); ++i) {
            appended->appendData(VLXValue(pieces[i]));
        }
        std::vector<VLXLogRecord> appendLines = appendedLog.records();
        appendedLog.clear();

        auto assigned = VLXSeriesItem::create();
        configure(*assigned);
        assigned->setData(VLXValue(all));

        ASSERT_TRUE(sameBits(appended->points(), assigned->points())) << "round " << round;
        EXPECT_TRUE(sameBits(appended->xAxisDataRange(), assigned->xAxisDataRange()));
        EXPECT_TRUE(sameBits(appended->yAxisDataRange(), assigned->yAxisDataRange()));
        for (const VLXGraphAxisType axis : {VLXGraphAxisTypeX, VLXGraphAxisTypeY}) {
            EXPECT_TRUE(sameBits(appended->rangeForAxis(axis), assigned->rangeForAxis(axis)));
            EXPECT_EQ(appended->isSortedAlongAxis(axis), assigned->isSortedAlongAxis(axis));
        }
        // By description: boxed NaN points never compare equal, even to themselves.
        EXPECT_EQ(appended->data().description(), VLXValue(all).description());
        ASSERT_EQ(appendLines.size(), appendedLog.records().size());
        for (std::size_t i = 0; i < appendLines.size(); ++i) {
            EXPECT_EQ(appendLines[i].message, appendedLog.records()[i].message);
        }
    }
}

TEST(SeriesItemAppend, FallsBackWhenTheWalkCannotContinue) {
    // Options changed after the last derivation: everything is derived again with them, as an
    // assignment would.
    auto item = VLXSeriesItem::create();
    item->setData(VLXValue::Array{pair(0, 1), pair(1, 2)});
    item->setModifier(VLXSeriesItemModifierCumulative);
    item->appendData(VLXValue(VLXValue::Array{pair(2, 3)}));
    EXPECT_EQ(pointsOf(*item), (std::vector<VLXSeriesPoint>{{0, 1}, {1, 3}, {2, 6}}));

    // Points assigned directly are replaced by those of the data.
    item->setPoints({{9, 9}});
    item->appendData(VLXValue(VLXValue::Array{pair(3, 4)}));
    EXPECT_EQ(pointsOf(*item), (std::vector<VLXSeriesPoint>{{0, 1}, {1, 3}, {2, 6}, {3, 10}}));

    // Appending to nothing is assigning; what is not an array is ignored.
    auto empty = VLXSeriesItem::create();
    empty->appendData(VLXValue(5));
    EXPECT_TRUE(empty->data().isNil());
    empty->appendData(VLXValue(VLXValue::Array{pair(1, 1)}));
    EXPECT_EQ(empty->data(), VLXValue(VLXValue::Array{pair(1, 1)}));
    EXPECT_EQ(empty->points().size(), 1u);

    // The joined array is one object: assigning it back changes nothing.
    const VLXValue joined = item->data();
    const auto generation = item->pointsGeneration();
    item->setData(joined);
    EXPECT_EQ(item->pointsGeneration(), generation);
}
