#include <gtest/gtest.h>

#include "LayerTestSupport.h"

#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>

namespace {

std::shared_ptr<VLXBasicAnimation> fade(const char* name, double from, double to, double duration,
                                        std::vector<std::string>* log) {
    auto a = VLXBasicAnimation::animationWithKeyPath("opacity");
    a->setFromValue(VLXValue(from));
    a->setToValue(VLXValue(to));
    a->setDuration(duration);
    a->setValue(VLXValue(name), "name");
    if (log) {
        a->setDelegate(std::make_shared<RecordingAnimationDelegate>(log));
    }
    return a;
}

std::shared_ptr<VLXLayer> committedLayer(ManualClock& clock) {
    auto layer = VLXLayer::create();
    clock.turn();
    return layer;
}

using Log = std::vector<std::string>;

}  // namespace

TEST(LayerAnimations, PresentationIsNilUntilCommittedThenFollowsTheClock) {
    ManualClock clock(500);
    auto layer = VLXLayer::create();
    EXPECT_EQ(layer->presentationLayer(), nullptr);
    EXPECT_FALSE(layer->isCommitted());
    EXPECT_EQ(layer->modelLayer(), layer);
    clock.turn();
    EXPECT_TRUE(layer->isCommitted());
    auto idle = layer->presentationLayer();
    EXPECT_TRUE(idle->isPresentationLayer());
    EXPECT_EQ(idle->modelLayer(), layer);
    EXPECT_EQ(idle->presentationLayer(), idle);
    EXPECT_EQ(layer->presentationLayer(), idle);  // cached while nothing changes

    // An explicit animation: the layer holds a copy; the model never moves.
    auto move = VLXBasicAnimation::animationWithKeyPath("position.x");
    move->setFromValue(VLXValue(0.0));
    move->setToValue(VLXValue(100.0));
    move->setDuration(2);
    layer->addAnimation(move, std::string("move"));
    move->setToValue(VLXValue(1000.0));
    clock.turn();
    clock.step(0.5);
    EXPECT_NEAR(layer->presentationLayer()->position().x, 25, 1e-9);
    EXPECT_EQ(layer->position().x, 0);
    clock.step(2);
    EXPECT_FALSE(layer->hasAnimations());
    EXPECT_EQ(layer->presentationLayer()->position().x, 0);

    // Implicit: begin time 0 resolves to the commit, from what was on screen to the model.
    layer->setOpacity(0);
    EXPECT_EQ(layer->presentationLayer()->opacity(), 1);  // not committed yet: its start
    clock.step(0.1);  // the commit happens in this turn, at the new time
    EXPECT_NEAR(layer->presentationLayer()->opacity(), 1, 1e-9);
    clock.step(0.125);
    EXPECT_NEAR(layer->presentationLayer()->opacity(), 0.5, 1e-9);
}

TEST(LayerAnimations, ReplacementRemovalAndCallbackOrder) {
    Log log;
    ManualClock clock;
    auto layer = committedLayer(clock);
    layer->addAnimation(fade("a", 0, 1, 1, &log), std::string("fade"));
    layer->addAnimation(fade("b", 0, 1, 1, &log), std::nullopt);
    layer->addAnimation(fade("c", 0, 1, 1, &log), std::nullopt);  // nil keys coexist
    EXPECT_EQ(layer->attachedAnimations().size(), 3u);
    EXPECT_EQ(layer->animationKeys(), (std::vector<std::string>{"fade"}));
    EXPECT_TRUE(log.empty());  // nothing before the run loop delivers
    clock.turn();
    EXPECT_EQ(log, (Log{"start:a", "start:b", "start:c"}));

    // Replacing a key stops the old one unfinished; the new one starts after its commit.
    log.clear();
    layer->addAnimation(fade("d", 0, 1, 1, &log), std::string("fade"));
    EXPECT_EQ(layer->attachedAnimation("fade")->valueForKey("name").stringValue(), "d");
    clock.step(0.5);
    EXPECT_EQ(log, (Log{"stop:a:0", "start:d"}));

    log.clear();
    layer->removeAnimationForKey("nothing");
    layer->removeAnimationForKey("fade");
    clock.step(0.6);  // b and c end at 1.0 after their start
    EXPECT_EQ(log, (Log{"stop:d:0", "stop:b:1", "stop:c:1"}));
    EXPECT_FALSE(layer->hasAnimations());

    // Not removed on completion: stops once (finished) and keeps applying with forwards fill.
    log.clear();
    auto kept = fade("k", 0, 0.5, 0.5, &log);
    kept->setRemovedOnCompletion(false);
    kept->setFillMode(VLXFillMode::Forwards);
    layer->addAnimation(kept, std::string("kept"));
    clock.turn();
    clock.step(1);
    clock.step(1);
    EXPECT_EQ(log, (Log{"start:k", "stop:k:1"}));
    EXPECT_EQ(layer->presentationLayer()->opacity(), 0.5);
    layer->removeAllAnimations();  // already stopped: no second stop
    clock.turn();
    EXPECT_EQ(log, (Log{"start:k", "stop:k:1"}));
    EXPECT_EQ(layer->presentationLayer()->opacity(), 1);

    // Removed before its commit: only the stop, unfinished.
    log.clear();
    layer->addAnimation(fade("early", 0, 1, 1, &log), std::string("x"));
    layer->removeAllAnimations();
    clock.turn();
    EXPECT_EQ(log, (Log{"stop:early:0"}));
}

