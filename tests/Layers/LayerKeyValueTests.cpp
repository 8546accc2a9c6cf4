#include <cmath>

#include <gtest/gtest.h>

#include "LayerTestSupport.h"

#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>

namespace {

// A subclass with typed properties kept in the store.
class GaugeLayer : public VLXLayer {
public:
    static std::shared_ptr<GaugeLayer> create() { return makeInitialized<GaugeLayer>(); }
    double level() const { return storedDouble("level"); }
    void setLevel(double v) { setValue(VLXValue(v), "level"); }
    double glow() const { return storedDouble("glow"); }
    std::string extra;  // a member outside the store, copied by the hook

    std::shared_ptr<VLXLayer> newInstance() const override { return VLXMakeShared<GaugeLayer>(); }
    void initWithLayer(const VLXLayer& other) override {
        VLXLayer::initWithLayer(other);
        if (auto* gauge = dynamic_cast<const GaugeLayer*>(&other)) {
            extra = gauge->extra;
        }
    }
    VLXValue defaultValueForKey(std::string_view key) const override {
        return key == "glow" ? VLXValue(0.5) : VLXLayer::defaultValueForKey(key);
    }

protected:
    void init() override {
        VLXLayer::init();
        setStoredValueWithoutAction("level", VLXValue(0.25));
    }
};

using LayerKeyValue = ActionsDisabledTest;

}  // namespace

TEST_F(LayerKeyValue, BuiltInKeysRoundTripAndRefuseWrongKinds) {
    auto layer = VLXLayer::create();
    layer->setValue(VLXValue::valueWithRect({{1, 2}, {3, 4}}), "bounds");
    layer->setValue(VLXValue::valueWithPoint({5, 6}), "position");
    layer->setValue(VLXValue(0.5f), "opacity");
    layer->setValue(VLXValue(true), "hidden");
    layer->setValue(VLXValue(VLXColor::redColor()), "backgroundColor");
    layer->setValue(VLXValue(6), "cornerRadius");
    layer->setValue(VLXValue(std::string("n")), "name");
    layer->setValue(VLXValue(3.0), "contentsScale");
    EXPECT_EQ(layer->bounds(), (VLXRect{{1, 2}, {3, 4}}));
    EXPECT_EQ(layer->position(), (VLXPoint{5, 6}));
    EXPECT_EQ(layer->opacity(), 0.5);
    EXPECT_TRUE(layer->isHidden());
    EXPECT_EQ(layer->backgroundColor(), VLXColor::redColor());
    EXPECT_EQ(layer->cornerRadius(), 6);
    EXPECT_EQ(layer->name(), "n");
    EXPECT_EQ(layer->contentsScale(), 3);
    EXPECT_EQ(layer->valueForKey("position").pointValue(), (VLXPoint{5, 6}));
    EXPECT_EQ(layer->valueForKey("opacity").doubleValue(), 0.5);
    EXPECT_EQ(layer->valueForKey("borderColor").colorValue(), VLXColor::blackColor());
    EXPECT_EQ(layer->valueForKey("frame").rectValue(), layer->frame());

    // Wrong kinds change nothing; nil clears optional values only.
    layer->setValue(VLXValue(7), "position");
    layer->setValue(VLXValue::valueWithPoint({1, 1}), "bounds");
    layer->setValue(VLXValue(), "opacity");
    layer->setValue(VLXValue(-1.0), "contentsScale");
    layer->setValue(VLXValue(NAN), "contentsScale");
    EXPECT_EQ(layer->position(), (VLXPoint{5, 6}));
    EXPECT_EQ(layer->bounds(), (VLXRect{{1, 2}, {3, 4}}));
    EXPECT_EQ(layer->opacity(), 0.5);
    EXPECT_EQ(layer->contentsScale(), 3);
    layer->setValue(VLXValue(), "backgroundColor");
    EXPECT_FALSE(layer->backgroundColor());
    EXPECT_TRUE(layer->valueForKey("backgroundColor").isNil());

    // An affine transform box sets the 3-D transform.
    layer->setValue(VLXValue::valueWithAffineTransform(VLXAffineTransformMakeScale(2, 3)),
                    "transform");
    EXPECT_EQ(layer->transform(), VLXTransform3DMakeScale(2, 3, 1));
    // Contents and mask take objects of their class only.
    layer->setValue(VLXValue(VLXLayer::create()), "contents");
    EXPECT_EQ(layer->contents(), nullptr);
    auto mask = VLXLayer::create();
    layer->setValue(VLXValue(mask), "mask");
    EXPECT_EQ(layer->mask(), mask);
}

