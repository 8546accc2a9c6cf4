// Gallery page for synthesised touches and scroll-view dragging: the finger traces each
// synthesised gesture sends, and a scroll view dragged, locked to one axis and gliding after a
// flick, all on the manual clock and drawn from window snapshots.
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXTouchSynthesizer.h>
#include <VelmarCoreUI/Platform/Views/VLXLabel.h>
#include <VelmarCoreUI/Platform/Views/VLXScrollView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include "GalleryPage.h"

namespace {

constexpr double kScale = 2;

struct Mark {
    VLXTouchPhase phase;
    VLXPoint location;
    std::uint32_t tapCount;
};

std::shared_ptr<VLXWindow> makeWindow(VLXSize size) {
    auto window = VLXWindow::createWithFrame({{0, 0}, size});
    auto screen = VLXScreen::create();
    screen->setScale(kScale);
    window->setScreen(screen);
    window->setBackgroundColor(VLXColor::whiteColor());
    return window;
}

// Collects the changed touches of every event the synthesiser sends.
void recordMarks(VLXTouchSynthesizer& synth, std::vector<Mark>& marks) {
    synth.setEventObserver([&marks](const VLXEvent& event) {
        for (const auto& touch : event.allTouches()) {
            if (touch->phase() != VLXTouchPhase::Stationary) {
                marks.push_back(
                    {touch->phase(), touch->locationInView(nullptr), touch->tapCount()});
            }
        }
    });
}

// Began: green disc (two rings for a second tap); moved: small blue dot; ended: red ring.
void drawMarks(VLXGraphicsContext& context, const std::vector<Mark>& marks) {
    for (const auto& mark : marks) {
        const VLXPoint p = mark.location;
        switch (mark.phase) {
            case VLXTouchPhase::Began:
                context.setFillColor(VLXColor::colorWithRed(0.1, 0.65, 0.2, 0.9));
                context.fillEllipseInRect({{p.x - 6, p.y - 6}, {12, 12}});
                if (mark.tapCount > 1) {
                    context.setStrokeColor(VLXColor::colorWithRed(0.1, 0.65, 0.2, 0.9));
                    context.setLineWidth(1.5);
                    context.strokeEllipseInRect({{p.x - 10, p.y - 10}, {20, 20}});
                }
                break;
            case VLXTouchPhase::Moved:
                context.setFillColor(VLXColor::colorWithRed(0.15, 0.35, 0.9, 0.8));
                context.fillEllipseInRect({{p.x - 2, p.y - 2}, {4, 4}});
                break;
            default:
                context.setStrokeColor(VLXColor::colorWithRed(0.85, 0.1, 0.1, 1));
                context.setLineWidth(2);
                context.strokeEllipseInRect({{p.x - 8, p.y - 8}, {16, 16}});
                break;
        }
    }
}

std::string gestureFigures(const std::filesystem::path& out) {
    const VLXSize panel{150, 110};
    struct Gesture {
        const char* name;
        std::function<void(VLXTouchSynthesizer&)> play;
    };
    const std::vector<Gesture> gestures = {
        {"tap",
         [](VLXTouchSynthesizer& s) {
             s.tap({75, 55});
         }},
        {"double tap",
         [](VLXTouchSynthesizer& s) {
             s.doubleTap({75, 55});
         }},
        {"two-finger tap",
         [](VLXTouchSynthesizer& s) {
             s.twoFingerTap({75, 55}, 50);
         }},
        {"drag",
         [](VLXTouchSynthesizer& s) {
             s.drag({20, 90}, {130, 20});
         }},
        {"press and drag",
         [](VLXTouchSynthesizer& s) {
             s.pressAndDrag({20, 55}, {130, 55}, 0.8, 0.5);
         }},
        {"pinch out",
         [](VLXTouchSynthesizer& s) {
             s.pinch({75, 55}, 30, 120);
         }},
    };
    auto strip = VLXGraphicsContext::createBitmap(
        {panel.width * double(gestures.size()), panel.height + 16}, kScale);
    std::string counts;
    for (std::size_t i = 0; i < gestures.size(); ++i) {
        auto window = makeWindow(panel);
        std::vector<Mark> marks;
        std::size_t events = 0;
        {
            VLXTouchSynthesizer synth(window);
            auto record = [&marks, &events](const VLXEvent& event) {
                ++events;
                for (const auto& touch : event.allTouches()) {
                    if (touch->phase() != VLXTouchPhase::Stationary) {
                        marks.push_back(
                            {touch->phase(), touch->locationInView(nullptr), touch->tapCount()});
                    }
                }
            };
            synth.setEventObserver(record);
            const double start = VLXClock::now();
            gestures[i].play(synth);
            counts += VLXStringWithFormat("%s: %zu events over %.2f s; ", gestures[i].name, events,
                                          VLXClock::now() - start);
        }
        strip->saveGState();
        strip->translateCTM(panel.width * double(i), 0);
        strip->setFillColor(VLXColor::colorWithWhite(0.96, 1));
        strip->fillRect({{2, 2}, {panel.width - 4, panel.height - 4}});
        drawMarks(*strip, marks);
        strip->restoreGState();
    }
    return galleryFigure(out, "scrolling-gestures.png", *strip,
                         "Synthesised gestures, left to right: tap, double tap (second touch "
                         "ringed: tap count 2), two-finger tap, drag, press and drag, pinch out. "
                         "Green: touch down, blue: moves every 1/60 s, red: lift. " +
                             counts);
}

// A scroll view of numbered tiles, inset in its window.
struct TileScene {
    std::shared_ptr<VLXWindow> window = makeWindow({300, 200});
    std::shared_ptr<VLXScrollView> scroll = VLXScrollView::createWithFrame({{20, 20}, {260, 160}});

