#include <cmath>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

#include "LayerTestSupport.h"

namespace {

void expectRect(const VLXRect& r, double x, double y, double w, double h) {
    EXPECT_NEAR(r.origin.x, x, 1e-9);
    EXPECT_NEAR(r.origin.y, y, 1e-9);
    EXPECT_NEAR(r.size.width, w, 1e-9);
    EXPECT_NEAR(r.size.height, h, 1e-9);
}

void expectPoint(VLXPoint p, double x, double y) {
    EXPECT_NEAR(p.x, x, 1e-9);
    EXPECT_NEAR(p.y, y, 1e-9);
}

std::shared_ptr<VLXLayer> layerWithFrame(double x, double y, double w, double h) {
    auto layer = VLXLayer::create();
    layer->setFrame({{x, y}, {w, h}});
    return layer;
}

using LayerGeometry = ActionsDisabledTest;

}  // namespace

TEST_F(LayerGeometry, FrameFollowsPositionAnchorBoundsAndTransform) {
    auto layer = VLXLayer::create();
    EXPECT_EQ(layer->anchorPoint(), (VLXPoint{0.5, 0.5}));
    layer->setBounds({{5, 7}, {10, 1}});
    layer->setPosition({100, 50});
    expectRect(layer->frame(), 95, 49.5, 10, 1);

    // The anchor sits at the position; the bounds origin does not move the frame.
    layer->setAnchorPoint({0, 1});
    expectRect(layer->frame(), 100, 49, 10, 1);

    // Setting the frame keeps bounds.origin and the anchor.
    layer->setFrame({{10, 20}, {30, 40}});
    expectRect(layer->bounds(), 5, 7, 30, 40);
    expectPoint(layer->position(), 10, 60);
    expectRect(layer->frame(), 10, 20, 30, 40);

    // A scale about the anchor (0.5, 0.5) grows the frame around the position.
    layer->setAnchorPoint({0.5, 0.5});
    layer->setFrame({{0, 0}, {20, 20}});
    layer->setValueForKeyPath(VLXValue(2.0), "transform.scale");
    expectRect(layer->frame(), -10, -10, 40, 40);
    // Setting the frame under a scale divides the size by it and lands where asked.
    layer->setFrame({{0, 0}, {20, 20}});
    expectRect(layer->bounds(), 5, 7, 10, 10);
    expectRect(layer->frame(), 0, 0, 20, 20);

    // A quarter turn swaps the frame's sides.
    auto turned = layerWithFrame(0, 0, 40, 10);
    turned->setAffineTransform(VLXAffineTransformMakeRotation(M_PI / 2));
    expectRect(turned->frame(), 15, -15, 10, 40);
    turned->setFrame({{0, 0}, {20, 60}});
    expectRect(turned->frame(), 0, 0, 20, 60);
    expectRect(turned->bounds(), 0, 0, 60, 20);

    // A translation moves the frame, not the position.
    auto moved = layerWithFrame(0, 0, 10, 10);
    moved->setAffineTransform(VLXAffineTransformMakeTranslation(3, 4));
    expectRect(moved->frame(), 3, 4, 10, 10);
    expectPoint(moved->position(), 5, 5);
}

TEST_F(LayerGeometry, NegativeFramesAreStandardised) {
    // A negative-height frame is stored standardised: the same layer as the positive one.
    auto bar = layerWithFrame(10, 100, 20, -50);
    expectRect(bar->bounds(), 0, 0, 20, 50);
    expectRect(bar->frame(), 10, 50, 20, 50);

    // Bounds are stored as given; the frame is always standardised.
    auto raw = VLXLayer::create();
    raw->setBounds({{0, 0}, {-10, 4}});
    raw->setPosition({0, 0});
    EXPECT_EQ(raw->bounds().size.width, -10);
    expectRect(raw->frame(), -5, -2, 10, 4);
}

TEST_F(LayerGeometry, HitTestFindsTheDeepestFrontMostVisibleLayer) {
    auto root = layerWithFrame(0, 0, 100, 100);
    auto back = layerWithFrame(10, 10, 50, 50);
    auto front = layerWithFrame(30, 30, 50, 50);
    auto inner = layerWithFrame(0, 0, 10, 10);  // in front's coordinates
    root->addSublayer(back);
    root->addSublayer(front);
    front->addSublayer(inner);

    EXPECT_EQ(root->hitTest({35, 35}), inner);  // overlap: front wins, then its child
    EXPECT_EQ(root->hitTest({45, 45}), front);  // in front, outside inner
    EXPECT_EQ(root->hitTest({15, 15}), back);
    EXPECT_EQ(root->hitTest({5, 5}), root);
    EXPECT_EQ(root->hitTest({100, 50}), nullptr);  // max edge is outside
    EXPECT_EQ(root->hitTest({-1, 5}), nullptr);
    // Sublayers sticking out of their parent are not reached outside it.
    auto outside = layerWithFrame(90, 90, 50, 50);
    root->addSublayer(outside);
    EXPECT_EQ(root->hitTest({120, 120}), nullptr);

    front->setHidden(true);
    EXPECT_EQ(root->hitTest({35, 35}), back);
    root->setHidden(true);
    EXPECT_EQ(root->hitTest({35, 35}), nullptr);
    root->setHidden(false);
    front->setHidden(false);

    // A higher zPosition brings the back layer in front.
    back->setZPosition(1);
    EXPECT_EQ(root->hitTest({35, 35}), back);
    back->setZPosition(NAN);
    EXPECT_EQ(root->hitTest({35, 35}), inner);

    // The transform counts: a layer scaled by 2 about its centre reaches further.
    auto dot = layerWithFrame(0, 0, 10, 10);
    root->addSublayer(dot);
    EXPECT_EQ(root->hitTest({12, 12}), back);
    dot->setValueForKeyPath(VLXValue(2.0), "transform.scale");
    EXPECT_EQ(root->hitTest({12, 12}), dot);
    EXPECT_TRUE(dot->containsPoint({9, 9}));
    EXPECT_FALSE(dot->containsPoint({12, 12}));  // own bounds, own coordinates

    // A singular transform has no inside.
    dot->setValueForKeyPath(VLXValue(0.0), "transform.scale");
    EXPECT_EQ(root->hitTest({5, 5}), root);
    EXPECT_EQ(root->hitTest({NAN, 5}), nullptr);
}

