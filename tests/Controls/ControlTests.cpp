#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Views/VLXControl.h>
#include <VelmarCoreUI/Views/VLXControlEventHandlers.h>

namespace {

class Recorder : public VLXObject {
public:
    static std::shared_ptr<Recorder> create(std::string tag = "") {
        auto recorder = makeInitialized<Recorder>();
        recorder->tag = std::move(tag);
        return recorder;
    }
    void tapped(VLXObject* sender) { calls.push_back("tapped:" + name(sender)); }
    void changed(VLXObject* sender) { calls.push_back("changed:" + name(sender)); }
    std::string tag;
    std::vector<std::string> calls;

private:
    std::string name(VLXObject* sender) const { return sender ? tag : "nil"; }
};

const VLXControlAction kTapped = VLXControlAction::method("tapped:", &Recorder::tapped);
const VLXControlAction kChanged = VLXControlAction::method("changed:", &Recorder::changed);

}  // namespace

TEST(Control, TargetActionPairsHaveIdentity) {
    auto control = VLXControl::create();
    auto a = Recorder::create("a");
    auto b = Recorder::create("b");

    control->addTarget(a, kTapped, VLXControlEventTouchUpInside);
    control->addTarget(a, kTapped, VLXControlEventTouchUpInside);  // ignored
    control->addTarget(a, VLXControlAction::method("tapped:", &Recorder::tapped),
                       VLXControlEventTouchUpInside);  // same name, same action
    control->addTarget(a, kChanged, VLXControlEventValueChanged | VLXControlEventTouchUpInside);
    control->addTarget(b, kTapped, VLXControlEventTouchDown);
    control->addTarget(nullptr, kTapped, VLXControlEventTouchDown);  // refused

    control->sendActionsForControlEvents(VLXControlEventTouchUpInside);
    EXPECT_EQ(a->calls, (std::vector<std::string>{"tapped:a", "changed:a"}));
    EXPECT_TRUE(b->calls.empty());

    a->calls.clear();
    control->sendActionsForControlEvents(VLXControlEventValueChanged);
    EXPECT_EQ(a->calls, (std::vector<std::string>{"changed:a"}));
    control->sendActionsForControlEvents(VLXControlEventAllEvents);
    EXPECT_EQ(b->calls, (std::vector<std::string>{"tapped:b"}));
    EXPECT_EQ(control->allControlEvents(), VLXControlEventTouchUpInside |
                                               VLXControlEventValueChanged |
                                               VLXControlEventTouchDown);
    EXPECT_EQ(control->actionsForTarget(a.get(), VLXControlEventAllEvents).size(), 2u);

    // Removing one event of a pair keeps the others.
    a->calls.clear();
    control->removeTarget(a.get(), "changed:", VLXControlEventTouchUpInside);
    control->sendActionsForControlEvents(VLXControlEventTouchUpInside |
                                         VLXControlEventValueChanged);
    EXPECT_EQ(a->calls, (std::vector<std::string>{"tapped:a", "changed:a"}));
    control->removeTarget(nullptr, "", VLXControlEventAllEvents);
    EXPECT_TRUE(control->allTargets().empty());
    EXPECT_EQ(control->allControlEvents(), 0u);
}

TEST(Control, TargetsAreNotOwnedAndSkippedOnceGone) {
    auto control = VLXControl::create();
    auto keeper = Recorder::create();
    std::weak_ptr<Recorder> weakGone;
    {
        auto gone = Recorder::create();
        weakGone = gone;
        control->addTarget(gone, kTapped, VLXControlEventTouchDown);
    }
    EXPECT_TRUE(weakGone.expired());
    control->addTarget(keeper, kTapped, VLXControlEventTouchDown);
    control->sendActionsForControlEvents(VLXControlEventTouchDown);
    EXPECT_EQ(keeper->calls.size(), 1u);
    EXPECT_EQ(control->allTargets().size(), 1u);

    // An action that removes pairs or adds new ones mid-send changes the next send only.
    auto mutating = VLXControlAction("mutate", [&](VLXObject&, VLXObject* sender) {
        static_cast<VLXControl*>(sender)->removeTarget(keeper.get(), "", VLXControlEventAllEvents);
    });
    control->addTarget(keeper, mutating, VLXControlEventTouchDown);
    control->sendActionsForControlEvents(VLXControlEventTouchDown);
    EXPECT_EQ(keeper->calls.size(), 2u);
    control->sendActionsForControlEvents(VLXControlEventTouchDown);
    EXPECT_EQ(keeper->calls.size(), 2u);
}

TEST(ControlEventHandlers, OneHandlerPerControlReplacedAndCleared) {
    auto control = VLXControl::create();
    std::vector<std::string> calls;
    vlx_addEventHandler(
        *control, [&](VLXObject* sender) { calls.push_back(sender ? "first" : "first-nil"); },
        VLXControlEventTouchUpInside);
    control->sendActionsForControlEvents(VLXControlEventTouchUpInside);
    EXPECT_EQ(calls, (std::vector<std::string>{"first"}));

    // A second handler for other events serves both event sets.
    calls.clear();
    vlx_addEventHandler(
        *control, [&](VLXObject* sender) { calls.push_back(sender ? "second" : "second-nil"); },
        VLXControlEventValueChanged);
    control->sendActionsForControlEvents(VLXControlEventTouchUpInside);
    control->sendActionsForControlEvents(VLXControlEventValueChanged);
    EXPECT_EQ(calls, (std::vector<std::string>{"second", "second"}));

    // The same events again: one registration, the newest handler.
    calls.clear();
    vlx_addEventHandler(
        *control, [&](VLXObject*) { calls.push_back("third"); }, VLXControlEventValueChanged);
    control->sendActionsForControlEvents(VLXControlEventValueChanged);
    EXPECT_EQ(calls, (std::vector<std::string>{"third"}));
    EXPECT_EQ(control->actionsForTarget(control.get(), VLXControlEventAllEvents),
              (std::vector<std::string>{vlx_callActionHandlerAction().name()}));

    // The control is its own target without keeping itself alive.
    std::weak_ptr<VLXControl> weakControl = control;

    // An empty handler clears: events still arrive and do nothing.
    calls.clear();
    vlx_addEventHandler(*control, {}, VLXControlEventTouchDown);
    control->sendActionsForControlEvents(VLXControlEventAllEvents);
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(control->allControlEvents(), VLXControlEventTouchUpInside |
                                               VLXControlEventValueChanged |
                                               VLXControlEventTouchDown);
    vlx_callActionHandler(*control, nullptr);
    EXPECT_TRUE(calls.empty());

    // A handler that replaces itself while running finishes safely.
    vlx_addEventHandler(
        *control,
        [&, raw = control.get()](VLXObject*) {
            vlx_addEventHandler(*raw, {}, VLXControlEventTouchDown);
            calls.push_back("replaced itself");
        },
        VLXControlEventTouchDown);
    control->sendActionsForControlEvents(VLXControlEventTouchDown);
    EXPECT_EQ(calls, (std::vector<std::string>{"replaced itself"}));

    control.reset();
    EXPECT_TRUE(weakControl.expired());
}
