#include <gtest/gtest.h>

#include "LayerTestSupport.h"

#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXMediaTimingFunction.h>

namespace {

// Answers per key: "none" → no action, "mine" → its own animation, anything else → no opinion.
class ScriptedDelegate : public VLXLayerDelegate {
public:
    std::vector<std::string> asked;
    VLXLayerActionAnswer actionForLayer(VLXLayer&, std::string_view key) override {
        asked.emplace_back(key);
        if (key == "opacity") {
            return noAction();
        }
        if (key == "position") {
            auto a = VLXBasicAnimation::animationWithKeyPath("position");
            a->setValue(VLXValue("delegate"), "name");
            return a;
        }
        return std::nullopt;
    }
};

// Records the model value at the moment its action is asked for.
class WatchingLayer : public VLXLayer {
public:
    static std::shared_ptr<WatchingLayer> create() { return makeInitialized<WatchingLayer>(); }
    std::vector<std::string> seen;
    std::shared_ptr<VLXAnimation> actionForKey(std::string_view key) override {
        seen.push_back(std::string(key) + "=" + valueForKey(key).description());
        return VLXLayer::actionForKey(key);
    }
    std::shared_ptr<VLXAnimation> defaultActionForKey(std::string_view key) override {
        if (key == "level") {
            auto a = VLXBasicAnimation::animationWithKeyPath("level");
            a->setDuration(2);
            return a;
        }
        return VLXLayer::defaultActionForKey(key);
    }
    std::shared_ptr<VLXLayer> newInstance() const override {
        return VLXMakeShared<WatchingLayer>();
    }
};

std::shared_ptr<VLXBasicAnimation> basicFor(const VLXLayer& layer, std::string_view key) {
    return std::dynamic_pointer_cast<VLXBasicAnimation>(layer.attachedAnimation(key));
}

}  // namespace

TEST(LayerActions, DefaultImplicitAnimationsUseTheTransaction) {
    ManualClock clock;
    auto layer = VLXLayer::create();
    clock.turn();
    layer->setOpacity(0.5);
    // From what is on screen to the model, over the transaction's default 0.25 s.
    auto opacity = basicFor(*layer, "opacity");
    ASSERT_NE(opacity, nullptr);
    EXPECT_TRUE(opacity->fromValue().isNil() && opacity->toValue().isNil());
    EXPECT_EQ(opacity->duration(), 0.25);

    VLXTransaction::begin();
    VLXTransaction::setAnimationDuration(0.6);
    auto easeOut = VLXMediaTimingFunction::functionWithName(VLXMediaTimingFunctionName::EaseOut);
    VLXTransaction::setAnimationTimingFunction(easeOut);
    layer->setPosition({3, 4});
    layer->setValueForKeyPath(VLXValue(2.0), "transform.scale");
    layer->setName(std::string("not animatable"));
    layer->setHidden(true);
    VLXTransaction::commit();
    auto position = basicFor(*layer, "position");
    ASSERT_NE(position, nullptr);
    EXPECT_EQ(position->duration(), 0.6);
    EXPECT_EQ(position->timingFunction(), easeOut);
    // A key path sets the whole property: the action is the root key's.
    EXPECT_NE(basicFor(*layer, "transform"), nullptr);
    EXPECT_EQ(basicFor(*layer, "transform.scale"), nullptr);
    EXPECT_EQ(layer->animationKeys(),
              (std::vector<std::string>{"opacity", "position", "transform"}));

    // Disabled actions: the value changes, no animation.
    layer->removeAllAnimations();
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    layer->setOpacity(0.1);
    layer->setBounds({{0, 0}, {5, 5}});
    VLXTransaction::commit();
    EXPECT_EQ(layer->opacity(), 0.1);
    EXPECT_FALSE(layer->hasAnimations());

    // Setting the value it already has runs no action.
    layer->setOpacity(0.1);
    EXPECT_FALSE(layer->hasAnimations());
}

