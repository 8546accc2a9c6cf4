// vlx-bench-input-table: touch dispatch against hit testing alone, one line per case:
// "case <name> ours_ms <x> baseline_ms <y> ratio <r>".
//
//   dispatch-10000  10 000 touch events (1 000 sequences of down, eight moves and up) sent
//                   through a window of 1 000 views holding 20 recognisers (taps, double taps,
//                   long presses, pans and pinches on the containers along every hit path) /
//                   hit-testing the same 10 000 points in the same window. The run loop does
//                   not turn in between, so only delivery and arbitration are measured.
#include <memory>
#include <random>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXLongPressGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXPinchGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTapGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

#include "TableCase.h"

namespace {

constexpr int kColumns = 25;
constexpr int kRows = 40;
constexpr int kMovesPerSequence = 8;
constexpr int kSequences = 1000;

struct Scene {
    std::shared_ptr<VLXWindow> window;
    std::vector<std::vector<VLXPoint>> paths;  // per sequence: down, the moves, up
};

// Five column containers of 200 cells each; every container carries four recognisers.
Scene makeScene() {
    Scene scene;
    scene.window = VLXWindow::createWithFrame({0, 0, 1000, 800});
    const double columnWidth = 1000.0 / 5;
    for (int c = 0; c < 5; ++c) {
        auto container = VLXView::createWithFrame({c * columnWidth, 0, columnWidth, 800});
        scene.window->addSubview(container);
        for (int i = 0; i < kColumns * kRows / 5; ++i) {
            const double w = columnWidth / 5, h = 800.0 / 40;
            container->addSubview(VLXView::createWithFrame({(i % 5) * w, (i / 5) * h, w, h}));
        }
        auto doubleTap = VLXTapGestureRecognizer::create();
        doubleTap->setNumberOfTapsRequired(2);
        container->addGestureRecognizer(c % 2 ? std::shared_ptr<VLXGestureRecognizer>(doubleTap)
                                              : VLXTapGestureRecognizer::create());
        container->addGestureRecognizer(VLXLongPressGestureRecognizer::create());
        container->addGestureRecognizer(VLXPanGestureRecognizer::create());
        container->addGestureRecognizer(VLXPinchGestureRecognizer::create());
    }
    std::mt19937 random(7);
    std::uniform_real_distribution<double> x(0, 1000), y(0, 800), step(-6, 6);
    for (int s = 0; s < kSequences; ++s) {
        std::vector<VLXPoint> path{{x(random), y(random)}};
        for (int m = 0; m <= kMovesPerSequence; ++m) {
            path.push_back({path.back().x + step(random), path.back().y + step(random)});
        }
        scene.paths.push_back(std::move(path));
    }
    return scene;
}

}  // namespace

int main() {
    VLXClock::setManual(0);
    Scene scene = makeScene();
    VLXWindow& window = *scene.window;

    const double ours = table::bestMilliseconds(
        [&] {
            for (const auto& path : scene.paths) {
                auto touch = VLXTouch::create(path.front(), VLXClock::now());
                window.sendEvent(*VLXEvent::create({touch}, VLXClock::now()));
                for (std::size_t i = 1; i < path.size(); ++i) {
                    VLXClock::advance(0.016);
                    const bool last = i + 1 == path.size();
                    touch->update(path[i], VLXClock::now(),
                                  last ? VLXTouchPhase::Ended : VLXTouchPhase::Moved);
                    window.sendEvent(*VLXEvent::create({touch}, VLXClock::now()));
                }
            }
        },
        3);

    std::size_t hits = 0;
    const double baseline = table::bestMilliseconds(
        [&] {
            for (const auto& path : scene.paths) {
                for (const VLXPoint& p : path) {
                    hits += window.hitTest(p) != nullptr;
                }
            }
        },
        3);
    table::printCase("dispatch-10000", ours, baseline);
    return hits == 0;
}
