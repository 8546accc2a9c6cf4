#pragma once

// A storm of mixed touch events through a window holding every recogniser kind, shared by the
// input tests (10^5 seeded events), the input benchmark (10^6) and the touch fuzz target (the
// fuzzer's bytes pick the steps). After every touch sequence (all
// fingers up, then a second for timers) it checks that every recogniser is back to possible
// with no touches, and that no recogniser ended or was cancelled twice in one sequence.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXLongPressGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXPinchGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTapGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Views/VLXScrollView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include <VelmarCoreUI/Views/VLXEdgeSwipeGestureRecognizer.h>

namespace storm {

struct Result {
    std::size_t events = 0;
    std::size_t sequences = 0;
    std::size_t actions = 0;
    std::size_t stuckStates = 0;   // recognisers not possible after a sequence
    std::size_t stuckTouches = 0;  // recognisers still holding touches after a sequence
    std::size_t doubleOutcomes = 0;
};

// Taps wait for the long press to fail; the long press and the pan may run together.
struct PressDelegate : VLXGestureRecognizerDelegate {
    bool gestureRecognizerShouldRecognizeSimultaneouslyWithGestureRecognizer(
        VLXGestureRecognizer& recognizer, VLXGestureRecognizer& other) override {
        return dynamic_cast<VLXLongPressGestureRecognizer*>(&recognizer) &&
               dynamic_cast<VLXPanGestureRecognizer*>(&other);
    }
    bool gestureRecognizerShouldBeRequiredToFailByGestureRecognizer(
        VLXGestureRecognizer& recognizer, VLXGestureRecognizer& other) override {
        return dynamic_cast<VLXLongPressGestureRecognizer*>(&recognizer) &&
               dynamic_cast<VLXTapGestureRecognizer*>(&other);
    }
};

class TouchStorm {
public:
    /// Numbers in [0, 1) that pick every step (a seeded generator, or a fuzzer's bytes).
    using Source = std::function<double()>;

    explicit TouchStorm(std::uint32_t seed)
        : TouchStorm([random = std::make_shared<std::mt19937>(seed)] {
              return std::uniform_real_distribution<double>(0, 1)(*random);
          }) {}

    explicit TouchStorm(Source source) : m_source(std::move(source)) {
        VLXClock::setManual(1000);
        m_window = VLXWindow::createWithFrame({0, 0, 320, 480});
        m_container = VLXView::createWithFrame({0, 0, 320, 480});
        m_window->addSubview(m_container);
        m_scroll = VLXScrollView::createWithFrame({0, 100, 320, 200});
        m_scroll->setContentSize({640, 800});
        m_content = VLXView::createWithFrame({0, 0, 640, 800});
        m_scroll->addSubview(m_content);
        m_container->addSubview(m_scroll);

        auto tap = VLXTapGestureRecognizer::create();
        auto doubleTap = VLXTapGestureRecognizer::create();
        doubleTap->setNumberOfTapsRequired(2);
        auto twoFingerTap = VLXTapGestureRecognizer::create();
        twoFingerTap->setNumberOfTouchesRequired(2);
        auto press = VLXLongPressGestureRecognizer::create();
        press->setDelegate(m_delegate);
        auto pan = VLXPanGestureRecognizer::create();
        auto pinch = VLXPinchGestureRecognizer::create();
        auto edge = VLXEdgeSwipeGestureRecognizer::create();
        auto contentTap = VLXTapGestureRecognizer::create();
        auto contentPress = VLXLongPressGestureRecognizer::create();
        contentPress->setDelegate(m_delegate);
        for (auto r : std::vector<std::shared_ptr<VLXGestureRecognizer>>{
                 tap, doubleTap, twoFingerTap, press, pan, pinch}) {
            m_container->addGestureRecognizer(r);
        }
        m_window->addGestureRecognizer(edge);
        m_content->addGestureRecognizer(contentTap);
        m_content->addGestureRecognizer(contentPress);
        m_recognizers = {tap,   doubleTap, twoFingerTap, press,       pan,
                         pinch, edge,      contentTap,   contentPress};
        if (auto scrollPan = m_scroll->panGestureRecognizer()) {
            m_recognizers.push_back(scrollPan);
        }
        for (const auto& r : m_recognizers) {
            VLXGestureRecognizer* raw = r.get();
            r->addAction([this, raw](VLXGestureRecognizer& self) {
                ++m_result.actions;
                // A gesture starts from a reset recogniser and ends once.
                Life& life = m_lives[raw];
                const auto state = self.state();
                if (state == VLXGestureRecognizerState::Began) {
                    m_result.doubleOutcomes += !life.fresh;
                    life = {false, true};
                } else if (state == VLXGestureRecognizerState::Ended ||
                           state == VLXGestureRecognizerState::Cancelled) {
                    m_result.doubleOutcomes += !life.fresh && !life.inGesture;
                    life = {false, false};
                }
            });
        }
    }

    Result run(std::size_t events) {
        while (m_result.events < events) {
            step();
        }
        liftAll();
        return m_result;
    }

private:
    double uniform(double low, double high) {
        const double u = m_source();
        return low + (std::isfinite(u) ? std::clamp(u, 0.0, 1.0) : 0.0) * (high - low);
    }
    std::size_t index(std::size_t count) {
        return std::min(count - 1, static_cast<std::size_t>(uniform(0, double(count))));
    }
    bool chance(double p) { return uniform(0, 1) < p; }