TEST(LayerActions, SearchOrderDelegateThenDictionaryThenDefault) {
    ManualClock clock;
    auto layer = VLXLayer::create();
    // Before the first commit, only the delegate and the dictionary answer.
    layer->setBorderWidth(1);
    EXPECT_EQ(layer->attachedAnimation("borderWidth"), nullptr);
    clock.turn();
    ScriptedDelegate delegate;
    layer->setDelegate(&delegate);
    auto fromDictionary = VLXBasicAnimation::animationWithKeyPath("bounds");
    fromDictionary->setValue(VLXValue("dictionary"), "name");
    layer->setActions({{"bounds", fromDictionary}, {"cornerRadius", nullptr}});

    layer->setOpacity(0.2);  // delegate: no action, search stops
    EXPECT_EQ(layer->attachedAnimation("opacity"), nullptr);
    layer->setPosition({1, 1});  // delegate's own
    ASSERT_NE(layer->attachedAnimation("position"), nullptr);
    EXPECT_EQ(layer->attachedAnimation("position")->valueForKey("name").stringValue(), "delegate");
    layer->setBounds({{0, 0}, {9, 9}});  // no opinion → dictionary
    ASSERT_NE(layer->attachedAnimation("bounds"), nullptr);
    EXPECT_EQ(layer->attachedAnimation("bounds")->valueForKey("name").stringValue(), "dictionary");
    // The attached animation is a copy of the dictionary's.
    EXPECT_NE(layer->attachedAnimation("bounds"), fromDictionary);
    layer->setCornerRadius(3);  // dictionary's "no action"
    EXPECT_EQ(layer->attachedAnimation("cornerRadius"), nullptr);
    layer->setBorderWidth(2);  // → default
    EXPECT_NE(layer->attachedAnimation("borderWidth"), nullptr);
    EXPECT_EQ(delegate.asked, (std::vector<std::string>{"opacity", "position", "bounds",
                                                        "cornerRadius", "borderWidth"}));
    layer->setDelegate(nullptr);
}

TEST(LayerActions, ActionsAreAskedBeforeTheValueIsStored) {
    ManualClock clock;
    auto layer = WatchingLayer::create();
    clock.turn();
    layer->setOpacity(0.5);
    layer->setValue(VLXValue(3), "level");
    layer->setValueForKeyPath(VLXValue(8.0), "position.x");
    EXPECT_EQ(layer->seen,
              (std::vector<std::string>{"opacity=1", "level=(null)", "position=NSPoint: {0, 0}"}));
    // Store keys get their class's action, which starts from what was on screen.
    auto level = basicFor(*layer, "level");
    ASSERT_NE(level, nullptr);
    EXPECT_EQ(level->duration(), 2);
    clock.turn();  // commit
    clock.step(1);
    auto presentation = layer->presentationLayer();
    // Opacity's 0.25 s are over: the model shows.
    EXPECT_EQ(presentation->opacity(), 0.5);
    EXPECT_EQ(presentation->position().x, 8);
    // Presentation copies never run actions.
    const std::size_t asked = layer->seen.size();
    presentation->setOpacity(0.9);
    EXPECT_EQ(layer->seen.size(), asked);
    EXPECT_FALSE(presentation->hasAnimations());
}

namespace {
// Its own action for "progress", from the presentation value (nil before the first commit).
class DialLayer : public VLXLayer {
public:
    static std::shared_ptr<DialLayer> create() { return makeInitialized<DialLayer>(); }
    std::shared_ptr<VLXLayer> newInstance() const override { return VLXMakeShared<DialLayer>(); }
    std::shared_ptr<VLXAnimation> actionForKey(std::string_view key) override {
        if (key != "progress") {
            return VLXLayer::actionForKey(key);
        }
        auto a = VLXBasicAnimation::animationWithKeyPath("progress");
        if (auto p = presentationLayer()) {
            a->setFromValue(p->valueForKey("progress"));
        }
        a->setDuration(VLXTransaction::animationDuration());
        return a;
    }
};
}  // namespace

TEST(LayerActions, OwnActionsAnimateFromTheOldValueEvenBeforeTheFirstCommit) {
    ManualClock clock;
    auto dial = DialLayer::create();
    dial->setValue(VLXValue(0.2), "progress");  // uncommitted: the subclass still acts
    dial->setValue(VLXValue(1.0), "progress");  // replaces: from what was on screen (0.2 → 1)
    EXPECT_EQ(dial->animationKeys(), (std::vector<std::string>{"progress"}));
    clock.turn();
    clock.step(0.125);
    EXPECT_NEAR(dial->presentationLayer()->storedDouble("progress"), 0.6, 1e-9);
    clock.step(0.125);
    EXPECT_NEAR(dial->presentationLayer()->storedDouble("progress"), 1.0, 1e-9);

    // Committed: the from value comes from the presentation at the moment of the change.
    clock.step(1);
    dial->setValue(VLXValue(0.0), "progress");
    auto a = std::dynamic_pointer_cast<VLXBasicAnimation>(dial->attachedAnimation("progress"));
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->fromValue().doubleValue(), 1.0);
}
