// SDL events pushed through SDL's own queue with the dummy video driver, read back by
// ViewerInput, and checked where they land: in a view that records what it was sent.
#include <SDL.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include "ViewerInput.h"

namespace {

using Phase = VLXTouchPhase;

struct Seen {
    Phase phase;
    VLXPoint location;
    std::shared_ptr<VLXTouch> touch;  // held, so that a new touch cannot take its address
    std::size_t eventTouches;         // how many touches the whole event held
};

class RecorderView : public VLXView {
public:
    static std::shared_ptr<RecorderView> make(VLXRect f) { return makeWithFrame<RecorderView>(f); }
    void touchesBegan(const Touches& t, const VLXEvent& e) override { record(t, e); }
    void touchesMoved(const Touches& t, const VLXEvent& e) override { record(t, e); }
    void touchesEnded(const Touches& t, const VLXEvent& e) override { record(t, e); }
    void touchesCancelled(const Touches& t, const VLXEvent& e) override { record(t, e); }
    std::vector<Seen> seen;

private:
    void record(const Touches& touches, const VLXEvent& event) {
        for (const auto& t : touches) {
            seen.push_back({t->phase(), t->locationInView(nullptr), t, event.allTouches().size()});
        }
    }
};

void push(SDL_Event e) {
    ASSERT_EQ(SDL_PushEvent(&e), 1);
}

void pushMouse(Uint32 type, int x, int y, Uint8 button = SDL_BUTTON_LEFT, Uint32 which = 0) {
    SDL_Event e{};
    e.type = type;
    if (type == SDL_MOUSEMOTION) {
        e.motion = {type, 0, 0, which, SDL_BUTTON_LMASK, x, y, 0, 0};
    } else {
        const Uint8 state = type == SDL_MOUSEBUTTONDOWN ? SDL_PRESSED : SDL_RELEASED;
        e.button = {type, 0, 0, which, button, state, 1, 0, x, y};
    }
    push(e);
}

void pushFinger(Uint32 type, SDL_FingerID id, float x, float y) {
    SDL_Event e{};
    e.tfinger = {type, 0, 1, id, x, y, 0, 0, 0, 0};
    push(e);
}

void expectAt(const Seen& s, Phase phase, double x, double y) {
    EXPECT_EQ(s.phase, phase);
    EXPECT_NEAR(s.location.x, x, 1e-4);
    EXPECT_NEAR(s.location.y, y, 1e-4);
}

class ViewerInputTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        setenv("SDL_VIDEODRIVER", "dummy", 1);
        ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0) << SDL_GetError();
    }
    static void TearDownTestSuite() { SDL_Quit(); }

    void SetUp() override {
        VLXClock::setManual(100);
        SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
        SDL_SetModState(KMOD_NONE);
        window->addSubview(recorder);
        input = std::make_unique<ViewerInput>(window);
    }
    void TearDown() override {
        input.reset();
        VLXClock::setReal();
    }

    // Reads everything queued, a little later each time; the number of SDL events that changed
    // a touch.
    int pump() {
        int handled = 0;
        SDL_Event e;
        while (SDL_PollEvent(&e)) {
            VLXClock::advance(0.01);
            handled += input->handleEvent(e) ? 1 : 0;
        }
        return handled;
    }
    const Seen& seen(std::size_t i) const { return recorder->seen.at(i); }

    std::shared_ptr<VLXWindow> window = VLXWindow::createWithFrame({{0, 0}, {200, 100}});
    std::shared_ptr<RecorderView> recorder = RecorderView::make(window->bounds());
    std::unique_ptr<ViewerInput> input;
};

