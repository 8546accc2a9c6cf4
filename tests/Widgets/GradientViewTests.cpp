#include <cmath>
#include <limits>

#include <VelmarCoreUI/Platform/Layers/VLXGradientLayer.h>
#include <VelmarCoreUI/Views/VLXGradientView.h>
#include "Widgets/WidgetTestSupport.h"

namespace {

using GradientViewTest = WidgetTest;

const VLXColor kRed = VLXColor::colorWithRed(1, 0, 0, 1);
const VLXColor kGreen = VLXColor::colorWithRed(0, 1, 0, 1);
const VLXColor kBlue = VLXColor::colorWithRed(0, 0, 1, 1);

std::vector<double> numbers(const VLXValue& array) {
    std::vector<double> out;
    for (const VLXValue& v : array.arrayValue()) {
        out.push_back(v.doubleValue());
    }
    return out;
}

TEST_F(GradientViewTest, MissingLocationsAreFilledInByTheCountAndKept) {
    auto window = makeWindow(30, 90);
    auto view = VLXGradientView::createWithFrame({{0, 0}, {30, 90}});
    window->addSubview(view);
    view->setColors({kRed, kGreen, kBlue});
    EXPECT_FALSE(view->locations());
    auto image = window->snapshot();
    ASSERT_TRUE(image);
    ASSERT_TRUE(view->locations());
    EXPECT_EQ(*view->locations(), (std::vector<double>{0, 1.0 / 3, 2.0 / 3}));
    EXPECT_EQ(numbers(view->gradientLayer().locations()),
              (std::vector<double>{0, 1.0 / 3, 2.0 / 3}));
    // The last stop is at 2/3: the bottom third is solid blue, the top starts red.
    EXPECT_TRUE(pixelNear(*image, 15, 0, kOpaqueRed, 8));
    EXPECT_TRUE(pixelNear(*image, 15, 65, kOpaqueBlue));
    EXPECT_TRUE(pixelNear(*image, 15, 89, kOpaqueBlue));

    // A fourth colour reuses the three stops; the layer leaves the colour without one out.
    view->setColors({kRed, kGreen, kBlue, kRed});
    image = window->snapshot();
    EXPECT_EQ(view->locations()->size(), 3u);
    EXPECT_EQ(view->gradientLayer().resolvedStops().size(), 3u);
    EXPECT_TRUE(pixelNear(*image, 15, 89, kOpaqueBlue));
}

TEST_F(GradientViewTest, TopAndBottomColoursNeedEachOther) {
    auto window = makeWindow(20, 100);
    auto view = VLXGradientView::createWithFrame({{0, 0}, {20, 100}});
    window->addSubview(view);
    view->setTopColor(kRed);
    window->snapshot();
    EXPECT_TRUE(view->gradientLayer().colors().isNil());
    EXPECT_TRUE(view->gradientLayer().locations().isNil());

    view->setBottomColor(kBlue);
    auto image = window->snapshot();
    const VLXValue locations = view->gradientLayer().locations();
    ASSERT_EQ(locations.count(), 2u);
    EXPECT_EQ(locations.objectAtIndex(0).objCType(), std::string("i"));
    EXPECT_EQ(numbers(locations), (std::vector<double>{0, 1}));
    EXPECT_EQ(view->gradientLayer().colors(),
              VLXValue(VLXValue::Array{VLXValue(kRed), VLXValue(kBlue)}));
    EXPECT_TRUE(pixelNear(*image, 10, 0, kOpaqueRed, 8));
    EXPECT_TRUE(pixelNear(*image, 10, 99, kOpaqueBlue, 8));
    EXPECT_TRUE(pixelNear(*image, 10, 50, RGBA8{255, 128, 0, 127}, 8));

    // Explicit colours win over the pair.
    view->setColors({kGreen});
    image = window->snapshot();
    EXPECT_TRUE(pixelNear(*image, 10, 0, kOpaqueGreen));
    EXPECT_TRUE(pixelNear(*image, 10, 99, kOpaqueGreen));
}

TEST_F(GradientViewTest, OnlyChangesRequestADisplayAndOddStopsStayDefined) {
    auto window = makeWindow(20, 20);
    auto view = VLXGradientView::createWithFrame({{0, 0}, {20, 20}});
    window->addSubview(view);
    view->setTopColor(kRed);
    view->setColors({kRed, kBlue});
    view->setLocations(std::vector<double>{0, 0.5});
    window->snapshot();
    ASSERT_FALSE(view->layer()->needsDisplay());

    view->setTopColor(VLXColor::colorWithRed(1, 0, 0, 1));
    view->setBottomColor(std::nullopt);
    view->setColors({kRed, kBlue});
    view->setLocations(std::vector<double>{0, 0.5});
    EXPECT_FALSE(view->layer()->needsDisplay());

    view->setLocations(std::nullopt);
    EXPECT_TRUE(view->layer()->needsDisplay());
    window->snapshot();
    view->setBottomColor(kGreen);
    EXPECT_TRUE(view->layer()->needsDisplay());

    // Odd stops and sizes draw something defined.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    view->setColors({kRed, kGreen, kBlue});
    view->setLocations(std::vector<double>{nan});
    EXPECT_TRUE(window->snapshot());
    view->setLocations(std::vector<double>{});
    EXPECT_TRUE(window->snapshot());
    view->setLocations(
        std::vector<double>{-5, 1e300, std::numeric_limits<double>::infinity(), 0.5});
    EXPECT_TRUE(window->snapshot());
    view->setColors({VLXColor::colorWithRed(nan, 0, 0, nan)});
    EXPECT_TRUE(window->snapshot());
    // A view of zero or unusable size is never displayed, so the layer is never configured.
    auto empty = VLXGradientView::createWithFrame({{0, 0}, {0, 0}});
    window->addSubview(empty);
    empty->setColors({kRed});
    window->snapshot();
    EXPECT_TRUE(empty->gradientLayer().colors().isNil());
    empty->setFrame({{0, 0}, {nan, 5}});
    EXPECT_TRUE(window->snapshot());
}

}  // namespace
