// Gallery page for gesture recognisers: scripted touches sent through a window on the manual
// clock, drawn as finger traces with a mark wherever the recogniser told its targets something.
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXLongPressGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXPinchGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTapGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include <VelmarCoreUI/Views/VLXEdgeSwipeGestureRecognizer.h>
#include "GalleryPage.h"

namespace {

constexpr VLXSize kPanel{240, 160};
constexpr double kScale = 2;

VLXColor stateColor(VLXGestureRecognizerState state) {
    switch (state) {
        case VLXGestureRecognizerState::Began:
            return VLXColor::colorWithRed(0.1, 0.65, 0.25, 1);
        case VLXGestureRecognizerState::Changed:
            return VLXColor::colorWithRed(0.15, 0.4, 0.9, 1);
        case VLXGestureRecognizerState::Ended:
            return VLXColor::colorWithRed(0.85, 0.15, 0.15, 1);
        default:
            return VLXColor::colorWithRed(0.95, 0.55, 0.1, 1);
    }
}

// One recogniser on a view filling a window; every touch is recorded as a trace and every
// action as a mark at the recogniser's location.
class Scene {
public:
    using Locator = std::function<VLXPoint(VLXGestureRecognizer&)>;
    // Marks go where `locator` says (by default the recogniser's location).
    explicit Scene(const std::shared_ptr<VLXGestureRecognizer>& recognizer, Locator locator = {}) {
        VLXClock::setManual(m_now);
        m_window->addSubview(m_view);
        m_view->addGestureRecognizer(recognizer);
        recognizer->addAction([this, locator](VLXGestureRecognizer& r) {
            m_marks.push_back({r.state(), locator ? locator(r) : r.locationInView(nullptr)});
        });
    }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    std::shared_ptr<VLXTouch> down(VLXPoint p) {
        auto touch = VLXTouch::create(p, m_now);
        m_traces[touch].push_back(p);
        m_live.push_back(touch);
        send();
        return touch;
    }
    void move(const std::vector<std::pair<std::shared_ptr<VLXTouch>, VLXPoint>>& moves) {
        for (const auto& [touch, p] : moves) {
            touch->update(p, m_now, VLXTouchPhase::Moved);
            m_traces[touch].push_back(p);
        }
        send();
    }
    void up(const VLXTouchSet& touches) {
        for (const auto& touch : touches) {
            touch->update(touch->locationInView(nullptr), m_now, VLXTouchPhase::Ended);
        }
        send();
        std::erase_if(m_live, [](const auto& t) { return t->isFinished(); });
    }
    void up(const std::shared_ptr<VLXTouch>& touch) { up(VLXTouchSet{touch}); }
    void wait(double seconds) {
        m_now += seconds;
        VLXRunLoop::main().runUntil(m_now);
    }
    // Moves `touch` to `to` in `steps` moves, 1/60 s apart.
    void drag(const std::shared_ptr<VLXTouch>& touch, VLXPoint to, int steps) {
        const VLXPoint from = touch->locationInView(nullptr);
        for (int i = 1; i <= steps; ++i) {
            wait(1.0 / 60);
            const double f = double(i) / steps;
            move({{touch, {from.x + (to.x - from.x) * f, from.y + (to.y - from.y) * f}}});
        }
    }

    std::string figure(const std::filesystem::path& out, const std::string& name,
                       const std::string& caption, double edgeBand = 0) {
        auto context = VLXGraphicsContext::createBitmap(kPanel, kScale);
        context->setFillColor(VLXColor::whiteColor());
        context->fillRect({{0, 0}, kPanel});
        if (edgeBand > 0) {
            context->setFillColor(VLXColor::colorWithWhite(0.9, 1));
            context->fillRect({{0, 0}, {edgeBand, kPanel.height}});
        }
        context->setStrokeColor(VLXColor::colorWithWhite(0.6, 1));
        context->setFillColor(VLXColor::colorWithWhite(0.6, 1));
        context->setLineWidth(2);
        for (const auto& [touch, points] : m_traces) {
            context->fillEllipseInRect({{points[0].x - 3, points[0].y - 3}, {6, 6}});
            context->beginPath();
            context->moveToPoint(points[0]);
            for (VLXPoint p : points) {
                context->addLineToPoint(p);
            }
            context->strokePath();
        }
        for (const auto& [state, at] : m_marks) {
            const double r = state == VLXGestureRecognizerState::Changed ? 2.5 : 5;
            context->setFillColor(stateColor(state));
            context->fillEllipseInRect({{at.x - r, at.y - r}, {2 * r, 2 * r}});
        }
        return galleryFigure(out, name, *context, caption);
    }

private:
    void send() { m_window->sendEvent(*VLXEvent::create(m_live, m_now)); }