TEST_F(ViewerInputTest, MouseIsOneFingerAndOnlyTheLeftButtonOfARealMouseCounts) {
    pushMouse(SDL_MOUSEMOTION, 5, 5);  // hovering: no touch
    pushMouse(SDL_MOUSEBUTTONDOWN, 30, 40, SDL_BUTTON_RIGHT);
    pushMouse(SDL_MOUSEBUTTONDOWN, 30, 40, SDL_BUTTON_LEFT, SDL_TOUCH_MOUSEID);  // made up by SDL
    pushMouse(SDL_MOUSEBUTTONDOWN, 30, 40);
    pushMouse(SDL_MOUSEMOTION, 50, 45);
    pushMouse(SDL_MOUSEBUTTONUP, 50, 45, SDL_BUTTON_RIGHT);
    pushMouse(SDL_MOUSEBUTTONUP, 52, 47);
    pushMouse(SDL_MOUSEMOTION, 60, 60);  // after the lift: nothing
    EXPECT_EQ(pump(), 3);
    ASSERT_EQ(recorder->seen.size(), 3u);
    expectAt(seen(0), Phase::Began, 30, 40);
    expectAt(seen(1), Phase::Moved, 50, 45);
    expectAt(seen(2), Phase::Ended, 52, 47);
    EXPECT_EQ(seen(0).touch, seen(2).touch);

    // With the window shown at twice its size, mouse units are half points.
    input->setZoom(2);
    input->setZoom(std::nan(""));
    pushMouse(SDL_MOUSEBUTTONDOWN, 100, 60);
    EXPECT_EQ(pump(), 1);
    expectAt(seen(3), Phase::Began, 50, 30);
}

TEST_F(ViewerInputTest, CtrlPressMakesTwoFingersMirroredAroundThePressPoint) {
    SDL_SetModState(KMOD_LCTRL);
    pushMouse(SDL_MOUSEBUTTONDOWN, 100, 50);
    EXPECT_EQ(pump(), 1);
    SDL_SetModState(KMOD_NONE);  // only the press decides
    pushMouse(SDL_MOUSEMOTION, 110, 53);
    pushMouse(SDL_MOUSEBUTTONUP, 110, 53);
    EXPECT_EQ(pump(), 2);
    ASSERT_EQ(recorder->seen.size(), 6u);
    const double s = ViewerInput::kPinchHalfSpread;
    expectAt(seen(0), Phase::Began, 100 + s, 50);
    expectAt(seen(1), Phase::Began, 100 - s, 50);
    expectAt(seen(2), Phase::Moved, 110 + s, 53);
    expectAt(seen(3), Phase::Moved, 90 - s, 47);
    EXPECT_EQ(seen(4).phase, Phase::Ended);
    EXPECT_EQ(seen(5).phase, Phase::Ended);
    for (const auto& each : recorder->seen) {
        EXPECT_EQ(each.eventTouches, 2u);
    }
    EXPECT_NE(seen(0).touch, seen(1).touch);
    EXPECT_EQ(input->activeTouchCount(), 0u);
}

TEST_F(ViewerInputTest, FingersMapByIdAndUnknownIdsAreIgnored) {
    pushFinger(SDL_FINGERMOTION, 9, 0.5f, 0.5f);  // never went down
    pushFinger(SDL_FINGERDOWN, 7, 0.25f, 0.5f);
    pushFinger(SDL_FINGERDOWN, 7, 0.75f, 0.5f);  // already down: ignored
    pushFinger(SDL_FINGERDOWN, 8, 0.5f, 0.2f);
    pushFinger(SDL_FINGERMOTION, 7, 0.3f, 0.6f);
    pushFinger(SDL_FINGERUP, 9, 0.5f, 0.5f);
    pushFinger(SDL_FINGERUP, 8, 0.5f, 0.2f);
    pushFinger(SDL_FINGERUP, 7, 0.3f, 0.6f);
    EXPECT_EQ(pump(), 5);
    ASSERT_EQ(recorder->seen.size(), 5u);
    expectAt(seen(0), Phase::Began, 50, 50);  // normalised × 200 × 100
    expectAt(seen(1), Phase::Began, 100, 20);
    expectAt(seen(2), Phase::Moved, 60, 60);
    EXPECT_EQ(seen(2).eventTouches, 2u);  // the other finger, standing still
    EXPECT_EQ(seen(3).phase, Phase::Ended);
    EXPECT_EQ(seen(3).touch, seen(1).touch);
    EXPECT_EQ(seen(4).touch, seen(0).touch);
    EXPECT_EQ(input->activeTouchCount(), 0u);

    // The same id down again is a new finger.
    pushFinger(SDL_FINGERDOWN, 7, 0.1f, 0.1f);
    EXPECT_EQ(pump(), 1);
    EXPECT_NE(seen(5).touch, seen(0).touch);
}

