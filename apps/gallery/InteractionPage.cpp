// Gallery page for touch interaction: every scene of the viewer played by the touch synthesiser
// on the manual clock, shown as frame strips with the fingers drawn over them, beside the log of
// what the scene's recognisers reported.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Input/VLXTouchSynthesizer.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include "GalleryPage.h"
#include "Scenes.h"

namespace {

constexpr VLXSize kSceneSize{240, 320};
constexpr double kCaptureInterval = 1.0 / 30.0;
constexpr int kFrames = 8;
constexpr int kColumns = 4;
constexpr double kGap = 8;
constexpr double kFingerRadius = 14;

struct Finger {
    VLXPoint location;
    bool down;  // false: just lifted or cancelled
};

struct Capture {
    std::shared_ptr<VLXImage> image;
    std::vector<Finger> fingers;
    double time;       // seconds since the script started
    bool key = false;  // a finger came down or lifted
};

// The fingers to draw at `now`: those down, and those that lifted in the last moment.
std::vector<Finger> fingersAt(const std::vector<std::shared_ptr<VLXTouch>>& lastTouches,
                              double lastEventTime, double now) {
    std::vector<Finger> out;
    for (const auto& touch : lastTouches) {
        const bool down = !touch->isFinished();
        if (down || now - lastEventTime < 0.1) {
            out.push_back({touch->locationInView(nullptr), down});
        }
    }
    return out;
}

// Plays `script` on a fresh scene, capturing the window every 1/30 s and whenever a finger
// comes down or lifts. Keeps `kFrames` captures: those downs and lifts (a tap is over in 0.05 s
// and would fall between evenly spread frames), the first and the last, and evenly spread
// others, in time order.
std::vector<Capture> record(const std::string& name, const SceneScript& script,
                            std::vector<std::string>& log) {
    InteractionScene scene = makeInteractionScene(name, kSceneSize, 1);
    VLXClock::advance(10);  // clear of whatever ran before
    const double start = VLXClock::now();
    scene.window->renderFrame();

    std::vector<Capture> captures;
    std::vector<std::shared_ptr<VLXTouch>> lastTouches;
    double lastEventTime = start;
    auto window = scene.window;
    auto capture = [&] {
        const double now = VLXClock::now();
        captures.push_back(
            {window->snapshot(), fingersAt(lastTouches, lastEventTime, now), now - start});
    };
    capture();
    VLXTouchSynthesizer synth(scene.window);
    synth.setEventObserver([&](const VLXEvent& event) {
        lastTouches = event.allTouches();
        lastEventTime = VLXClock::now();
        const bool key = std::any_of(lastTouches.begin(), lastTouches.end(), [](const auto& t) {
            return t->phase() == VLXTouchPhase::Began || t->isFinished();
        });
        if (key) {
            capture();
            captures.back().key = true;
        }
    });
    auto timer = VLXTimer::scheduledTimer(kCaptureInterval, true, [&](VLXTimer&) { capture(); });
    script.play(synth);
    timer->invalidate();
    scene.window->renderFrame();
    capture();
    log = scene.log->lines();

    const std::size_t n = captures.size();
    std::vector<bool> keep(n, false);
    std::size_t kept = 0;
    auto take = [&](std::size_t i) {
        if (i < n && !keep[i] && kept < static_cast<std::size_t>(kFrames)) {
            keep[i] = true;
            ++kept;
        }
    };
    take(0);
    take(n - 1);
    for (std::size_t i = 0; i < n; ++i) {
        if (captures[i].key) {
            take(i);
        }
    }
    // Fill up with the captures farthest in time from those already kept.
    while (kept < std::min(n, static_cast<std::size_t>(kFrames))) {
        std::size_t best = 0;
        double bestGap = -1;
        for (std::size_t i = 0; i < n; ++i) {
            if (keep[i]) {
                continue;
            }
            double gap = 1e9;
            for (std::size_t j = 0; j < n; ++j) {
                if (keep[j]) {
                    gap = std::min(gap, std::abs(captures[i].time - captures[j].time));
                }
            }
            if (gap > bestGap) {
                bestGap = gap;
                best = i;
            }
        }
        take(best);
    }
    std::vector<Capture> chosen;
    for (std::size_t i = 0; i < n; ++i) {
        if (keep[i]) {
            chosen.push_back(captures[i]);
        }
    }
    return chosen;
}

std::string stripFigure(const std::filesystem::path& out, const std::string& fileName,
                        const std::vector<Capture>& frames, const std::string& caption) {
    const int rows = (static_cast<int>(frames.size()) + kColumns - 1) / kColumns;
    const VLXSize size{kColumns * kSceneSize.width + (kColumns - 1) * kGap,
                       std::max(rows, 1) * (kSceneSize.height + kGap) - kGap};
    auto strip = VLXGraphicsContext::createBitmap(size, 1);
    strip->setFillColor(VLXColor::whiteColor());
    strip->fillRect({{0, 0}, size});
    std::string times;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const double x = static_cast<double>(i % kColumns) * (kSceneSize.width + kGap);
        const double y = static_cast<double>(i / kColumns) * (kSceneSize.height + kGap);
        if (frames[i].image) {
            strip->drawImage(*frames[i].image, {{x, y}, kSceneSize});
        }
        for (const auto& finger : frames[i].fingers) {
            const VLXRect r{
                {x + finger.location.x - kFingerRadius, y + finger.location.y - kFingerRadius},
                {2 * kFingerRadius, 2 * kFingerRadius}};
            if (finger.down) {
                strip->setFillColor(VLXColor::colorWithRed(0.1, 0.1, 0.1, 0.35));
                strip->fillEllipseInRect(r);
            }
            strip->setStrokeColor(VLXColor::colorWithRed(0.1, 0.1, 0.1, finger.down ? 0.6 : 0.35));
            strip->setLineWidth(2);
            strip->strokeEllipseInRect(r);
        }
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, "%s%.2f", i ? ", " : "", frames[i].time);
        times += buffer;
    }
    return galleryFigure(out, fileName, *strip,
                         caption + " Frames at " + times +
                             " s, left to right, top to bottom; fingers down are filled "
                             "circles, a finger just lifted a ring.");
}

