#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

void expectRGB(const VLXColor& color, double r, double g, double b, double a) {
    ASSERT_EQ(color.colorSpaceModel(), VLXColorSpaceModel::RGB) << color;
    ASSERT_EQ(color.numberOfComponents(), 4u);
    EXPECT_NEAR(color.components()[0], r, 1e-12) << color;
    EXPECT_NEAR(color.components()[1], g, 1e-12) << color;
    EXPECT_NEAR(color.components()[2], b, 1e-12) << color;
    EXPECT_DOUBLE_EQ(color.alpha(), a);
}

}  // namespace

TEST(VLXColor, HueConversionWrapsHueAndClampsTheRest) {
    expectRGB(VLXColor::colorWithHue(0, 1, 1, 1), 1, 0, 0, 1);
    expectRGB(VLXColor::colorWithHue(1.0 / 3.0, 1, 1, 0.5), 0, 1, 0, 0.5);
    expectRGB(VLXColor::colorWithHue(2.0 / 3.0, 1, 0.5, 1), 0, 0, 0.5, 1);
    expectRGB(VLXColor::colorWithHue(0.5, 0.5, 1, 1), 0.5, 1, 1, 1);
    // A hue is an angle: a full turn later or earlier is the same colour.
    expectRGB(VLXColor::colorWithHue(1.0, 1, 1, 1), 1, 0, 0, 1);
    expectRGB(VLXColor::colorWithHue(-2.0 / 3.0, 1, 1, 1), 0, 1, 0, 1);
    // Saturation and brightness are clamped: negative saturation gives the grey.
    expectRGB(VLXColor::colorWithHue(0.3, -19.5, 0.4, 1), 0.4, 0.4, 0.4, 1);
    expectRGB(VLXColor::colorWithHue(0, 3, 7, 1), 1, 0, 0, 1);

    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    expectRGB(VLXColor::colorWithHue(nan, 1, 1, 1), 1, 0, 0, 1);
    expectRGB(VLXColor::colorWithHue(inf, nan, 1, 1), 1, 1, 1, 1);
    expectRGB(VLXColor::colorWithHue(-1e-30, 1, nan, 1), 0, 0, 0, 1);
}

TEST(VLXColor, GettersDependOnTheModel) {
    const VLXColor grey = VLXColor::colorWithWhite(0.25, 0.5);
    const VLXColor rgb = VLXColor::colorWithRed(1, 0.5, 0, 1);
    const VLXColor cmyk(VLXColorSpaceModel::Other, {0, 0, 0, 1, 1});
    double r = -1, g = -1, b = -1, a = -1, w = -1, h = -1, s = -1, v = -1;

    ASSERT_TRUE(grey.getRed(&r, &g, &b, &a));
    EXPECT_EQ(r, 0.25);
    EXPECT_EQ(b, 0.25);
    EXPECT_EQ(a, 0.5);
    ASSERT_TRUE(grey.getWhite(&w, &a));
    EXPECT_EQ(w, 0.25);
    EXPECT_FALSE(grey.getHue(&h, &s, &v, &a));

    EXPECT_FALSE(rgb.getWhite(&w, &a));
    ASSERT_TRUE(rgb.getHue(&h, &s, &v, &a));
    EXPECT_NEAR(h, 30.0 / 360.0, 1e-12);
    EXPECT_EQ(s, 1.0);
    EXPECT_EQ(v, 1.0);
    // Round trip through HSB.
    EXPECT_EQ(VLXColor::colorWithHue(h, s, v, a), rgb);

    EXPECT_FALSE(cmyk.getRed(&r, &g, &b, &a));
    EXPECT_FALSE(cmyk.getWhite(&w, &a));
    EXPECT_FALSE(cmyk.getHue(&h, &s, &v, &a));
    EXPECT_TRUE(rgb.getRed(nullptr, nullptr, nullptr, nullptr));
}

TEST(VLXColor, ConstructionStoresComponentsAsGiven) {
    const VLXColor wide = VLXColor::colorWithRed(2.0, -1.0, 0.5, 3.0);
    EXPECT_EQ(wide.components()[0], 2.0);
    EXPECT_EQ(wide.components()[1], -1.0);
    EXPECT_EQ(wide.alpha(), 3.0);
    EXPECT_EQ(wide.colorWithAlphaComponent(0.25).alpha(), 0.25);
    EXPECT_EQ(wide.colorWithAlphaComponent(0.25).components()[0], 2.0);

    const VLXColor empty(VLXColorSpaceModel::RGB, {});
    EXPECT_EQ(empty.numberOfComponents(), 1u);
    EXPECT_EQ(empty.alpha(), 0.0);
    const VLXColor many(VLXColorSpaceModel::Other, {1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(many.numberOfComponents(), 5u);
    EXPECT_EQ(many.alpha(), 5.0);

    EXPECT_EQ(VLXColor(), VLXColor::blackColor());
    EXPECT_EQ(VLXColor::grayColor().colorSpaceModel(), VLXColorSpaceModel::Monochrome);
    EXPECT_EQ(VLXColor::orangeColor(), VLXColor::colorWithRed(1, 0.5, 0, 1));
}

TEST(VLXColor, EqualityIsExactAndReflexive) {
    const VLXColor a = VLXColor::colorWithRed(0.1, 0.2, 0.3, 1);
    EXPECT_EQ(a, VLXColor::colorWithRed(0.1, 0.2, 0.3, 1));
    EXPECT_NE(a, VLXColor::colorWithRed(std::nextafter(0.1, 1.0), 0.2, 0.3, 1));
    // Same numbers in another model are another colour.
    EXPECT_NE(VLXColor::colorWithWhite(1, 1), VLXColor(VLXColorSpaceModel::Other, {1, 1}));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const VLXColor withNaN = VLXColor::colorWithRed(nan, 0, 0, 1);
    EXPECT_EQ(withNaN, withNaN);
    EXPECT_NE(withNaN, VLXColor::blackColor());
}

TEST(VLXColor, DescriptionNamesModelAndExactComponents) {
    EXPECT_EQ(VLXColor::colorWithRed(1, 0, 0.5, 1).description(), "VLXColor(rgb 1 0 0.5 1)");
    EXPECT_EQ(VLXColor::grayColor().description(), "VLXColor(white 0.5 1)");
    EXPECT_EQ(VLXColor::colorWithWhite(0.1, 1).description(), "VLXColor(white 0.1 1)");
    // Values that differ in the last bit must not print alike.
    EXPECT_NE(VLXColor::colorWithWhite(std::nextafter(0.1, 1.0), 1).description(),
              VLXColor::colorWithWhite(0.1, 1).description());
}