TEST_F(LayerKeyValue, KeyPathsReachIntoStructuresAndTransforms) {
    auto layer = VLXLayer::create();
    layer->setFrame({{0, 0}, {20, 10}});
    layer->setValueForKeyPath(VLXValue(7.0), "position.x");
    layer->setValueForKeyPath(VLXValue(30), "bounds.size.width");
    layer->setValueForKeyPath(VLXValue(2.0), "bounds.origin.y");
    EXPECT_EQ(layer->position(), (VLXPoint{7, 5}));
    EXPECT_EQ(layer->bounds(), (VLXRect{{0, 2}, {30, 10}}));
    EXPECT_EQ(layer->valueForKeyPath("bounds.size").sizeValue(), (VLXSize{30, 10}));
    EXPECT_EQ(layer->valueForKeyPath("position.y").doubleValue(), 5);
    EXPECT_EQ(layer->valueForKeyPath("frame.size.height").doubleValue(), 10);
    layer->setValueForKeyPath(VLXValue(100.0), "frame.origin.x");
    EXPECT_EQ(layer->frame().origin.x, 100);

    // transform.scale: all three axes; the getter is their mean.
    layer->setValueForKeyPath(VLXValue(2.0), "transform.scale");
    EXPECT_EQ(layer->transform(), VLXTransform3DMakeScale(2, 2, 2));
    EXPECT_DOUBLE_EQ(layer->valueForKeyPath("transform.scale").doubleValue(), 2);
    layer->setValueForKeyPath(VLXValue(5.0), "transform.scale.z");
    EXPECT_DOUBLE_EQ(layer->valueForKeyPath("transform.scale").doubleValue(), 3);
    EXPECT_DOUBLE_EQ(layer->valueForKeyPath("transform.scale.x").doubleValue(), 2);

    // Rotation and translation compose with the scale.
    layer->setTransform(VLXTransform3DIdentity);
    layer->setValueForKeyPath(VLXValue(M_PI / 2), "transform.rotation.z");
    layer->setValueForKeyPath(VLXValue(3.0), "transform.scale.x");
    layer->setValueForKeyPath(VLXValue(-20.0), "transform.translation.x");
    const VLXAffineTransform expected =
        VLXAffineTransformConcat(VLXAffineTransformConcat(VLXAffineTransformMakeScale(3, 1),
                                                          VLXAffineTransformMakeRotation(M_PI / 2)),
                                 VLXAffineTransformMakeTranslation(-20, 0));
    const VLXAffineTransform got = layer->affineTransform();
    EXPECT_NEAR(got.a, expected.a, 1e-12);
    EXPECT_NEAR(got.b, expected.b, 1e-12);
    EXPECT_NEAR(got.c, expected.c, 1e-12);
    EXPECT_NEAR(got.d, expected.d, 1e-12);
    EXPECT_NEAR(got.tx, -20, 1e-12);
    EXPECT_NEAR(layer->valueForKeyPath("transform.rotation").doubleValue(), M_PI / 2, 1e-12);
    EXPECT_NEAR(layer->valueForKeyPath("transform.scale.x").doubleValue(), 3, 1e-12);
    EXPECT_NEAR(layer->valueForKeyPath("transform.scale.y").doubleValue(), 1, 1e-12);
    layer->setValueForKeyPath(VLXValue::valueWithSize({4, 5}), "transform.translation");
    EXPECT_EQ(layer->valueForKeyPath("transform.translation").sizeValue(), (VLXSize{4, 5}));
    EXPECT_EQ(layer->valueForKeyPath("transform.translation.y").doubleValue(), 5);
    // A flip keeps its sign through a round trip.
    layer->setAffineTransform(VLXAffineTransformMakeScale(1, -1));
    EXPECT_DOUBLE_EQ(layer->valueForKeyPath("transform.scale.y").doubleValue(), -1);
    layer->setValueForKeyPath(VLXValue(2.0), "transform.scale.x");
    EXPECT_EQ(layer->affineTransform(), VLXAffineTransformMakeScale(2, -1));

    // Unknown paths: nil, and nothing changes.
    const VLXTransform3D before = layer->transform();
    for (const char* path :
         {"transform.skew", "position.z", "opacity.x", "nothing.at.all", "", "..."}) {
        EXPECT_TRUE(layer->valueForKeyPath(path).isNil()) << path;
        layer->setValueForKeyPath(VLXValue(1.0), path);
    }
    layer->setValueForKeyPath(VLXValue("text"), "position.x");
    EXPECT_EQ(layer->transform(), before);
    EXPECT_EQ(layer->position().y, 5);
}

