#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Views/VLXControl.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

struct Tracked {
    std::vector<std::string> log;
    std::shared_ptr<VLXObject> target = VLXObject::create();
    std::shared_ptr<VLXWindow> window = VLXWindow::createWithFrame({0, 0, 400, 400});
    std::shared_ptr<VLXControl> control = VLXControl::createWithFrame({100, 100, 50, 50});
    Tracked() {
        window->addSubview(control);
        const std::pair<VLXControlEvents, const char*> names[] = {
            {VLXControlEventTouchDown, "down"},
            {VLXControlEventTouchDownRepeat, "repeat"},
            {VLXControlEventTouchDragInside, "inside"},
            {VLXControlEventTouchDragOutside, "outside"},
            {VLXControlEventTouchDragEnter, "enter"},
            {VLXControlEventTouchDragExit, "exit"},
            {VLXControlEventTouchUpInside, "up-inside"},
            {VLXControlEventTouchUpOutside, "up-outside"},
            {VLXControlEventTouchCancel, "cancel"}};
        for (const auto& [event, name] : names) {
            control->addTarget(
                target,
                VLXControlAction(name, [this, name = std::string(name)](
                                           VLXObject&, VLXObject*) { log.push_back(name); }),
                event);
        }
    }
    void send(const std::shared_ptr<VLXTouch>& touch) {
        window->sendEvent(*VLXEvent::create({touch}, touch->timestamp()));
    }
};

}  // namespace

TEST(ControlTracking, DragsInAndOutOfTheTrackingAreaAndLiftsWhereTheFingerIs) {
    Tracked t;
    auto touch = VLXTouch::create({120, 120}, 0, VLXTouchPhase::Began, 2);
    t.send(touch);
    EXPECT_TRUE(t.control->isHighlighted());
    EXPECT_TRUE(t.control->isTracking());
    // 60 points right of the bounds is still inside the tracking area; 100 is not.
    touch->update({210, 120}, 0.1, VLXTouchPhase::Moved);
    t.send(touch);
    touch->update({250, 120}, 0.2, VLXTouchPhase::Moved);
    t.send(touch);
    EXPECT_FALSE(t.control->isHighlighted());
    touch->update({200, 120}, 0.3, VLXTouchPhase::Moved);
    t.send(touch);
    touch->update({250, 125}, 0.4, VLXTouchPhase::Moved);
    t.send(touch);
    touch->update({250, 125}, 0.5, VLXTouchPhase::Ended);
    t.send(touch);
    EXPECT_EQ(t.log,
              (std::vector<std::string>{"down", "repeat", "inside", "outside", "exit", "inside",
                                        "enter", "outside", "exit", "up-outside"}));
    EXPECT_FALSE(t.control->isTracking());
    EXPECT_FALSE(t.control->isHighlighted());

    // A plain tap ends inside; a disabled control tracks nothing.
    t.log.clear();
    auto tap = VLXTouch::create({110, 110}, 1);
    t.send(tap);
    tap->update({111, 110}, 1.1, VLXTouchPhase::Ended);
    t.send(tap);
    EXPECT_EQ(t.log, (std::vector<std::string>{"down", "up-inside"}));
    t.log.clear();
    t.control->setEnabled(false);
    auto ignored = VLXTouch::create({110, 110}, 2);
    t.send(ignored);
    EXPECT_TRUE(t.log.empty());
}

TEST(ControlTracking, ARecognizerThatWinsCancelsTheTrackingAndSecondFingersAreIgnored) {
    struct Winner : VLXGestureRecognizer {
        static std::shared_ptr<Winner> make() { return makeInitialized<Winner>(); }
        void win() { setState(VLXGestureRecognizerState::Began); }
    };
    Tracked t;
    auto winner = Winner::make();
    t.window->addGestureRecognizer(winner);
    auto first = VLXTouch::create({120, 120}, 0);
    t.send(first);
    auto second = VLXTouch::create({130, 130}, 0.1);
    first->setPhase(VLXTouchPhase::Stationary);
    t.window->sendEvent(*VLXEvent::create({first, second}, 0.1));
    EXPECT_EQ(t.log, (std::vector<std::string>{"down"}));
    winner->win();
    EXPECT_EQ(t.log, (std::vector<std::string>{"down", "cancel"}));
    EXPECT_FALSE(t.control->isTracking());
}
