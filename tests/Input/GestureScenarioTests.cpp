#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Input/VLXLongPressGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXPinchGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTapGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTouchSynthesizer.h>
#include <VelmarCoreUI/Platform/Views/VLXScrollView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

// The interaction of a zoomable chart, played with the synthesiser: a scroll view around a
// content view that carries a tap, a double tap, a two-finger tap, a long press, its own pan
// (allowed only while the press lasts) and a pinch. The delegate answers as such a chart does:
// taps wait for the press to fail, and the press runs together with the content's pan.
namespace {

using Log = std::vector<std::string>;

struct Chart : VLXGestureRecognizerDelegate {
    Log log;
    bool canPan = false;
    std::shared_ptr<VLXWindow> window = VLXWindow::createWithFrame({0, 0, 320, 480});
    std::shared_ptr<VLXScrollView> scroll = VLXScrollView::createWithFrame({0, 0, 320, 300});
    std::shared_ptr<VLXView> content = VLXView::createWithFrame({0, 0, 640, 300});
    std::shared_ptr<VLXTapGestureRecognizer> tap = VLXTapGestureRecognizer::create();
    std::shared_ptr<VLXTapGestureRecognizer> zoomIn = VLXTapGestureRecognizer::create();
    std::shared_ptr<VLXTapGestureRecognizer> zoomOut = VLXTapGestureRecognizer::create();
    std::shared_ptr<VLXLongPressGestureRecognizer> press = VLXLongPressGestureRecognizer::create();
    std::shared_ptr<VLXPanGestureRecognizer> pan = VLXPanGestureRecognizer::create();
    std::shared_ptr<VLXPinchGestureRecognizer> pinch = VLXPinchGestureRecognizer::create();

    void attach(const std::shared_ptr<Chart>& self) {
        VLXClock::setManual(100);
        window->addSubview(scroll);
        scroll->addSubview(content);
        scroll->setContentSize({640, 300});
        zoomIn->setNumberOfTapsRequired(2);
        zoomOut->setNumberOfTouchesRequired(2);
        press->setDelegate(self);
        pan->setDelegate(self);
        const std::pair<VLXGestureRecognizer*, const char*> named[] = {
            {tap.get(), "tap"},
            {zoomIn.get(), "zoom-in"},
            {zoomOut.get(), "zoom-out"},
            {press.get(), "press"},
            {pan.get(), "pan"},
            {pinch.get(), "pinch"},
            {scroll->panGestureRecognizer().get(), "scroll"}};
        for (const auto& [recognizer, name] : named) {
            std::string n = name;
            recognizer->addAction([this, n](VLXGestureRecognizer& r) {
                const std::string entry = n + " " + VLXGestureRecognizerStateName(r.state());
                // A run of changes counts once.
                if (r.state() != VLXGestureRecognizerState::Changed || log.empty() ||
                    log.back() != entry) {
                    log.push_back(entry);
                }
                if (&r == press.get()) {
                    canPan = r.state() == VLXGestureRecognizerState::Began ||
                             r.state() == VLXGestureRecognizerState::Changed;
                }
            });
        }
        for (const auto& r : std::vector<std::shared_ptr<VLXGestureRecognizer>>{
                 tap, zoomIn, zoomOut, press, pan, pinch}) {
            content->addGestureRecognizer(r);
        }
    }

    bool gestureRecognizerShouldBegin(VLXGestureRecognizer& r) override {
        return &r != pan.get() || canPan;
    }
    bool gestureRecognizerShouldRecognizeSimultaneouslyWithGestureRecognizer(
        VLXGestureRecognizer& r, VLXGestureRecognizer& other) override {
        return &r == press.get() && &other == pan.get();
    }
    bool gestureRecognizerShouldBeRequiredToFailByGestureRecognizer(
        VLXGestureRecognizer& r, VLXGestureRecognizer& other) override {
        return &r == press.get() && dynamic_cast<VLXTapGestureRecognizer*>(&other);
    }
};

std::shared_ptr<Chart> makeChart() {
    auto chart = std::make_shared<Chart>();
    chart->attach(chart);
    return chart;
}

}  // namespace

TEST(GestureScenario, TapsWaitForThePressToFailAndADoubleTapAlsoFiresTheTap) {
    auto chart = makeChart();
    VLXTouchSynthesizer fingers(chart->window);
    fingers.tap({100, 100});
    EXPECT_EQ(chart->log, (Log{"tap ended"}));
    chart->log.clear();
    fingers.doubleTap({100, 100});
    EXPECT_EQ(chart->log, (Log{"tap ended", "tap ended", "zoom-in ended"}));
    chart->log.clear();
    fingers.twoFingerTap({100, 100});
    EXPECT_EQ(chart->log, (Log{"zoom-out ended"}));
    EXPECT_EQ(chart->scroll->contentOffset(), (VLXPoint{0, 0}));
}

TEST(GestureScenario, PressThenDragMovesTheContentPanButNotTheScrollView) {
    auto chart = makeChart();
    VLXTouchSynthesizer fingers(chart->window);
    fingers.pressAndDrag({100, 100}, {200, 100}, 0.8, 0.5);
    EXPECT_EQ(chart->log.front(), "press began");
    // The press began first, the content pan followed, the scroll view never moved.
    auto has = [&](const std::string& entry) {
        return std::find(chart->log.begin(), chart->log.end(), entry) != chart->log.end();
    };
    EXPECT_TRUE(has("pan began"));
    EXPECT_TRUE(has("press ended"));
    EXPECT_TRUE(has("pan ended"));
    EXPECT_FALSE(has("scroll began"));
    EXPECT_FALSE(has("tap ended"));
    EXPECT_EQ(chart->scroll->contentOffset(), (VLXPoint{0, 0}));
}

TEST(GestureScenario, AnImmediateDragScrollsAndFailsThePressAndTheContentPan) {
    auto chart = makeChart();
    VLXTouchSynthesizer fingers(chart->window);
    fingers.drag({200, 100}, {100, 100}, 0.3);
    EXPECT_EQ(chart->log.front(), "scroll began");
    EXPECT_EQ(chart->log.back(), "scroll ended");
    for (const auto& entry : chart->log) {
        EXPECT_EQ(entry.rfind("scroll", 0), 0u) << entry;
    }
    EXPECT_GT(chart->scroll->contentOffset().x, 80);
    EXPECT_LE(chart->scroll->contentOffset().x, 320);  // never past the content's end
}

TEST(GestureScenario, APinchScalesAndKeepsTheScrollViewStill) {
    auto chart = makeChart();
    VLXTouchSynthesizer fingers(chart->window);
    double lastScale = 0;
    chart->pinch->addAction([&](VLXGestureRecognizer&) { lastScale = chart->pinch->scale(); });
    fingers.pinch({160, 150}, 60, 120, 0.5);
    EXPECT_EQ(chart->log.front(), "pinch began");
    EXPECT_EQ(chart->log.back(), "pinch ended");
    EXPECT_NEAR(lastScale, 2.0, 0.05);
    EXPECT_EQ(chart->scroll->contentOffset(), (VLXPoint{0, 0}));
}
