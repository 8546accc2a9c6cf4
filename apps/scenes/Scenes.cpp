#include "Scenes.h"

#include <algorithm>
#include <cmath>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>
#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>
#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXLongPressGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXPinchGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTapGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTouchSynthesizer.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Views/VLXLabel.h>
#include <VelmarCoreUI/Platform/Views/VLXScrollView.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include <VelmarCoreUI/Views/VLXEdgeSwipeGestureRecognizer.h>

void SceneLog::append(const std::string& line) {
    if (!m_lines.empty() && line == m_last) {
        ++m_repeats;
        m_lines.back() = line + " ×" + std::to_string(m_repeats);
        return;
    }
    m_lines.push_back(line);
    m_last = line;
    m_repeats = 1;
}

void SceneLog::clear() {
    m_lines.clear();
    m_last.clear();
    m_repeats = 0;
}

namespace {

constexpr double kHeaderHeight = 40;
constexpr double kMinimumSide = 160;
constexpr double kMaximumSide = 4096;

VLXColor hue(double h, double saturation = 0.55, double brightness = 0.92) {
    return VLXColor::colorWithHue(h, saturation, brightness, 1);
}

std::shared_ptr<VLXView> box(VLXRect frame, const VLXColor& color, double cornerRadius = 0) {
    auto view = VLXView::createWithFrame(frame);
    view->setBackgroundColor(color);
    if (cornerRadius > 0) {
        view->layer()->setCornerRadius(cornerRadius);
    }
    return view;
}

std::shared_ptr<VLXLabel> label(VLXRect frame, const std::string& text, const VLXFont& font,
                                const VLXColor& color) {
    auto view = VLXLabel::createWithFrame(frame);
    view->setText(text);
    view->setFont(font);
    view->setTextColor(color);
    return view;
}

// Wraps a recogniser kind so that the log also hears of failures, which never reach actions:
// the window resets a recogniser once its sequence is over, still reading failed.
template <class Base>
class Logged : public Base {
public:
    static std::shared_ptr<Logged> make(std::shared_ptr<SceneLog> log, std::string name) {
        auto recognizer = VLXObject::makeInitialized<Logged>();
        recognizer->m_log = std::move(log);
        recognizer->m_name = std::move(name);
        const std::weak_ptr<SceneLog> weakLog = recognizer->m_log;
        const std::string label = recognizer->m_name;
        recognizer->addAction([weakLog, label](VLXGestureRecognizer& r) {
            if (auto strong = weakLog.lock()) {
                strong->append(label + ": " + VLXGestureRecognizerStateName(r.state()));
            }
        });
        return recognizer;
    }
    void reset() override {
        if (this->state() == VLXGestureRecognizerState::Failed && m_log) {
            m_log->append(m_name + ": failed");
        }
        Base::reset();
    }

protected:
    Logged() = default;

private:
    friend class VLXObject;
    std::shared_ptr<SceneLog> m_log;
    std::string m_name;
};

struct SceneBuilder {
    InteractionScene scene;
    VLXSize size;
    VLXRect content;  // the area below the header, window coordinates