TEST_F(ViewerInputTest, LeavingTheWindowLiftsAtTheEdge) {
    pushFinger(SDL_FINGERDOWN, 1, 0.5f, 0.5f);
    pushFinger(SDL_FINGERMOTION, 1, 1.3f, 0.4f);
    pushFinger(SDL_FINGERMOTION, 1, 0.5f, 0.5f);  // gone already
    pushFinger(SDL_FINGERDOWN, 2, 1.5f, 0.5f);    // comes down outside: no touch
    pushMouse(SDL_MOUSEBUTTONDOWN, 20, 20);
    pushMouse(SDL_MOUSEMOTION, 20, -15);
    pushMouse(SDL_MOUSEBUTTONUP, 20, -15);
    EXPECT_EQ(pump(), 4);
    ASSERT_EQ(recorder->seen.size(), 4u);
    expectAt(seen(1), Phase::Ended, 200, 40);
    expectAt(seen(3), Phase::Ended, 20, 0);

    // A pinch whose mirrored finger would leave lifts both fingers.
    SDL_SetModState(KMOD_RCTRL);
    pushMouse(SDL_MOUSEBUTTONDOWN, 100, 50);
    pushMouse(SDL_MOUSEMOTION, 170, 50);  // the mirror would be at -10
    EXPECT_EQ(pump(), 2);
    ASSERT_EQ(recorder->seen.size(), 8u);
    expectAt(seen(6), Phase::Ended, 200, 50);
    expectAt(seen(7), Phase::Ended, 0, 50);
    EXPECT_EQ(input->activeTouchCount(), 0u);
}

TEST_F(ViewerInputTest, FocusLossAndWindowChangesCancelWhatIsDown) {
    pushFinger(SDL_FINGERDOWN, 1, 0.5f, 0.5f);
    pushMouse(SDL_MOUSEBUTTONDOWN, 10, 10);
    SDL_Event focus{};
    focus.type = SDL_WINDOWEVENT;
    focus.window.event = SDL_WINDOWEVENT_FOCUS_LOST;
    push(focus);
    push(focus);  // nothing left to cancel
    EXPECT_EQ(pump(), 3);
    ASSERT_EQ(recorder->seen.size(), 4u);
    EXPECT_EQ(seen(2).phase, Phase::Cancelled);
    EXPECT_EQ(seen(3).phase, Phase::Cancelled);

    // Switching windows mid-touch cancels in the old one; the new one gets the next touches.
    pushFinger(SDL_FINGERDOWN, 1, 0.5f, 0.5f);
    pump();
    auto other = VLXWindow::createWithFrame({{0, 0}, {100, 100}});
    auto otherRecorder = RecorderView::make(other->bounds());
    other->addSubview(otherRecorder);
    input->setWindow(other);
    ASSERT_EQ(recorder->seen.size(), 6u);
    EXPECT_EQ(seen(5).phase, Phase::Cancelled);
    pushFinger(SDL_FINGERMOTION, 1, 0.6f, 0.6f);  // that finger is gone
    pushFinger(SDL_FINGERDOWN, 2, 0.5f, 0.5f);
    EXPECT_EQ(pump(), 1);
    ASSERT_EQ(otherRecorder->seen.size(), 1u);
    expectAt(otherRecorder->seen[0], Phase::Began, 50, 50);

    // A window that has gone takes nothing, and the input stays usable.
    input->setWindow(nullptr);
    other.reset();
    pushMouse(SDL_MOUSEBUTTONDOWN, 10, 10);
    EXPECT_EQ(pump(), 0);
    input->setWindow(window);
    pushMouse(SDL_MOUSEBUTTONDOWN, 10, 10);
    EXPECT_EQ(pump(), 1);
}

}  // namespace