TEST(LayerAnimations, TinyDurationsHiddenDetachedAndDyingLayers) {
    Log log;
    ManualClock clock;
    auto root = committedLayer(clock);
    auto hidden = VLXLayer::create();
    hidden->setHidden(true);
    root->addSublayer(hidden);
    auto detached = VLXLayer::create();
    clock.turn();
    hidden->addAnimation(fade("hidden", 0, 1, 1e-7, &log), std::string("h"));
    detached->addAnimation(fade("detached", 0, 1, 1e-7, &log), std::string("d"));
    // Begin times resolve at the commit in this turn; the end needs time to pass.
    clock.step(1e-6);
    EXPECT_EQ(log, (Log{"start:hidden", "start:detached"}));
    clock.step(1e-6);
    EXPECT_EQ(log, (Log{"start:hidden", "start:detached", "stop:hidden:1", "stop:detached:1"}));
    EXPECT_EQ(VLXLayer::animatedLayerCount(), 0u);

    // A layer that dies with animations still reports them stopped.
    log.clear();
    {
        auto doomed = VLXLayer::create();
        clock.turn();
        doomed->addAnimation(fade("doomed", 0, 1, 5, &log), std::string("d"));
        clock.turn();
    }
    clock.turn();
    EXPECT_EQ(log, (Log{"start:doomed", "stop:doomed:0"}));
    EXPECT_EQ(VLXLayer::animatedLayerCount(), 0u);
}

namespace {
// Adds, replaces and removes animations from inside its own callbacks.
class MeddlingDelegate : public VLXAnimationDelegate {
public:
    std::weak_ptr<VLXLayer> layer;
    Log* log = nullptr;
    void animationDidStart(VLXAnimation& animation) override {
        const std::string name = animation.valueForKey("name").stringValue();
        log->push_back("start:" + name);
        if (name == "first") {
            // Replace itself while starting.
            layer.lock()->addAnimation(fade("second", 0, 1, 1, log), std::string("k"));
        }
    }
    void animationDidStop(VLXAnimation& animation, bool finished) override {
        const std::string name = animation.valueForKey("name").stringValue();
        log->push_back("stop:" + name + ":" + (finished ? "1" : "0"));
        if (name == "first") {
            auto third = fade("third", 0, 1, 1, nullptr);
            third->setDelegate(animation.delegate());
            layer.lock()->addAnimation(third, std::string("k"));  // replaces "second"
        }
        if (name == "third") {
            layer.lock()->removeAllAnimations();
        }
    }
};
}  // namespace

TEST(LayerAnimations, CallbacksMayEditTheAnimations) {
    Log log;
    ManualClock clock;
    auto layer = committedLayer(clock);
    auto delegate = std::make_shared<MeddlingDelegate>();
    delegate->layer = layer;
    delegate->log = &log;
    auto first = fade("first", 0, 1, 1, nullptr);
    first->setDelegate(delegate);
    layer->addAnimation(first, std::string("k"));
    for (int i = 0; i < 4; ++i) {
        clock.step(0.6);
    }
    EXPECT_EQ(log,
              (Log{"start:first", "stop:first:0", "stop:second:0", "start:third", "stop:third:1"}));
    EXPECT_FALSE(layer->hasAnimations());
}

TEST(LayerAnimations, TransactionCompletionWaitsForTheAnimations) {
    Log log;
    ManualClock clock;
    auto layer = committedLayer(clock);
    VLXTransaction::begin();
    VLXTransaction::setCompletionBlock([&log] { log.push_back("completion"); });
    layer->addAnimation(fade("slow", 0, 1, 1, &log), std::string("slow"));
    layer->addAnimation(fade("quick", 0, 1, 0.5, &log), std::string("quick"));
    VLXTransaction::commit();
    clock.turn();
    clock.step(0.6);
    EXPECT_EQ(log, (Log{"start:slow", "start:quick", "stop:quick:1"}));
    clock.step(0.6);
    EXPECT_EQ(log, (Log{"start:slow", "start:quick", "stop:quick:1", "stop:slow:1", "completion"}));
}

TEST(LayerAnimations, ChangeCounters) {
    ManualClock clock;
    auto layer = committedLayer(clock);
    const std::uint64_t generation = layer->generation();
    const std::uint64_t global = VLXLayer::globalChangeCount();
    clock.turn();
    EXPECT_EQ(VLXLayer::globalChangeCount(), global);  // idle turns change nothing
    EXPECT_EQ(layer->generation(), generation);

    auto move = VLXBasicAnimation::animationWithKeyPath("position");
    move->setFromValue(VLXValue::valueWithPoint({0, 0}));
    move->setToValue(VLXValue::valueWithPoint({40, 80}));
    move->setDuration(2);
    layer->addAnimation(move, std::string("move"));
    EXPECT_GT(VLXLayer::globalChangeCount(), global);
    EXPECT_GT(layer->generation(), generation);
    EXPECT_EQ(VLXLayer::animatedLayerCount(), 1u);
    clock.turn();
    clock.step(0.5);
    auto p = layer->presentationLayer();
    EXPECT_EQ(p->position(), (VLXPoint{10, 20}));
    // Presentation copies do not count as changes.
    const std::uint64_t now = VLXLayer::globalChangeCount();
    p->setOpacity(0.1);
    EXPECT_EQ(VLXLayer::globalChangeCount(), now);
    clock.step(2);
    EXPECT_EQ(VLXLayer::animatedLayerCount(), 0u);
}