TEST_F(LayerGeometry, ConversionsBetweenLayers) {
    auto root = layerWithFrame(0, 0, 200, 200);
    auto a = layerWithFrame(10, 20, 100, 100);
    a->setBounds({{5, 5}, {100, 100}});  // scrolled content: origin shifts the coordinates
    auto b = layerWithFrame(30, 40, 20, 20);
    auto c = layerWithFrame(50, 0, 40, 40);
    root->addSublayer(a);
    a->addSublayer(b);
    root->addSublayer(c);

    // b's (0, 0) is a's (30, 40) = root's (10 + 30 − 5, 20 + 40 − 5).
    expectPoint(b->convertPointToLayer({0, 0}, root.get()), 35, 55);
    expectPoint(root->convertPointFromLayer({0, 0}, b.get()), 35, 55);
    expectPoint(b->convertPointFromLayer({35, 55}, root.get()), 0, 0);
    // Siblings' branches and null (the root's superlayer, here the root's frame offsets 0).
    expectPoint(b->convertPointToLayer({1, 2}, c.get()), 35 + 1 - 50, 55 + 2);
    expectPoint(b->convertPointToLayer({0, 0}, nullptr), 35, 55);
    expectPoint(b->convertPointToLayer({7, 8}, b.get()), 7, 8);

    // Rotation about the anchor: a's centre stays; a corner turns.
    a->setAffineTransform(VLXAffineTransformMakeRotation(M_PI / 2));
    const VLXPoint centre = a->convertPointToLayer({55, 55}, root.get());
    expectPoint(centre, 60, 70);
    expectPoint(a->convertPointFromLayer(centre, root.get()), 55, 55);
    const VLXPoint corner = a->convertPointToLayer({105, 55}, root.get());  // 50 right of centre
    expectPoint(corner, 60, 120);                                           // turns to 50 below
    // Round trips through a chain of transforms.
    b->setValueForKeyPath(VLXValue(3.0), "transform.scale");
    const VLXPoint there = b->convertPointToLayer({2, 3}, c.get());
    expectPoint(b->convertPointFromLayer(there, c.get()), 2, 3);

    const VLXRect r = c->convertRectFromLayer({{0, 0}, {10, 10}}, c.get());
    expectRect(r, 0, 0, 10, 10);
    const VLXRect turned = root->convertRectFromLayer({{55, 55}, {50, 10}}, a.get());
    expectRect(turned, 50, 70, 10, 50);
    EXPECT_TRUE(VLXRectIsNull(root->convertRectFromLayer(VLXRectNull, a.get())));

    // Layers of different trees convert as if their roots shared a superlayer.
    auto other = layerWithFrame(100, 100, 10, 10);
    expectPoint(other->convertPointToLayer({0, 0}, c.get()), 100 - 50, 100);

    // Into a layer with a singular transform: no point.
    c->setValueForKeyPath(VLXValue(0.0), "transform.scale.x");
    EXPECT_TRUE(std::isnan(c->convertPointFromLayer({1, 1}, root.get()).x));
}

TEST_F(LayerGeometry, PerspectiveProjectsThePlane) {
    auto layer = layerWithFrame(0, 0, 100, 100);
    // Rotation about y with perspective: the near edge grows, the far edge shrinks.
    VLXTransform3D p = VLXTransform3DIdentity;
    p.m34 = -1.0 / 500;
    layer->setTransform(VLXTransform3DConcat(VLXTransform3DMakeRotation(0.5, 0, 1, 0), p));
    const VLXPoint left = layer->convertPointToLayer({0, 0}, nullptr);
    const VLXPoint right = layer->convertPointToLayer({100, 0}, nullptr);
    EXPECT_NE(std::fabs(left.y - 50), std::fabs(right.y - 50));
    // A round trip through the projection is exact.
    const VLXPoint q = layer->convertPointFromLayer(right, nullptr);
    expectPoint(q, 100, 0);
}
