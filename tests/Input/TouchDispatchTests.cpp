#include <gtest/gtest.h>

#include <cmath>

#include "Input/InputTestSupport.h"

using State = VLXGestureRecognizerState;
using Log = std::vector<std::string>;

namespace {

struct Scene {
    Log log;
    std::shared_ptr<VLXWindow> window = VLXWindow::createWithFrame({0, 0, 200, 200});
    std::shared_ptr<LoggingView> outer = LoggingView::make({0, 0, 150, 150}, "outer", &log);
    std::shared_ptr<LoggingView> inner = LoggingView::make({50, 50, 50, 50}, "inner", &log);
    Scene() {
        window->addSubview(outer);
        outer->addSubview(inner);
    }
};

std::shared_ptr<VLXTouch> touchAt(double x, double y, double t = 0) {
    return VLXTouch::create({x, y}, t);
}

}  // namespace

TEST(TouchDispatch, HitTestsOnceAndDeliversToRecognizersDeepestFirstThenToTheView) {
    Scene s;
    auto onInner = ScriptedRecognizer::make("r-inner", &s.log);
    auto onOuter = ScriptedRecognizer::make("r-outer", &s.log);
    auto onWindow = ScriptedRecognizer::make("r-window", &s.log);
    s.window->addGestureRecognizer(onWindow);
    s.outer->addGestureRecognizer(onOuter);
    s.inner->addGestureRecognizer(onInner);
    for (auto& r : {onInner, onOuter, onWindow}) {
        r->setDelaysTouchesEnded(false);
    }

    auto touch = touchAt(60, 70);
    sendTouches(*s.window, {touch});
    EXPECT_EQ(touch->view(), s.inner.get());
    EXPECT_EQ(touch->window(), s.window.get());
    EXPECT_EQ(s.log, (Log{"r-inner touches began 1", "r-outer touches began 1",
                          "r-window touches began 1", "inner began 1"}));
    EXPECT_EQ(onOuter->numberOfTouches(), 1u);
    // Locations are in the asked view's coordinates.
    EXPECT_EQ(onInner->locationInView(s.inner.get()), (VLXPoint{10, 20}));
    EXPECT_EQ(touch->locationInView(s.outer.get()), (VLXPoint{60, 70}));

    // Leaving the hit view keeps the touch with it.
    s.log.clear();
    touch->update({190, 190}, 0.1, VLXTouchPhase::Moved);
    sendTouches(*s.window, {touch});
    EXPECT_EQ(s.log.back(), "inner moved 1");
    EXPECT_EQ(touch->previousLocationInView(nullptr), (VLXPoint{60, 70}));

    s.log.clear();
    touch->update({190, 190}, 0.2, VLXTouchPhase::Ended);
    sendTouches(*s.window, {touch});
    EXPECT_EQ(s.log.back(), "inner ended 1");
    EXPECT_EQ(onInner->numberOfTouches(), 0u);
    // The recogniser keeps the last centroid once its touches are gone.
    EXPECT_EQ(onWindow->locationInView(nullptr), (VLXPoint{190, 190}));

    // A second end of the same touch, and moves of a touch that never began, reach nobody.
    s.log.clear();
    sendTouches(*s.window, {touch});
    auto stray = touchAt(60, 60);
    stray->update({61, 61}, 0.3, VLXTouchPhase::Moved);
    sendTouches(*s.window, {stray});
    auto outside = touchAt(500, 500);
    sendTouches(*s.window, {outside});
    EXPECT_TRUE(s.log.empty());
    EXPECT_EQ(outside->view(), nullptr);
}

TEST(TouchDispatch, UnhandledTouchesGoUpTheTreeAndOtherWindowsTouchesAreIgnored) {
    Scene s;
    auto plain = VLXView::createWithFrame({0, 0, 20, 20});
    s.inner->addSubview(plain);
    auto touch = touchAt(55, 55);
    sendTouches(*s.window, {touch});
    EXPECT_EQ(touch->view(), plain.get());
    EXPECT_EQ(s.log, (Log{"inner began 1"}));

    auto other = VLXWindow::createWithFrame({0, 0, 200, 200});
    touch->update({56, 56}, 0.1, VLXTouchPhase::Moved);
    other->sendEvent(*VLXEvent::create({touch}, 0.1));
    EXPECT_EQ(s.log.size(), 1u);
    // A recycled touch object that already began is never hit-tested again.
    touch->setPhase(VLXTouchPhase::Began);
    other->sendEvent(*VLXEvent::create({touch}, 0.1));
    EXPECT_EQ(touch->window(), s.window.get());
}