    struct Mark {
        VLXGestureRecognizerState state;
        VLXPoint at;
    };
    double m_now = 1000;
    std::shared_ptr<VLXWindow> m_window = VLXWindow::createWithFrame({{0, 0}, kPanel});
    std::shared_ptr<VLXView> m_view = VLXView::createWithFrame({{0, 0}, kPanel});
    VLXTouchSet m_live;
    std::map<std::shared_ptr<VLXTouch>, std::vector<VLXPoint>> m_traces;
    std::vector<Mark> m_marks;
};

std::string format(const char* pattern, double a, double b = 0) {
    char text[160];
    std::snprintf(text, sizeof text, pattern, a, b);
    return text;
}

std::string tapFigures(const std::filesystem::path& out) {
    std::string html;
    {
        auto tap = VLXTapGestureRecognizer::create();
        tap->setNumberOfTapsRequired(2);
        Scene scene(tap);
        scene.up(scene.down({80, 70}));
        scene.wait(0.2);
        scene.up(scene.down({86, 76}));
        scene.wait(0.5);
        scene.up(scene.down({170, 90}));  // a single tap does not do
        html += scene.figure(out, "gestures-double-tap.png",
                             "Double tap: recognised (red) at the second lift; the lone tap on "
                             "the right fails after 0.35 s.");
    }
    {
        auto tap = VLXTapGestureRecognizer::create();
        tap->setNumberOfTouchesRequired(2);
        Scene scene(tap);
        auto a = scene.down({70, 60});
        auto b = scene.down({150, 110});
        scene.up(a);
        scene.up(b);
        html += scene.figure(out, "gestures-two-finger-tap.png",
                             "Two-finger tap, fingers lifted one by one: recognised between them.");
    }
    return html;
}

std::string pressFigure(const std::filesystem::path& out) {
    Scene scene(VLXLongPressGestureRecognizer::create());
    auto finger = scene.down({40, 120});
    scene.wait(0.6);
    scene.drag(finger, {200, 40}, 12);
    scene.up(finger);
    return scene.figure(out, "gestures-long-press.png",
                        "Long press: began (green) after 0.5 s, changed (blue) along the drag, "
                        "ended (red) at the lift.");
}

std::string panFigure(const std::filesystem::path& out) {
    auto pan = VLXPanGestureRecognizer::create();
    Scene scene(pan, [](VLXGestureRecognizer& r) {
        const VLXPoint t = static_cast<VLXPanGestureRecognizer&>(r).translationInView(nullptr);
        return VLXPoint{30 + t.x, 130 + t.y};
    });
    auto a = scene.down({30, 130});
    scene.drag(a, {90, 110}, 8);
    auto b = scene.down({110, 40});
    for (int i = 1; i <= 6; ++i) {
        scene.wait(1.0 / 60);
        scene.move({{a, {90.0 + 10 * i, 110}}, {b, {110.0 + 10 * i, 40}}});
    }
    scene.up(b);
    scene.drag(a, {210, 130}, 6);
    const VLXPoint t = pan->translationInView(nullptr);
    const VLXPoint v = pan->velocityInView(nullptr);
    scene.up(a);
    return scene.figure(out, "gestures-pan.png",
                        "Pan, a second finger joining and leaving mid-drag; marks at the first "
                        "touch-down plus the translation, which carries on without a jump. "
                        "Translation " +
                            format("(%.0f, %.0f)", t.x, t.y) + ", velocity " +
                            format("(%.0f, %.0f) pt/s", v.x, v.y) + " before the lift.");
}

std::string pinchFigure(const std::filesystem::path& out) {
    auto pinch = VLXPinchGestureRecognizer::create();
    // Marks along the bottom: a ruler of the scale.
    Scene scene(pinch, [](VLXGestureRecognizer& r) {
        return VLXPoint{20 + 45 * static_cast<VLXPinchGestureRecognizer&>(r).scale(), 145};
    });
    auto a = scene.down({100, 80});
    auto b = scene.down({140, 80});
    for (int i = 1; i <= 10; ++i) {
        scene.wait(1.0 / 60);
        scene.move({{a, {100.0 - 6 * i, 80.0 - 3 * i}}, {b, {140.0 + 6 * i, 80.0 + 3 * i}}});
    }
    const double scale = pinch->scale();
    const double velocity = pinch->velocity();
    scene.up({a, b});
    return scene.figure(out, "gestures-pinch.png",
                        "Pinch from 40 pt apart, marks at x = 20 + 45 × scale along the bottom: "
                        "began past 8 pt of change; scale " +
                            format("%.2f, velocity %.1f per second", scale, velocity) + ".");
}

std::string edgeFigure(const std::filesystem::path& out) {
    auto swipe = VLXEdgeSwipeGestureRecognizer::create();
    Scene scene(swipe);
    auto finger = scene.down({10, 50});
    scene.drag(finger, {180, 60}, 10);
    scene.up(finger);
    finger = scene.down({90, 120});  // outside the band: fails at once
    scene.drag(finger, {200, 125}, 6);
    scene.up(finger);
    finger = scene.down({12, 140});  // in the band, but too steep
    scene.drag(finger, {40, 100}, 6);
    scene.up(finger);
    return scene.figure(out, "gestures-edge-swipe.png",
                        "Edge swipe from the left (band shaded): the top swipe begins, changes "
                        "once and ends; one starting mid-view and one leaving at 55° fail.",
                        swipe->margin());
}

}  // namespace

GalleryPage makeGesturesPage(const std::filesystem::path& outputDirectory) {
    GalleryPage page;
    page.id = "gestures";
    page.title = "Gestures";
    page.summary =
        "Tap, long press, pan, pinch and edge swipe recognisers driven by scripted touches";
    page.bodyHTML =
        "<p>Grey: finger traces (dot where each went down). Marks: what the targets heard, at the "
        "recogniser's location — green began, blue changed, red ended.</p>\n<h2>Taps</h2>\n" +
        tapFigures(outputDirectory) + "<h2>Long press</h2>\n" + pressFigure(outputDirectory) +
        "<h2>Pan</h2>\n" + panFigure(outputDirectory) + "<h2>Pinch</h2>\n" +
        pinchFigure(outputDirectory) + "<h2>Edge swipe</h2>\n" + edgeFigure(outputDirectory);
    VLXClock::setReal();
    return page;
}