    explicit TileScene(VLXSize content) {
        scroll->setBackgroundColor(VLXColor::colorWithWhite(0.2, 1));
        scroll->setContentSize(content);
        const double tile = 60;
        int n = 0;
        for (double y = 0; y < content.height; y += tile) {
            for (double x = 0; x < content.width; x += tile, ++n) {
                auto label = VLXLabel::createWithFrame({{x + 2, y + 2}, {tile - 4, tile - 4}});
                label->setBackgroundColor(
                    VLXColor::colorWithHue(std::fmod(0.07 * n, 1.0), 0.45, 0.95, 1));
                label->setText(std::to_string(n));
                label->setTextAlignment(VLXTextAlignment::Center);
                scroll->addSubview(label);
            }
        }
        window->addSubview(scroll);
    }
};

std::string figureFromSnapshots(const std::filesystem::path& out, const std::string& fileName,
                                const std::vector<std::shared_ptr<VLXImage>>& frames,
                                const std::vector<std::vector<Mark>>& marks,
                                const std::string& caption) {
    const VLXSize frame{300, 200};
    auto strip = VLXGraphicsContext::createBitmap(
        {frame.width * double(frames.size()), frame.height}, kScale);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        strip->saveGState();
        strip->translateCTM(frame.width * double(i), 0);
        if (frames[i]) {
            strip->drawImage(*frames[i], {{0, 0}, frame});
        }
        if (i < marks.size()) {
            drawMarks(*strip, marks[i]);
        }
        strip->setStrokeColor(VLXColor::colorWithWhite(0.6, 1));
        strip->setLineWidth(1);
        strip->strokeRect({{0.5, 0.5}, {frame.width - 1, frame.height - 1}});
        strip->restoreGState();
    }
    return galleryFigure(out, fileName, *strip, caption);
}

std::string offsetText(const VLXScrollView& scroll) {
    return VLXStringWithFormat("(%.0f, %.0f)", scroll.contentOffset().x, scroll.contentOffset().y);
}