TEST(TouchDispatch, RecognitionCancelsTheViewsTouchesUnlessTheRecognizerLetsThemThrough) {
    for (bool cancels : {true, false}) {
        SCOPED_TRACE(cancels);
        Scene s;
        auto r = ScriptedRecognizer::make("r", &s.log);
        r->setCancelsTouchesInView(cancels);
        r->setDelaysTouchesEnded(false);
        s.inner->addGestureRecognizer(r);
        auto touch = touchAt(60, 60);
        sendTouches(*s.window, {touch});
        r->request(State::Began);
        touch->update({70, 60}, 0.1, VLXTouchPhase::Moved);
        sendTouches(*s.window, {touch});
        touch->update({70, 60}, 0.2, VLXTouchPhase::Ended);
        sendTouches(*s.window, {touch});
        if (cancels) {
            EXPECT_EQ(s.log,
                      (Log{"r touches began 1", "inner began 1", "r began", "inner cancelled 1",
                           "r touches moved 1", "r touches ended 1", "r cancelled", "r reset"}));
        } else {
            EXPECT_EQ(s.log, (Log{"r touches began 1", "inner began 1", "r began",
                                  "r touches moved 1", "inner moved 1", "r touches ended 1",
                                  "r cancelled", "r reset", "inner ended 1"}));
        }
        // The subclass never ended it: a gesture cannot outlive its touches, so it was
        // cancelled and reset.
        EXPECT_EQ(r->state(), State::Possible);
    }
}

TEST(TouchDispatch, DelayedDeliveriesWaitForTheRecognizersDecision) {
    // Ended held while the recogniser may still recognise: failing releases it, recognising
    // turns it into a cancel.
    for (const State decision : {State::Failed, State::Ended}) {
        Scene s;
        auto r = ScriptedRecognizer::make("r", &s.log);
        s.inner->addGestureRecognizer(r);
        auto touch = touchAt(60, 60);
        sendTouches(*s.window, {touch});
        touch->update({60, 60}, 0.1, VLXTouchPhase::Ended);
        sendTouches(*s.window, {touch});
        EXPECT_EQ(s.log, (Log{"r touches began 1", "inner began 1", "r touches ended 1"}));
        r->request(decision);
        const Log after = decision == State::Failed
                              ? Log{"inner ended 1", "r reset"}
                              : Log{"r ended", "inner cancelled 1", "r reset"};
        EXPECT_EQ(Log(s.log.begin() + 3, s.log.end()), after);
    }
    // delaysTouchesBegan holds the view's began (and the moves after it) until failure.
    {
        Scene s;
        auto r = ScriptedRecognizer::make("r", &s.log);
        r->setDelaysTouchesBegan(true);
        s.inner->addGestureRecognizer(r);
        auto touch = touchAt(60, 60);
        sendTouches(*s.window, {touch});
        touch->update({62, 60}, 0.1, VLXTouchPhase::Moved);
        sendTouches(*s.window, {touch});
        EXPECT_EQ(s.log, (Log{"r touches began 1", "r touches moved 1"}));
        r->request(State::Failed);
        EXPECT_EQ(s.log.back(), "inner began 1");
        touch->update({62, 60}, 0.2, VLXTouchPhase::Ended);
        sendTouches(*s.window, {touch});
        EXPECT_EQ(s.log[s.log.size() - 2], "inner ended 1");
    }
}

TEST(TouchDispatch, SurvivesRecognizersAndViewsThatGoAwayMidSequence) {
    Scene s;
    auto r = ScriptedRecognizer::make("r", &s.log);
    r->setDelaysTouchesEnded(false);
    s.inner->addGestureRecognizer(r);
    // The action removes its own recogniser and the view it sits on.
    VLXView* inner = s.inner.get();  // the action must not keep the view alive
    r->addAction([inner](VLXGestureRecognizer& self) {
        if (self.state() == State::Began) {
            inner->removeGestureRecognizer(&self);
            inner->removeFromSuperview();
        }
    });
    auto touch = touchAt(60, 60);
    sendTouches(*s.window, {touch});
    r->request(State::Began);
    EXPECT_EQ(r->view(), nullptr);
    // Removal cancelled the gesture (targets heard it) and forgot the touches.
    EXPECT_EQ(r->state(), State::Possible);
    EXPECT_NE(std::find(s.log.begin(), s.log.end(), "r cancelled"), s.log.end());
    s.inner.reset();
    touch->update({65, 60}, 0.1, VLXTouchPhase::Moved);
    sendTouches(*s.window, {touch});
    touch->update({65, 60}, 0.2, VLXTouchPhase::Ended);
    sendTouches(*s.window, {touch});
    EXPECT_EQ(touch->view(), nullptr);  // the hit view has gone
    EXPECT_EQ(r->numberOfTouches(), 0u);

    // Non-finite readings never reach anybody; time never runs backwards.
    auto bad = VLXTouch::create({NAN, INFINITY}, NAN);
    EXPECT_EQ(bad->locationInView(nullptr), (VLXPoint{0, 0}));
    bad->update({10, 10}, 5, VLXTouchPhase::Moved);
    bad->update({NAN, 20}, 3, VLXTouchPhase::Moved);
    EXPECT_EQ(bad->locationInView(nullptr), (VLXPoint{10, 10}));
    EXPECT_EQ(bad->timestamp(), 5);
}
