#include <cmath>
#include <limits>

#include <VelmarCoreUI/Platform/Layers/VLXShapeLayer.h>
#include <VelmarCoreUI/Views/VLXShapeView.h>
#include "Widgets/WidgetTestSupport.h"

namespace {

using ShapeViewTest = WidgetTest;

VLXBezierPath horizontalLine(double y, double x0, double x1, double width) {
    VLXBezierPath path;
    path.moveToPoint({x0, y});
    path.addLineToPoint({x1, y});
    path.setLineWidth(width);
    return path;
}

TEST_F(ShapeViewTest, PathConfiguresTheLayerAndIsReadBackFromIt) {
    auto view = VLXShapeView::createWithFrame({{0, 0}, {50, 50}});
    VLXBezierPath path = VLXBezierPath::bezierPathWithRect({{5, 5}, {20, 20}});
    path.setUsesEvenOddFillRule(true);
    path.setLineWidth(4);
    path.setMiterLimit(3);
    path.setLineCapStyle(VLXLineCap::Round);
    path.setLineJoinStyle(VLXLineJoin::Bevel);
    const double dash[] = {4, 0.1};
    path.setLineDash(dash, 1.5);
    view->setPath(path);
    const VLXShapeLayer& layer = view->shapeLayer();
    EXPECT_EQ(layer.lineDashPattern(), (std::vector<double>{4, 0.1}));

    // The getter reads the layer, dash lengths in single precision; not the stored path.
    view->setLineWidth(9);
    const VLXBezierPath back = view->path();
    EXPECT_EQ(back.CGPath(), path.CGPath());
    EXPECT_EQ(back.lineWidth(), 9);
    EXPECT_EQ(view->shapePath()->lineWidth(), 4);
    EXPECT_TRUE(back.usesEvenOddFillRule());
    EXPECT_EQ(back.miterLimit(), 3);
    EXPECT_EQ(back.lineCapStyle(), VLXLineCap::Round);
    EXPECT_EQ(back.lineJoinStyle(), VLXLineJoin::Bevel);
    EXPECT_EQ(back.lineDashPattern(), (std::vector<double>{4, double(0.1f)}));
    EXPECT_EQ(back.lineDashPhase(), 1.5);

    // Setters that write only the layer leave the view's own getters at their empty values.
    view->setMiterLimit(7);
    view->setLineCap(VLXLineCap::Square);
    view->setLineJoin(VLXLineJoin::Round);
    view->setFillRule(VLXPathFillRule::Winding);
    EXPECT_EQ(layer.miterLimit(), 7);
    EXPECT_EQ(layer.lineCap(), VLXLineCap::Square);
    EXPECT_EQ(layer.lineJoin(), VLXLineJoin::Round);
    EXPECT_EQ(layer.fillRule(), VLXPathFillRule::EvenOdd);
    EXPECT_EQ(view->miterLimit(), 0);
    EXPECT_FALSE(view->lineCap());
    EXPECT_FALSE(view->lineJoin());
}

TEST_F(ShapeViewTest, UnknownCapAndJoinKeepTheLayersAndDashesComeOnlyFromThePath) {
    auto view = VLXShapeView::createWithFrame({{0, 0}, {50, 50}});
    VLXBezierPath path = horizontalLine(10, 0, 50, 2);
    path.setLineCapStyle(VLXLineCap::Square);
    path.setLineJoinStyle(VLXLineJoin::Round);
    view->setPath(path);
    path.setLineCapStyle(static_cast<VLXLineCap>(3));
    path.setLineJoinStyle(static_cast<VLXLineJoin>(7));
    view->setPath(path);
    EXPECT_EQ(view->shapeLayer().lineCap(), VLXLineCap::Square);
    EXPECT_EQ(view->shapeLayer().lineJoin(), VLXLineJoin::Round);

    view->setLineDashPattern({3, 3});
    view->setLineDashPhase(2);
    EXPECT_TRUE(view->shapeLayer().lineDashPattern().empty());
    EXPECT_EQ(view->shapeLayer().lineDashPhase(), 0);
    EXPECT_TRUE(view->lineDashPattern().empty());

    // A dashed path does dash the layer: along the line, painted and blank stretches alternate.
    auto window = makeWindow(60, 20);
    view->setStrokeColor(VLXColor::colorWithRed(0, 0, 1, 1));
    window->addSubview(view);
    VLXBezierPath dashed = horizontalLine(10, 0, 50, 4);
    const double dash[] = {10, 10};
    dashed.setLineDash(dash, 0);
    view->setPath(dashed);
    auto image = window->snapshot();
    ASSERT_TRUE(image);
    EXPECT_TRUE(pixelNear(*image, 5, 10, kOpaqueBlue));
    EXPECT_TRUE(pixelNear(*image, 15, 10, kOpaqueWhite));
    EXPECT_TRUE(pixelNear(*image, 25, 10, kOpaqueBlue));
    EXPECT_TRUE(pixelNear(*image, 35, 10, kOpaqueWhite));
}

TEST_F(ShapeViewTest, HitTestsUseThePathOnlyWhenAsked) {
    auto window = makeWindow(100, 100);
    auto view = VLXShapeView::createWithFrame({{0, 0}, {100, 100}});
    window->addSubview(view);
    view->setPath(VLXBezierPath::bezierPathWithOvalInRect({{0, 0}, {100, 100}}));
    EXPECT_TRUE(view->pointInside({3, 3}));  // the bounds decide until asked otherwise
    view->setHitTestUsingPath(true);
    EXPECT_FALSE(view->pointInside({3, 3}));
    EXPECT_TRUE(view->pointInside({50, 50}));
    EXPECT_FALSE(view->pointInside({150, 50}));  // outside the bounds, whatever the path
    EXPECT_EQ(window->hitTest({3, 3}), window);
    EXPECT_EQ(window->hitTest({50, 50}), view);

    // The path read back from the layer decides, with the layer's fill rule: an even-odd ring
    // has a hole in the middle.
    VLXBezierPath ring = VLXBezierPath::bezierPathWithOvalInRect({{0, 0}, {100, 100}});
    ring.appendPath(VLXBezierPath::bezierPathWithOvalInRect({{30, 30}, {40, 40}}));
    ring.setUsesEvenOddFillRule(true);
    view->setPath(ring);
    EXPECT_FALSE(view->pointInside({50, 50}));
    EXPECT_TRUE(view->pointInside({50, 15}));

    // No path: nothing is inside.
    view->setPath(std::nullopt);
    EXPECT_FALSE(view->pointInside({50, 50}));
    EXPECT_FALSE(view->shapeLayer().path());
    EXPECT_EQ(view->shapeLayer().lineWidth(), 0);
    EXPECT_TRUE(view->path().isEmpty());
    EXPECT_FALSE(view->pointInside({std::nan(""), 50}));
}

TEST_F(ShapeViewTest, DrawsFillStrokeAndTheStrokedStretch) {
    auto window = makeWindow(100, 60);
    auto filled = VLXShapeView::createWithFrame({{0, 0}, {40, 40}});
    filled->setPath(VLXBezierPath::bezierPathWithRect({{10, 10}, {20, 20}}));
    filled->setFillColor(VLXColor::colorWithRed(1, 0, 0, 1));
    window->addSubview(filled);
    auto line = VLXShapeView::createWithFrame({{0, 40}, {100, 20}});
    line->setPath(horizontalLine(10, 0, 100, 6));
    line->setFillColor(std::nullopt);
    line->setStrokeColor(VLXColor::colorWithRed(0, 1, 0, 1));
    line->setStrokeStart(0.25);
    line->setStrokeEnd(0.5);
    window->addSubview(line);

    auto image = window->snapshot();
    ASSERT_TRUE(image);
    EXPECT_TRUE(pixelNear(*image, 20, 20, kOpaqueRed));
    EXPECT_TRUE(pixelNear(*image, 5, 5, kOpaqueWhite));
    EXPECT_TRUE(pixelNear(*image, 10, 50, kOpaqueWhite));
    EXPECT_TRUE(pixelNear(*image, 35, 50, kOpaqueGreen));
    EXPECT_TRUE(pixelNear(*image, 60, 50, kOpaqueWhite));

    // Unusable values neither crash nor poison the next frame.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    VLXBezierPath odd = horizontalLine(10, 0, inf, nan);
    const double dash[] = {inf, nan, -1};
    odd.setLineDash(dash, nan);
    odd.setMiterLimit(nan);
    line->setPath(odd);
    line->setStrokeStart(nan);
    line->setLineWidth(inf);
    EXPECT_TRUE(window->snapshot());
    filled->setFillColor(std::nullopt);
    EXPECT_TRUE(pixelNear(*window->snapshot(), 20, 20, kOpaqueWhite));
}

}  // namespace