std::string scrollFigures(const std::filesystem::path& out) {
    std::string html;
    {  // A drag both ways, then far past the end.
        TileScene scene({600, 420});
        scene.scroll->setDecelerationEnabled(false);
        std::vector<std::shared_ptr<VLXImage>> frames{scene.window->snapshot()};
        std::vector<std::vector<Mark>> marks(1);
        std::string offsets = offsetText(*scene.scroll);
        for (auto [from, to] : {std::pair<VLXPoint, VLXPoint>{{240, 160}, {120, 80}},
                                std::pair<VLXPoint, VLXPoint>{{260, 170}, {-200, -300}}}) {
            marks.emplace_back();
            VLXTouchSynthesizer synth(scene.window);
            recordMarks(synth, marks.back());
            synth.drag(from, to, 0.4);
            frames.push_back(scene.window->snapshot());
            offsets += ", " + offsetText(*scene.scroll);
        }
        html += figureFromSnapshots(
            out, "scrolling-drag.png", frames, marks,
            "A 260 × 160 scroll view over 600 × 420 of tiles: at rest, after a drag up and to the "
            "left (the content follows the finger), and after a drag far past the end (it stops "
            "at the last tile: no rubber band). Offsets " +
                offsets + ".");
    }
    {  // Content wider but not taller: a diagonal drag moves it sideways only.
        TileScene scene({600, 160});
        scene.scroll->setDecelerationEnabled(false);
        std::vector<std::shared_ptr<VLXImage>> frames{scene.window->snapshot()};
        std::vector<std::vector<Mark>> marks(1);
        marks.emplace_back();
        VLXTouchSynthesizer synth(scene.window);
        recordMarks(synth, marks.back());
        synth.drag({250, 160}, {130, 40}, 0.4);
        frames.push_back(scene.window->snapshot());
        html += figureFromSnapshots(out, "scrolling-axis.png", frames, marks,
                                    "Content 600 × 160 (as tall as the view): a diagonal drag "
                                    "scrolls only sideways, to " +
                                        offsetText(*scene.scroll) + ".");
    }
    {  // A flick and the glide after it.
        TileScene scene({1800, 160});
        std::vector<std::shared_ptr<VLXImage>> frames;
        std::vector<std::vector<Mark>> marks(1);
        VLXTouchSynthesizer synth(scene.window);
        recordMarks(synth, marks.back());
        synth.touchDown(0, {260, 100});
        for (int i = 1; i <= 6; ++i) {
            synth.wait(VLXTouchSynthesizer::kStepInterval);
            synth.moveTo(0, {260.0 - 15 * i, 100});
        }
        synth.lift(0);
        std::string offsets;
        double last = 0;
        for (double t : {0.0, 0.25, 0.5, 1.0, 2.5}) {
            VLXRunLoop::main().runUntil(VLXClock::now() + (t - last));
            last = t;
            frames.push_back(scene.window->snapshot());
            offsets += VLXStringWithFormat("%s%.2f s %s%s", offsets.empty() ? "" : ", ", t,
                                           offsetText(*scene.scroll).c_str(),
                                           scene.scroll->isDecelerating() ? "" : " (stopped)");
        }
        html += figureFromSnapshots(
            out, "scrolling-glide.png", frames, marks,
            VLXStringWithFormat("A flick of 900 pt/s to the left, then the glide: the speed "
                                "keeps %.3f of itself per millisecond and the glide stops below "
                                "%.0f pt/s. After the lift: ",
                                VLXScrollView::kDecelerationRate,
                                VLXScrollView::kMinimumDecelerationSpeed) +
                offsets + ".");
    }
    return html;
}

}  // namespace

GalleryPage makeScrollingPage(const std::filesystem::path& outputDirectory) {
    const bool wasManual = VLXClock::isManual();
    const double before = VLXClock::now();
    VLXClock::setManual(1000);
    GalleryPage page;
    page.id = "scrolling";
    page.title = "Touches and scrolling";
    page.summary = "Synthesised gestures, and a scroll view dragged and gliding.";
    page.bodyHTML = "<h2>Synthesised gestures</h2>\n" + gestureFigures(outputDirectory) +
                    "<h2>Scroll view</h2>\n" + scrollFigures(outputDirectory);
    if (wasManual) {
        VLXClock::setManual(before);
    } else {
        VLXClock::setReal();
    }
    return page;
}
