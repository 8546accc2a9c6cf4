#include <gtest/gtest.h>

#include <algorithm>

#include "Input/InputTestSupport.h"

using State = VLXGestureRecognizerState;
using Log = std::vector<std::string>;

namespace {

// A delegate whose answers the test sets; it names the pairs it was asked about.
struct Delegate : VLXGestureRecognizerDelegate {
    bool shouldBegin = true;
    const VLXGestureRecognizer* simultaneousWith = nullptr;
    const VLXGestureRecognizer* requiredToFailBy = nullptr;
    std::vector<std::string>* asked = nullptr;
    bool gestureRecognizerShouldBegin(VLXGestureRecognizer&) override { return shouldBegin; }
    bool gestureRecognizerShouldRecognizeSimultaneouslyWithGestureRecognizer(
        VLXGestureRecognizer&, VLXGestureRecognizer& other) override {
        if (asked) {
            asked->push_back("simultaneous?");
        }
        return &other == simultaneousWith;
    }
    bool gestureRecognizerShouldBeRequiredToFailByGestureRecognizer(
        VLXGestureRecognizer&, VLXGestureRecognizer& other) override {
        return &other == requiredToFailBy;
    }
};

struct Arena {
    Log log;
    std::shared_ptr<VLXWindow> window = VLXWindow::createWithFrame({0, 0, 100, 100});
    std::shared_ptr<ScriptedRecognizer> a = ScriptedRecognizer::make("a", &log);
    std::shared_ptr<ScriptedRecognizer> b = ScriptedRecognizer::make("b", &log);
    std::shared_ptr<VLXTouch> touch = VLXTouch::create({10, 10}, 0);
    Arena() {
        auto view = VLXView::createWithFrame({0, 0, 100, 100});
        window->addSubview(view);
        view->addGestureRecognizer(a);
        view->addGestureRecognizer(b);
        sendTouches(*window, {touch});
        log.clear();
    }
    void lift() {
        touch->update(touch->locationInView(nullptr), 1, VLXTouchPhase::Ended);
        sendTouches(*window, {touch});
    }
    // The actions and resets heard, without the touch calls.
    Log outcomes() const {
        Log result;
        std::copy_if(log.begin(), log.end(), std::back_inserter(result),
                     [](const std::string& line) { return line.find("touches") == line.npos; });
        return result;
    }
};

}  // namespace

TEST(GestureArbitration, TheFirstToBeginFailsItsCompetitorsUnlessEitherDelegateAllowsBoth) {
    {
        Arena s;
        s.a->request(State::Began);
        EXPECT_EQ(s.b->state(), State::Failed);
        s.b->request(State::Began);  // failed recognisers stay failed
        EXPECT_EQ(s.b->state(), State::Failed);
        s.lift();
        EXPECT_EQ(s.outcomes(), (Log{"a began", "a cancelled", "a reset", "b reset"}));
    }
    // Only b's delegate says yes: asking both is enough.
    {
        Arena s;
        auto delegate = std::make_shared<Delegate>();
        delegate->simultaneousWith = s.a.get();
        s.b->setDelegate(delegate);
        s.a->request(State::Began);
        s.b->request(State::Began);
        EXPECT_EQ(s.a->state(), State::Began);
        EXPECT_EQ(s.b->state(), State::Began);
    }
    // A late competitor that may not run with the winner fails when it asks.
    {
        Arena s;
        s.a->request(State::Ended);
        EXPECT_EQ(s.b->state(), State::Failed);
    }
}

TEST(GestureArbitration, ShouldBeginRefusalFailsWithoutAnyAction) {
    Arena s;
    auto delegate = std::make_shared<Delegate>();
    delegate->shouldBegin = false;
    s.a->setDelegate(delegate);
    s.a->request(State::Began);
    EXPECT_EQ(s.a->state(), State::Failed);
    // A refused recogniser fails nobody.
    EXPECT_EQ(s.b->state(), State::Possible);
    s.b->request(State::Began);
    EXPECT_EQ(s.b->state(), State::Began);
    EXPECT_EQ(s.outcomes(), (Log{"b began"}));
}

TEST(GestureArbitration, WaitersTakeTheirStateWhenTheOtherFailsAndFailWhenItRecognizes) {
    // Static requirement: a waits for b.
    for (bool bFails : {true, false}) {
        SCOPED_TRACE(bFails);
        Arena s;
        s.a->requireGestureRecognizerToFail(s.b);
        s.a->request(State::Ended);
        EXPECT_EQ(s.a->state(), State::Possible);  // waiting reads possible
        s.b->request(bFails ? State::Failed : State::Began);
        // It recognises the moment b fails (and stays ended while its touch is down).
        EXPECT_EQ(s.a->state(), bFails ? State::Ended : State::Failed);
        EXPECT_EQ(s.outcomes(), bFails ? Log{"a ended"} : Log{"b began"});
        s.lift();
        EXPECT_EQ(s.a->state(), State::Possible);
        EXPECT_EQ(s.b->state(), State::Possible);
    }
    // The delegate's version: b's delegate says b must fail before a (a press and a tap).
    {
        Arena s;
        auto delegate = std::make_shared<Delegate>();
        delegate->requiredToFailBy = s.a.get();
        s.b->setDelegate(delegate);
        s.a->request(State::Ended);
        EXPECT_EQ(s.outcomes(), Log{});
        s.lift();  // still undecided at the lift
        s.b->request(State::Failed);
        EXPECT_EQ(s.outcomes(), (Log{"a ended", "a reset", "b reset"}));
    }
}

TEST(GestureArbitration, StateMachineRefusesIllegalMovesAndDisablingEndsTheGesture) {
    Log log;
    auto r = ScriptedRecognizer::make("r", &log);
    r->request(State::Changed);  // not from possible
    r->request(State::Cancelled);
    EXPECT_EQ(r->state(), State::Possible);
    r->request(State::Began);
    r->request(State::Changed);
    r->request(State::Changed);
    r->request(State::Began);  // not back
    EXPECT_EQ(r->state(), State::Changed);
    // A subclass may fail a begun gesture: the state says so, and no action is sent for it.
    r->request(State::Failed);
    EXPECT_EQ(r->state(), State::Failed);
    r->request(State::Ended);
    EXPECT_EQ(log, (Log{"r began", "r changed", "r changed"}));
    r->reset();

    // Disabled mid-gesture: cancelled for the targets; a disabled recogniser cannot begin.
    log.clear();
    r->request(State::Began);
    r->setEnabled(false);
    EXPECT_EQ(r->state(), State::Cancelled);
    r->reset();
    r->request(State::Began);
    EXPECT_EQ(r->state(), State::Possible);
    EXPECT_EQ(log, (Log{"r began", "r cancelled", "r reset"}));

    // Through a window, a disabled recogniser gets no touches.
    auto window = VLXWindow::createWithFrame({0, 0, 50, 50});
    window->addGestureRecognizer(r);
    log.clear();
    sendTouches(*window, {VLXTouch::create({5, 5}, 0)});
    EXPECT_EQ(log, Log{});
    r->setEnabled(true);
    sendTouches(*window, {VLXTouch::create({6, 6}, 0)});
    EXPECT_EQ(log, (Log{"r touches began 1"}));
}