    VLXPoint randomPoint() {
        if (chance(0.01)) {
            return {std::numeric_limits<double>::quiet_NaN(), uniform(0, 480)};
        }
        if (chance(0.05)) {
            return {uniform(-50, 370), uniform(-50, 530)};
        }
        return {uniform(0, 320), uniform(0, 480)};
    }

    void send() {
        VLXTouchSet touches;
        for (auto& [id, touch] : m_fingers) {
            touches.push_back(touch);
        }
        m_window->sendEvent(*VLXEvent::create(touches, VLXClock::now()));
        ++m_result.events;
        noteResets();
        for (auto it = m_fingers.begin(); it != m_fingers.end();) {
            it = it->second->isFinished() ? m_fingers.erase(it) : std::next(it);
        }
        for (auto& [id, touch] : m_fingers) {
            touch->setPhase(VLXTouchPhase::Stationary);
        }
        if (m_fingers.empty()) {
            endSequence();
        }
    }

    // A time for the next reading: usually the clock, sometimes from the past.
    double stamp() { return chance(0.03) ? VLXClock::now() - 1 : VLXClock::now(); }

    void step() {
        const double what = uniform(0, 1);
        if (what < 0.15 && m_fingers.size() < 10) {
            m_fingers[m_nextFinger++] = VLXTouch::create(randomPoint(), stamp());
            send();
        } else if (what < 0.5 && !m_fingers.empty()) {
            auto& touch = randomFinger();
            VLXPoint p = touch->locationInView(nullptr);
            p.x += uniform(-30, 30);
            p.y += uniform(-30, 30);
            if (chance(0.02)) {
                p.x = chance(0.5) ? std::numeric_limits<double>::infinity() : 1e12;
            }
            touch->update(p, stamp(), VLXTouchPhase::Moved);
            send();
        } else if (what < 0.75 && !m_fingers.empty()) {  // lifts as often as downs
            auto& touch = randomFinger();
            touch->update(touch->locationInView(nullptr), stamp(),
                          chance(0.1) ? VLXTouchPhase::Cancelled : VLXTouchPhase::Ended);
            send();
        } else if (what < 0.8) {
            // Stray input: a touch that never began moves, or an old one ends again.
            auto stray = VLXTouch::create(randomPoint(), VLXClock::now(), VLXTouchPhase::Moved);
            m_window->sendEvent(*VLXEvent::create({stray}, VLXClock::now()));
            ++m_result.events;
        } else if (what < 0.97) {
            VLXRunLoop::main().runUntil(VLXClock::now() + uniform(0, 0.6));
            noteResets();
        } else {
            chaos();
        }
    }

    std::shared_ptr<VLXTouch>& randomFinger() {
        auto it = m_fingers.begin();
        std::advance(it, index(m_fingers.size()));
        return it->second;
    }

    // Recognisers and views changing under the fingers.
    void chaos() {
        auto& r = m_recognizers[index(m_recognizers.size())];
        const double what = uniform(0, 1);
        if (what < 0.4) {
            r->setEnabled(!r->isEnabled());
        } else if (what < 0.7) {
            if (auto* view = r->view()) {
                auto keep = std::static_pointer_cast<VLXView>(view->shared_from_this());
                keep->removeGestureRecognizer(r.get());
                keep->addGestureRecognizer(r);
            }
        } else if (m_scroll->superview()) {
            m_scroll->removeFromSuperview();
        } else {
            m_container->addSubview(m_scroll);
        }
    }

    void liftAll() {
        for (auto& [id, touch] : m_fingers) {
            touch->update(touch->locationInView(nullptr), VLXClock::now(), VLXTouchPhase::Ended);
        }
        if (!m_fingers.empty()) {
            send();
        }
    }

    // Recognisers seen in possible may start a new gesture.
    void noteResets() {
        for (const auto& r : m_recognizers) {
            if (r->state() == VLXGestureRecognizerState::Possible) {
                m_lives[r.get()] = {true, false};
            }
        }
    }

    void endSequence() {
        ++m_result.sequences;
        VLXRunLoop::main().runUntil(VLXClock::now() + 1.0);
        noteResets();
        for (const auto& r : m_recognizers) {
            if (r->state() != VLXGestureRecognizerState::Possible) {
                ++m_result.stuckStates;
                std::fprintf(stderr, "stuck: %s\n", r->description().c_str());
            }
            if (r->numberOfTouches() != 0) {
                ++m_result.stuckTouches;
            }
        }
    }

    Source m_source;
    std::shared_ptr<VLXWindow> m_window;
    std::shared_ptr<VLXView> m_container;
    std::shared_ptr<VLXScrollView> m_scroll;
    std::shared_ptr<VLXView> m_content;
    std::shared_ptr<PressDelegate> m_delegate = std::make_shared<PressDelegate>();
    std::vector<std::shared_ptr<VLXGestureRecognizer>> m_recognizers;
    std::map<int, std::shared_ptr<VLXTouch>> m_fingers;
    struct Life {
        bool fresh = true;       // reset since its last outcome
        bool inGesture = false;  // began and not yet ended
    };
    std::map<const VLXGestureRecognizer*, Life> m_lives;
    int m_nextFinger = 0;
    Result m_result;
};

}  // namespace storm
