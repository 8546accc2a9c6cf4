// Shape and gradient layers: their properties and defaults, and their pixels in a frame.
#include <gtest/gtest.h>

#include <cmath>

#include <VelmarCoreUI/Platform/Layers/VLXGradientLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXShapeLayer.h>

#include "CompositorTestSupport.h"

TEST(ShapeLayer, DefaultsKeyValueAndCopies) {
    auto shape = VLXShapeLayer::create();
    EXPECT_EQ(shape->fillColor(), VLXColor::blackColor());
    EXPECT_FALSE(shape->strokeColor());
    EXPECT_EQ(shape->lineWidth(), 1);
    EXPECT_EQ(shape->strokeEnd(), 1);

    withoutActions([&] {
        VLXPath path = VLXPath::pathWithRect(VLXRectMake(0, 0, 4, 4));
        shape->setPath(path);
        path.addLineToPoint(VLXPointMake(9, 9));  // the layer keeps its own copy
        shape->setFillColor(std::nullopt);
        shape->setLineJoin(VLXLineJoin::Round);
        // Integers are accepted as dash lengths.
        shape->setValue(VLXValue(VLXValue::Array{VLXValue(2), VLXValue(3)}), "lineDashPattern");
    });
    EXPECT_EQ(shape->path(), VLXPath::pathWithRect(VLXRectMake(0, 0, 4, 4)));
    EXPECT_FALSE(shape->fillColor());  // nil: no fill
    EXPECT_EQ(shape->lineDashPattern(), (std::vector<double>{2, 3}));

    // Everything is in the store, so a presentation-style copy carries it over.
    auto copy = std::static_pointer_cast<VLXShapeLayer>(shape->newInstance());
    copy->initWithLayer(*shape);
    EXPECT_EQ(copy->path(), shape->path());
    EXPECT_FALSE(copy->fillColor());
    EXPECT_EQ(copy->lineDashPattern(), (std::vector<double>{2, 3}));

    // Implicit actions for the shape keys on a stand-alone layer; none for the enums.
    EXPECT_NE(shape->defaultActionForKey("strokeEnd"), nullptr);
    EXPECT_NE(shape->defaultActionForKey("path"), nullptr);
    EXPECT_NE(shape->defaultActionForKey("opacity"), nullptr);
    EXPECT_EQ(shape->defaultActionForKey("lineCap"), nullptr);
    EXPECT_EQ(shape->defaultActionForKey("lineDashPattern"), nullptr);
}

TEST(ShapeLayer, FillThenStrokeDashesAndTrim) {
    auto root = makeLayer(VLXRectMake(0, 0, 100, 60));
    auto shape = makeLayer<VLXShapeLayer>(VLXRectMake(0, 0, 10, 10));
    withoutActions([&] {
        shape->setAnchorPoint(VLXPointMake(0, 0));
        shape->setPosition(VLXPointMake(0, 0));
        // The path reaches far beyond the 10 × 10 bounds: not clipped.
        shape->setPath(VLXPath::pathWithRect(VLXRectMake(10, 10, 60, 30)));
        shape->setFillColor(VLXColor::redColor());
        shape->setStrokeColor(VLXColor::colorWithRed(0, 0, 1, 1));
        shape->setLineWidth(4);
    });
    root->addSublayer(shape);
    auto image = renderOnce(*root, 100, 60);
    // The stroke lies over the fill (40, 11) and reaches outside it (40, 9).
    expectPixels(*image, {{40, 25, kRed}, {40, 11, kBlue}, {40, 9, kBlue}, {40, 5, kClear}});

    // Dashes of 10 on, 10 off along the top edge, which starts at (10, 10) going right.
    withoutActions([&] {
        shape->setFillColor(std::nullopt);
        shape->setLineDashPattern({10, 10});
    });
    image = renderOnce(*root, 100, 60);
    // No fill at (40, 25) any more.
    expectPixels(*image, {{15, 10, kBlue}, {25, 10, kClear}, {35, 10, kBlue}, {40, 25, kClear}});

    // strokeEnd 0.25 of the 180-point outline: the first 45 points of the top edge; start 0.5
    // begins after the top and right edges (90 points), at the bottom-right corner.
    withoutActions([&] {
        shape->setLineDashPattern({});
        shape->setStrokeEnd(0.25);
    });
    image = renderOnce(*root, 100, 60);
    // The right edge (70, 35) is not reached.
    expectPixels(*image, {{25, 10, kBlue}, {53, 10, kBlue}, {58, 10, kClear}, {70, 35, kClear}});
    withoutActions([&] {
        shape->setStrokeStart(0.5);
        shape->setStrokeEnd(1);
    });
    image = renderOnce(*root, 100, 60);
    // Not before the halfway point (70, 35); on the bottom edge (30, 40) after it and on the left
    // edge (10, 25) closing the outline.
    expectPixels(*image, {{25, 10, kClear}, {70, 35, kClear}, {30, 40, kBlue}, {10, 25, kBlue}});
    withoutActions([&] { shape->setStrokeStart(1); });
    image = renderOnce(*root, 100, 60);
    EXPECT_TRUE(near(pixelAt(*image, 10, 25), kClear));
}

TEST(GradientLayer, StopsDirectionAndExtension) {
    auto gradient = makeLayer<VLXGradientLayer>(VLXRectMake(0, 0, 10, 100));
    withoutActions([&] {
        gradient->setColors(VLXValue(VLXValue::Array{
            VLXValue(VLXColor::redColor()), VLXValue(VLXColor::colorWithRed(0, 0, 1, 1))}));
    });
    auto image = renderOnce(*gradient, 10, 100);
    // By default top to bottom: red to blue, evenly.
    expectPixels(*image, {{5, 0, kRed, 4}, {5, 99, kBlue, 4}});
    EXPECT_NEAR(pixelAt(*image, 5, 50).r, 127, 4);
    EXPECT_NEAR(pixelAt(*image, 5, 50).b, 127, 4);

    // Integer locations 0 and 1 work; stops at 0.25 and 0.5 leave solid ends beyond them.
    withoutActions([&] {
        gradient->setLocations(VLXValue(VLXValue::Array{VLXValue(0.25), VLXValue(0.5)}));
    });
    image = renderOnce(*gradient, 10, 100);
    expectPixels(*image, {{5, 10, kRed, 2}, {5, 80, kBlue, 2}});
    EXPECT_NEAR(pixelAt(*image, 5, 37).r, 127, 10);
    withoutActions([&] {
        gradient->setLocations(VLXValue(VLXValue::Array{VLXValue(0), VLXValue(1)}));
        // Left to right instead.
        gradient->setStartPoint(VLXPointMake(0, 0.5));
        gradient->setEndPoint(VLXPointMake(1, 0.5));
    });
    image = renderOnce(*gradient, 10, 100);
    EXPECT_EQ(pixelAt(*image, 5, 10), pixelAt(*image, 5, 90));
    EXPECT_GT(pixelAt(*image, 1, 50).r, pixelAt(*image, 8, 50).r);

    // Non-colour entries are skipped; nothing at all draws nothing.
    withoutActions([&] {
        gradient->setLocations(VLXValue());
        gradient->setColors(VLXValue(VLXValue::Array{VLXValue(3), VLXValue(VLXColor::redColor())}));
    });
    EXPECT_TRUE(near(pixelAt(*renderOnce(*gradient, 10, 100), 5, 50), kRed));
    withoutActions([&] { gradient->setColors(VLXValue()); });
    EXPECT_TRUE(near(pixelAt(*renderOnce(*gradient, 10, 100), 5, 50), kClear));
}