TEST_F(LayerKeyValue, StoreKeysForSubclassesAndCopies) {
    auto gauge = GaugeLayer::create();
    EXPECT_EQ(gauge->level(), 0.25);       // set by init
    EXPECT_EQ(gauge->glow(), 0.5);         // default of the class
    gauge->setValue(VLXValue(), "level");  // nil removes: the (absent) default shows
    EXPECT_TRUE(gauge->valueForKey("level").isNil());
    EXPECT_EQ(gauge->storedDouble("level", -1), -1);

    // Arbitrary keys and nested dictionaries in the store.
    gauge->setValue(VLXValue(VLXValue::Dictionary{{"a", VLXValue(1)}}), "info");
    gauge->setValueForKeyPath(VLXValue(2), "info.b");
    EXPECT_EQ(gauge->valueForKeyPath("info.a").intValue(), 1);
    EXPECT_EQ(gauge->valueForKeyPath("info.b").intValue(), 2);
    gauge->setValue(VLXValue::valueWithPoint({1, 2}), "spot");
    gauge->setValueForKeyPath(VLXValue(9.0), "spot.y");
    EXPECT_EQ(gauge->storedPoint("spot"), (VLXPoint{1, 9}));
    EXPECT_EQ(gauge->storedColor("spot"), std::nullopt);

    // The copy for the presentation is of the subclass and carries everything.
    gauge->setLevel(0.6);
    gauge->setOpacity(0.3);
    gauge->extra = "kept";
    auto copy = gauge->newInstance();
    copy->initWithLayer(*gauge);
    auto* gaugeCopy = dynamic_cast<GaugeLayer*>(copy.get());
    ASSERT_NE(gaugeCopy, nullptr);
    EXPECT_EQ(gaugeCopy->level(), 0.6);
    EXPECT_EQ(gaugeCopy->opacity(), 0.3);
    EXPECT_EQ(gaugeCopy->extra, "kept");
    EXPECT_EQ(gaugeCopy->storedValues(), gauge->storedValues());
    EXPECT_EQ(gaugeCopy->className(), gauge->className());
}

TEST_F(LayerKeyValue, TreeTextDescribesTheLayers) {
    auto root = VLXLayer::create();
    root->setName(std::string("root"));
    root->setFrame({{0, 0}, {100, 50}});
    auto child = GaugeLayer::create();
    child->setFrame({{10, 10}, {20, 20}});
    child->setOpacity(0.5);
    child->setAffineTransform(VLXAffineTransformMakeScale(2, 2));
    root->addSublayer(child);
    const std::string text = root->layerTreeAsText();
    const auto newline = text.find('\n');
    const std::string first = text.substr(0, newline);
    const std::string second = text.substr(newline + 1);
    EXPECT_NE(first.find("VLXLayer \"root\""), std::string::npos) << first;
    EXPECT_EQ(first.find("opacity"), std::string::npos) << first;  // default left out
    EXPECT_EQ(second.rfind("  ", 0), 0u) << second;                // indented
    EXPECT_NE(second.find("GaugeLayer frame="), std::string::npos) << second;
    EXPECT_NE(second.find("opacity=0.5"), std::string::npos) << second;
    EXPECT_NE(second.find("transform=[2, 0, 0, 2, 0, 0]"), std::string::npos) << second;
    EXPECT_NE(second.find("frame={{0, 0}, {40, 40}}"), std::string::npos) << second;
    EXPECT_NE(second.find("level=0.25"), std::string::npos) << second;
}

TEST_F(LayerKeyValue, OddInputGivesDefinedResults) {
    auto root = VLXLayer::create();
    auto layer = VLXLayer::create();
    root->addSublayer(layer);
    layer->setBounds({{NAN, INFINITY}, {NAN, -INFINITY}});
    layer->setPosition({INFINITY, NAN});
    layer->setFrame({{NAN, 0}, {10, INFINITY}});
    layer->setOpacity(NAN);
    layer->setOpacity(NAN);  // NaN equals NaN: no second change
    layer->setCornerRadius(-INFINITY);
    layer->setContentsScale(1e300);
    layer->setValueForKeyPath(VLXValue(NAN), "transform.rotation");
    layer->setValueForKeyPath(VLXValue(INFINITY), "transform.scale");
    layer->setNeedsDisplay();
    root->displayTreeIfNeeded();
    EXPECT_EQ(layer->contents(), nullptr);
    EXPECT_EQ(root->hitTest({0, 0}), nullptr);
    const VLXPoint p = layer->convertPointToLayer({1, 1}, root.get());
    EXPECT_TRUE(std::isnan(p.x) || std::isinf(p.x));
    EXPECT_FALSE(root->layerTreeAsText().empty());
    EXPECT_FALSE(layer->description().empty());

    // Huge key paths and deep dictionary paths: nil or unchanged, no deep recursion.
    std::string longPath = "info";
    for (int i = 0; i < 100000; ++i) {
        longPath += ".k";
    }
    layer->setValue(VLXValue(VLXValue::Dictionary{}), "info");
    layer->setValueForKeyPath(VLXValue(1), longPath);
    EXPECT_TRUE(layer->valueForKeyPath(longPath).isNil());
    EXPECT_TRUE(layer->valueForKeyPath("info").dictionaryValue().empty());
    layer->setValueForKeyPath(VLXValue(1), "info.a.b.c");  // missing levels: refused
    EXPECT_TRUE(layer->valueForKeyPath("info.a").isNil());

    // The layer is still usable.
    layer->setTransform(VLXTransform3DIdentity);
    layer->setFrame({{1, 2}, {3, 4}});
    EXPECT_EQ(layer->frame(), (VLXRect{{1, 2}, {3, 4}}));
}