    VLXPoint centre() const {
        return {content.origin.x + content.size.width / 2,
                content.origin.y + content.size.height / 2};
    }
};

SceneBuilder begin(std::string_view name, std::string title, VLXSize size, double scale) {
    SceneBuilder b;
    b.size = size;
    b.scene.name = std::string(name);
    b.scene.title = std::move(title);
    b.scene.log = std::make_shared<SceneLog>();
    auto screen = VLXScreen::create();
    screen->setBounds({{0, 0}, size});
    screen->setScale(scale);
    b.scene.window = VLXWindow::createWithFrame({{0, 0}, size});
    b.scene.window->setScreen(screen);
    b.scene.window->setBackgroundColor(VLXColor::colorWithWhite(0.97, 1));
    b.scene.window->addSubview(label({{12, 8}, {size.width - 24, 24}}, b.scene.title,
                                     VLXFont::boldSystemFontOfSize(14),
                                     VLXColor::colorWithWhite(0.2, 1)));
    b.content = {{0, kHeaderHeight}, {size.width, size.height - kHeaderHeight}};
    return b;
}

// (a) Tall striped content in a scroll view, dragged and flung.
void buildScroll(SceneBuilder& b) {
    auto scroll = VLXScrollView::createWithFrame(b.content);
    const int rows = 40;
    const double rowHeight = 56;
    scroll->setContentSize({b.content.size.width, rows * rowHeight});
    for (int i = 0; i < rows; ++i) {
        auto row = box({{0, i * rowHeight}, {b.content.size.width, rowHeight}},
                       hue(std::fmod(i * 0.07, 1.0), i % 2 ? 0.35 : 0.55));
        row->addSubview(label({{16, 16}, {b.content.size.width - 32, 24}},
                              "Row " + std::to_string(i + 1), VLXFont::systemFontOfSize(16),
                              VLXColor::colorWithWhite(0.1, 1)));
        scroll->addSubview(row);
    }
    b.scene.window->addSubview(scroll);
    if (auto pan = scroll->panGestureRecognizer()) {
        const std::weak_ptr<SceneLog> weakLog = b.scene.log;
        pan->addAction([weakLog](VLXGestureRecognizer& r) {
            if (auto log = weakLog.lock()) {
                log->append(std::string("scroll pan: ") + VLXGestureRecognizerStateName(r.state()));
            }
        });
    }
    const VLXSize s = b.size;
    b.scene.scripts.push_back(
        {"A quick upward drag: the content follows the finger, then decelerates.",
         [s](VLXTouchSynthesizer& synth) {
             synth.drag({s.width / 2, s.height - 60}, {s.width / 2, s.height - 220}, 0.2);
             synth.wait(1.2);
         }});
}

// (b) A long press turns the box orange until the finger lifts.
void buildLongPress(SceneBuilder& b) {
    const VLXColor idle = hue(0.58);
    const VLXColor pressed = hue(0.08, 0.75, 0.98);
    const VLXPoint c = b.centre();
    auto target = box({{c.x - 80, c.y - 80}, {160, 160}}, idle, 16);
    auto press = Logged<VLXLongPressGestureRecognizer>::make(b.scene.log, "long press");
    const std::weak_ptr<VLXView> weakTarget = target;
    press->addAction([weakTarget, idle, pressed](VLXGestureRecognizer& r) {
        auto view = weakTarget.lock();
        if (!view) {
            return;
        }
        if (r.state() == VLXGestureRecognizerState::Began) {
            view->setBackgroundColor(pressed);
        } else if (r.state() == VLXGestureRecognizerState::Ended ||
                   r.state() == VLXGestureRecognizerState::Cancelled) {
            view->setBackgroundColor(idle);
        }
    });
    target->addGestureRecognizer(press);
    b.scene.window->addSubview(target);
    b.scene.scripts.push_back({"A tap too short to count, then a press held for one second.",
                               [c](VLXTouchSynthesizer& synth) {
                                   synth.tap(c);
                                   synth.wait(VLXTouchSynthesizer::kSettleDuration);
                                   synth.longPress(c, 1.0);
                               }});
}

// (c) A double tap grows the circle; a single tap, which waits for the double tap to fail,
// changes its colour.
void buildTaps(SceneBuilder& b) {
    const VLXRect area = VLXRectInset(b.content, 16, 16);
    auto pad = box(area, VLXColor::colorWithWhite(0.9, 1), 12);
    const double startDiameter = 48;
    auto circle =
        box({{area.size.width / 2 - startDiameter / 2, area.size.height / 2 - startDiameter / 2},
             {startDiameter, startDiameter}},
            hue(0.75), startDiameter / 2);
    circle->setUserInteractionEnabled(false);
    pad->addSubview(circle);

    auto doubleTap = Logged<VLXTapGestureRecognizer>::make(b.scene.log, "double tap");
    doubleTap->setNumberOfTapsRequired(2);
    auto singleTap = Logged<VLXTapGestureRecognizer>::make(b.scene.log, "single tap");
    singleTap->requireGestureRecognizerToFail(doubleTap);

    const std::weak_ptr<VLXView> weakCircle = circle;
    const double maximum = std::min(area.size.width, area.size.height) - 8;
    doubleTap->addAction([weakCircle, startDiameter, maximum](VLXGestureRecognizer& r) {
        auto view = weakCircle.lock();
        if (!view || r.state() != VLXGestureRecognizerState::Ended) {
            return;
        }
        const VLXPoint centre = view->center();
        double d = view->bounds().size.width * 1.4;
        if (d > maximum) {
            d = startDiameter;
        }
        view->setBounds({{0, 0}, {d, d}});
        view->setCenter(centre);
        view->layer()->setCornerRadius(d / 2);
    });
    auto hueIndex = std::make_shared<int>(0);
    singleTap->addAction([weakCircle, hueIndex](VLXGestureRecognizer& r) {
        auto view = weakCircle.lock();
        if (!view || r.state() != VLXGestureRecognizerState::Ended) {
            return;
        }
        *hueIndex = (*hueIndex + 1) % 6;
        view->setBackgroundColor(hue(std::fmod(0.75 + *hueIndex / 6.0, 1.0)));
    });
    pad->addGestureRecognizer(doubleTap);
    pad->addGestureRecognizer(singleTap);
    b.scene.window->addSubview(pad);
    const VLXPoint c = b.centre();
    b.scene.scripts.push_back(
        {"A single tap (recognised once the double tap has timed out), then a double tap.",
         [c](VLXTouchSynthesizer& synth) {
             synth.tap(c);
             synth.wait(VLXTouchSynthesizer::kSettleDuration);
             synth.doubleTap(c);
             synth.wait(VLXTouchSynthesizer::kSettleDuration);
         }});
}

// (d) Two fingers scale a square through its view transform.
void buildPinch(SceneBuilder& b) {
    auto pad = box(VLXRectInset(b.content, 16, 16), VLXColor::colorWithWhite(0.9, 1), 12);
    const VLXSize padSize = pad->bounds().size;
    auto square = box({{padSize.width / 2 - 40, padSize.height / 2 - 40}, {80, 80}}, hue(0.33), 8);
    square->setUserInteractionEnabled(false);
    pad->addSubview(square);
    auto pinch = Logged<VLXPinchGestureRecognizer>::make(b.scene.log, "pinch");
    // The scale the square had when the pinch began: each pinch scales from where the last
    // one left it.
    auto state = std::make_shared<std::pair<double, double>>(1.0, 1.0);  // current, at began
    const std::weak_ptr<VLXView> weakSquare = square;
    // Never larger than the pad, nor more than three times the size.
    const double maximum = std::min(3.0, std::min(padSize.width, padSize.height) / 80);
    pinch->addAction([weakSquare, state, maximum](VLXGestureRecognizer& r) {
        auto view = weakSquare.lock();
        auto* p = dynamic_cast<VLXPinchGestureRecognizer*>(&r);
        if (!view || !p) {
            return;
        }
        if (r.state() == VLXGestureRecognizerState::Began) {
            state->second = state->first;
        }
        if (r.state() == VLXGestureRecognizerState::Cancelled) {
            state->first = state->second;
        } else {
            const double s = std::isfinite(p->scale()) ? p->scale() : 1.0;
            state->first = std::clamp(state->second * s, 0.3, maximum);
        }
        view->setTransform(VLXAffineTransformMakeScale(state->first, state->first));
    });
    pad->addGestureRecognizer(pinch);
    b.scene.window->addSubview(pad);
    const VLXPoint c = b.centre();
    b.scene.scripts.push_back(
        {"Two fingers spread from 60 to 140 points apart.", [c](VLXTouchSynthesizer& synth) {
             synth.pinch(c, 60, 140, 0.6);
             synth.wait(0.2);
         }});
}

// (e) A swipe from the left edge pulls a drawer in as the finger goes; released past half way
// the drawer opens, else it slides back.
void buildEdgeSwipe(SceneBuilder& b) {
    auto panel = box(b.content, VLXColor::colorWithWhite(0.93, 1));
    panel->setClipsToBounds(true);
    const double margin = 20;
    const VLXSize panelSize = b.content.size;
    // The band where a swipe may start, faintly marked.
    auto band = box({{0, 0}, {margin, panelSize.height}}, hue(0.58, 0.25, 0.95));
    band->setUserInteractionEnabled(false);
    panel->addSubview(band);
    auto hint =
        label({{margin + 12, panelSize.height / 2 - 12}, {panelSize.width - margin - 24, 24}},
              "Swipe from the blue band", VLXFont::systemFontOfSize(14),
              VLXColor::colorWithWhite(0.55, 1));
    hint->setTextAlignment(VLXTextAlignment::Center);
    panel->addSubview(hint);
    const double drawerWidth = std::round(panelSize.width * 0.7);
    auto drawer = box({{-drawerWidth, 0}, {drawerWidth, panelSize.height}}, hue(0.62, 0.6, 0.45));
    drawer->addSubview(label({{16, 16}, {drawerWidth - 32, 24}}, "Drawer",
                             VLXFont::boldSystemFontOfSize(18), VLXColor::whiteColor()));
    panel->addSubview(drawer);

    auto swipe = Logged<VLXEdgeSwipeGestureRecognizer>::make(b.scene.log, "edge swipe");
    swipe->setSide(VLXEdgeSwipeSideLeft);
    swipe->setMargin(margin);
    // The recogniser tells its targets only when it begins, first changes and ends, so the
    // drawer follows the finger from a frame timer that runs while the swipe is under way.
    struct Drawer {
        std::weak_ptr<VLXView> view;
        std::weak_ptr<VLXView> panel;
        double width = 0;
        std::shared_ptr<VLXTimer> timer;

        ~Drawer() { stopFollowing(); }

        double travel(const VLXEdgeSwipeGestureRecognizer& swipe) const {
            auto host = panel.lock();
            const double dx = host ? swipe.translationInView(host.get()).x : 0.0;
            return std::isfinite(dx) ? std::clamp(dx, 0.0, width) : 0.0;
        }
        void place(double x, bool animated) {
            auto v = view.lock();
            if (!v) {
                return;
            }
            VLXRect frame = v->frame();
            frame.origin.x = x;
            if (animated) {
                VLXView::animate(0.25, [v, frame] { v->setFrame(frame); });
            } else {
                v->setFrame(frame);
            }
        }
        void stopFollowing() {
            if (timer) {
                timer->invalidate();
                timer.reset();
            }
        }
    };
    auto state = std::make_shared<Drawer>();
    state->view = drawer;
    state->panel = panel;
    state->width = drawerWidth;
    const std::weak_ptr<VLXEdgeSwipeGestureRecognizer> weakSwipe = swipe;
    swipe->addAction([state, weakSwipe](VLXGestureRecognizer& r) {
        auto* s = dynamic_cast<VLXEdgeSwipeGestureRecognizer*>(&r);
        if (!s) {
            return;
        }
        switch (r.state()) {
            case VLXGestureRecognizerState::Began:
                state->place(state->travel(*s) - state->width, false);
                state->stopFollowing();
                // Captures the state weakly: the recogniser's action owns it.
                state->timer = VLXTimer::scheduledTimer(
                    1.0 / 60, true, [weak = std::weak_ptr<Drawer>(state), weakSwipe](VLXTimer& t) {
                        auto d = weak.lock();
                        auto swipeNow = weakSwipe.lock();
                        if (!d || !swipeNow) {
                            t.invalidate();
                            return;
                        }
                        const auto now = swipeNow->state();
                        if (now == VLXGestureRecognizerState::Began ||
                            now == VLXGestureRecognizerState::Changed) {
                            d->place(d->travel(*swipeNow) - d->width, false);
                        } else {
                            // Over without an action (a cancelled swipe fails): close again.
                            d->stopFollowing();
                            d->place(-d->width, true);
                        }
                    });
                break;
            case VLXGestureRecognizerState::Changed:
                state->place(state->travel(*s) - state->width, false);
                break;
            case VLXGestureRecognizerState::Ended:
            case VLXGestureRecognizerState::Cancelled: {
                state->stopFollowing();
                const bool open = r.state() == VLXGestureRecognizerState::Ended &&
                                  state->travel(*s) > state->width / 2;
                state->place(open ? 0 : -state->width, true);
                break;
            }
            default:
                break;
        }
    });
    panel->addGestureRecognizer(swipe);
    b.scene.window->addSubview(panel);
    const double y = b.content.origin.y + panelSize.height / 2;
    const double w = b.size.width;
    b.scene.scripts.push_back({"From the edge, rightward: the drawer follows and opens on release.",
                               [y, w](VLXTouchSynthesizer& synth) {
                                   synth.drag({6, y}, {w * 0.75, y + 20}, 0.5);
                                   synth.wait(0.4);
                               }});
    b.scene.scripts.push_back({"From the edge, but steeply downward: refused by its angle.",
                               [y](VLXTouchSynthesizer& synth) {
                                   synth.drag({6, y - 60}, {50, y + 80}, 0.5);
                                   synth.wait(0.4);
                               }});
}

struct SceneKind {
    const char* name;
    const char* title;
    void (*build)(SceneBuilder&);
};

const SceneKind kScenes[] = {
    {"scroll", "Scroll: drag and fling", buildScroll},
    {"long-press", "Long press: hold the box", buildLongPress},
    {"taps", "Tap recolours, 2 taps grow", buildTaps},
    {"pinch", "Pinch: scale the square", buildPinch},
    {"edge-swipe", "Edge swipe: pull the drawer", buildEdgeSwipe},
};

}  // namespace

const std::vector<std::string>& interactionSceneNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> out;
        for (const auto& kind : kScenes) {
            out.emplace_back(kind.name);
        }
        return out;
    }();
    return names;
}

InteractionScene makeInteractionScene(std::string_view name, VLXSize size, double scale) {
    const auto side = [](double v) {
        return std::isfinite(v) ? std::clamp(v, kMinimumSide, kMaximumSide) : kMinimumSide;
    };
    size = {side(size.width), side(size.height)};
    if (!std::isfinite(scale) || scale <= 0 || scale > 4) {
        scale = 1;
    }
    for (const auto& kind : kScenes) {
        if (name == kind.name) {
            SceneBuilder b = begin(name, kind.title, size, scale);
            kind.build(b);
            return std::move(b.scene);
        }
    }
    return begin(name, "Unknown scene", size, scale).scene;
}