std::string logList(const std::vector<std::string>& lines) {
    if (lines.empty()) {
        return "<p><em>No recogniser reported anything.</em></p>\n";
    }
    std::string html = "<ol class=\"log\">\n";
    for (const auto& line : lines) {
        html += "<li><code>" + galleryEscapeHTML(line) + "</code></li>\n";
    }
    return html + "</ol>\n";
}

}  // namespace

GalleryPage makeInteractionPage(const std::filesystem::path& outputDirectory) {
    const bool wasManual = VLXClock::isManual();
    VLXClock::setManual(std::max(VLXClock::now(), 3000.0));

    std::string body =
        "<p>Each scene is also in <code>vlx-viewer</code>, to be tried by hand. Here the touch "
        "synthesiser plays a scripted gesture on the manual clock; the window is captured 30 "
        "times a second and at every finger down and lift, and eight captures are shown (the "
        "downs and lifts first, the rest spread out in time), with the log of the scene's "
        "recognisers (repeated lines folded into one with a count; failures are logged when "
        "the recogniser is reset).</p>\n";
    for (const auto& name : interactionSceneNames()) {
        const InteractionScene prototype = makeInteractionScene(name, kSceneSize, 1);
        body += "<h2>" + galleryEscapeHTML(prototype.title) + "</h2>\n";
        for (std::size_t i = 0; i < prototype.scripts.size(); ++i) {
            std::vector<std::string> log;
            const auto frames = record(name, prototype.scripts[i], log);
            const std::string file =
                "interaction-" + name +
                (prototype.scripts.size() > 1 ? "-" + std::to_string(i + 1) : "") + ".png";
            body += "<div class=\"columns\">\n" +
                    stripFigure(outputDirectory, file, frames, prototype.scripts[i].caption) +
                    "<div><h3>Recogniser log</h3>\n" + logList(log) + "</div>\n</div>\n";
        }
    }
    VLXRunLoop::main().runUntil(VLXClock::now());
    if (!wasManual) {
        VLXClock::setReal();
    }

    GalleryPage page;
    page.id = "interaction";
    page.title = "Interaction";
    page.summary = "Scroll, long press, taps, pinch and edge swipe played by the touch synthesiser";
    page.bodyHTML = std::move(body);
    return page;
}
