// Gallery page for the framework's small views: shape views (caps, joins, dashes, fill rules,
// stroked stretches, path hit tests), gradient views, circular progress views (still and
// animated on the manual clock), the graph loading overlay fading out, and text style specs
// applied to labels. Everything is drawn through window snapshots.
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Graphing/VLXGraphLoadingView.h>
#include <VelmarCoreUI/Graphing/VLXTextStyleSpec.h>
#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>
#include <VelmarCoreUI/Platform/Views/VLXActivityIndicatorView.h>
#include <VelmarCoreUI/Platform/Views/VLXLabel.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include <VelmarCoreUI/Views/VLXCircularLayer.h>
#include <VelmarCoreUI/Views/VLXCircularProgressView.h>
#include <VelmarCoreUI/Views/VLXGradientView.h>
#include <VelmarCoreUI/Views/VLXShapeView.h>
#include "GalleryPage.h"

namespace {

constexpr double kScale = 2;

VLXColor hue(double h, double alpha = 1) {
    return VLXColor::colorWithHue(h, 0.65, 0.85, alpha);
}

std::shared_ptr<VLXWindow> makeWindow(VLXSize size) {
    auto screen = VLXScreen::create();
    screen->setScale(kScale);
    auto window = VLXWindow::createWithFrame({{0, 0}, size});
    window->setScreen(screen);
    window->setBackgroundColor(VLXColor::whiteColor());
    return window;
}

// Draws each image side by side into one bitmap and writes it as a figure.
std::string stripFigure(const std::filesystem::path& out, const std::string& fileName,
                        const std::vector<std::shared_ptr<VLXImage>>& frames,
                        const std::string& caption) {
    if (frames.empty() || !frames.front()) {
        return "<p>" + galleryEscapeHTML(fileName) + " could not be drawn</p>\n";
    }
    const VLXSize frameSize = frames.front()->size();
    const double gap = frames.size() > 1 ? 4 : 0;
    const double width = frames.size() * (frameSize.width + gap) - gap;
    auto bitmap = VLXGraphicsContext::createBitmap({width, frameSize.height}, kScale);
    bitmap->setFillColor(VLXColor::colorWithWhite(0.8, 1));
    bitmap->fillRect({{0, 0}, {width, frameSize.height}});
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (frames[i]) {
            bitmap->drawImage(*frames[i],
                              {{static_cast<double>(i) * (frameSize.width + gap), 0}, frameSize});
        }
    }
    return galleryFigure(out, fileName, *bitmap, caption);
}

std::string snapshotFigure(const std::filesystem::path& out, const std::string& fileName,
                           VLXWindow& window, const std::string& caption) {
    return stripFigure(out, fileName, {window.snapshot()}, caption);
}

// Manual time for scripted frames, restored afterwards.
class ManualClock {
public:
    ManualClock() : m_wasManual(VLXClock::isManual()) { VLXClock::setManual(1000); }
    ~ManualClock() {
        if (!m_wasManual) {
            VLXClock::setReal();
        }
    }
    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;

private:
    bool m_wasManual;
};

std::shared_ptr<VLXLabel> caption(VLXWindow& window, VLXRect frame, const std::string& text) {
    auto label = VLXLabel::createWithFrame(frame);
    label->setText(text);
    label->setFont(VLXFont::systemFontOfSize(10));
    label->setTextColor(VLXColor::darkGrayColor());
    label->setTextAlignment(VLXTextAlignment::Center);
    window.addSubview(label);
    return label;
}

std::shared_ptr<VLXShapeView> shape(VLXWindow& window, VLXRect frame, const VLXBezierPath& path,
                                    std::optional<VLXColor> fill, std::optional<VLXColor> stroke) {
    auto view = VLXShapeView::createWithFrame(frame);
    view->setPath(path);
    view->setFillColor(std::move(fill));
    view->setStrokeColor(std::move(stroke));
    window.addSubview(view);
    return view;
}

VLXBezierPath zigzag(double width) {
    VLXBezierPath path;
    path.moveToPoint({15, 55});
    path.addLineToPoint({40, 15});
    path.addLineToPoint({65, 55});
    path.addLineToPoint({90, 15});
    path.setLineWidth(width);
    return path;
}

std::string shapesFigure(const std::filesystem::path& out) {
    auto window = makeWindow({640, 300});
    const VLXColor ink = VLXColor::colorWithWhite(0.2, 1);
    // Caps on thick lines, with the thin outline of the path on top.
    const char* capNames[] = {"butt cap", "round cap", "square cap"};
    for (int i = 0; i < 3; ++i) {
        VLXBezierPath line;
        line.moveToPoint({20, 35});
        line.addLineToPoint({85, 35});
        line.setLineWidth(18);
        line.setLineCapStyle(static_cast<VLXLineCap>(i));
        const VLXRect frame{{i * 105.0, 0}, {105, 70}};
        shape(*window, frame, line, std::nullopt, hue(0.58));
        VLXBezierPath guide = line;
        guide.setLineWidth(1);
        guide.setLineCapStyle(VLXLineCap::Butt);
        shape(*window, frame, guide, std::nullopt, ink);
        caption(*window, {{frame.origin.x, 66}, {105, 14}}, capNames[i]);
    }
    // Joins.
    const char* joinNames[] = {"miter join", "round join", "bevel join"};
    for (int i = 0; i < 3; ++i) {
        VLXBezierPath path = zigzag(12);
        path.setLineJoinStyle(static_cast<VLXLineJoin>(i));
        const VLXRect frame{{320 + i * 105.0, 0}, {105, 70}};
        shape(*window, frame, path, std::nullopt, hue(0.08));
        caption(*window, {{frame.origin.x, 66}, {105, 14}}, joinNames[i]);
    }
    // Dashes, set through the path.
    const std::vector<std::vector<double>> dashes = {{10, 5}, {2, 4}, {16, 4, 4, 4}};
    const double phases[] = {0, 0, 6};
    for (int i = 0; i < 3; ++i) {
        VLXBezierPath path = VLXBezierPath::bezierPathWithRoundedRect({{12, 100}, {80, 50}}, 10);
        path.setLineWidth(3);
        path.setLineDash(dashes[static_cast<std::size_t>(i)], phases[i]);
        shape(*window, {{i * 105.0, 0}, {105, 180}}, path, std::nullopt, hue(0.33));
    }
    caption(*window, {{0, 160}, {315, 14}}, "dashes 10 5 · 2 4 · 16 4 4 4 (phase 6)");
    // Fill rules: a ring of two circles, non-zero fills the middle, even-odd leaves a hole.
    for (int i = 0; i < 2; ++i) {
        VLXBezierPath ring = VLXBezierPath::bezierPathWithOvalInRect({{20, 95}, {70, 70}});
        ring.appendPath(VLXBezierPath::bezierPathWithOvalInRect({{37, 112}, {36, 36}}));
        ring.setUsesEvenOddFillRule(i == 1);
        shape(*window, {{320 + i * 105.0, 0}, {105, 180}}, ring, hue(0.75), ink);
    }
    caption(*window, {{320, 166}, {210, 14}}, "non-zero · even-odd");
    // Stroked stretches of a circle.
    const double stretches[][2] = {{0, 0.3}, {0.25, 0.75}, {0.6, 1}, {0.5, 0.5}};
    for (int i = 0; i < 4; ++i) {
        VLXBezierPath circle = VLXBezierPath::bezierPathWithOvalInRect({{20, 200}, {64, 64}});
        circle.setLineWidth(8);
        circle.setLineCapStyle(VLXLineCap::Round);
        const VLXRect frame{{i * 105.0, 0}, {105, 300}};
        shape(*window, frame, circle, std::nullopt, hue(0.0, 0.15));
        auto part = shape(*window, frame, circle, std::nullopt, hue(0.0));
        part->setStrokeStart(stretches[i][0]);
        part->setStrokeEnd(stretches[i][1]);
        char text[48];
        std::snprintf(text, sizeof text, "stroke %.2f – %.2f", stretches[i][0], stretches[i][1]);
        caption(*window, {{frame.origin.x, 270}, {105, 14}}, text);
    }
    // Hit test by path: dots where a touch is accepted (green) or refused (red).
    auto target = shape(*window, {{450, 190}, {100, 100}},
                        VLXBezierPath::bezierPathWithOvalInRect({{0, 0}, {100, 100}}),
                        hue(0.58, 0.25), hue(0.58));
    target->setHitTestUsingPath(true);
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 10; ++x) {
            const VLXPoint p{5 + x * 10.0, 5 + y * 10.0};
            auto dot = VLXView::createWithFrame({{448 + p.x, 188 + p.y}, {4, 4}});
            dot->setBackgroundColor(target->pointInside(p) ? hue(0.33) : hue(0.0));
            window->addSubview(dot);
        }
    }
    caption(*window, {{440, 288}, {120, 12}}, "hitTestUsingPath");
    return snapshotFigure(out, "widgets-shapes.png", *window,
                          "Shape views: caps, joins, dashes and fill rules come from the path "
                          "given to setPath; red circles stroke only strokeStart…strokeEnd of "
                          "the outline (0.5 – 0.5 strokes nothing); right: touches tested on a "
                          "circular shape view with hitTestUsingPath, green accepted.");
}

std::string gradientsFigure(const std::filesystem::path& out) {
    auto window = makeWindow({520, 140});
    const std::vector<VLXColor> colors = {hue(0.0), hue(0.15), hue(0.55)};
    auto automatic = VLXGradientView::createWithFrame({{10, 10}, {110, 120}});
    automatic->setColors(colors);
    window->addSubview(automatic);
    auto explicitStops = VLXGradientView::createWithFrame({{135, 10}, {110, 120}});
    explicitStops->setColors(colors);
    explicitStops->setLocations(std::vector<double>{0, 0.5, 1});
    window->addSubview(explicitStops);
    auto pair = VLXGradientView::createWithFrame({{260, 10}, {110, 120}});
    pair->setTopColor(hue(0.75));
    pair->setBottomColor(VLXColor::whiteColor());
    window->addSubview(pair);
    auto onlyTop = VLXGradientView::createWithFrame({{385, 10}, {110, 120}});
    onlyTop->setTopColor(hue(0.3));
    onlyTop->setBackgroundColor(VLXColor::colorWithWhite(0.93, 1));
    window->addSubview(onlyTop);
    return snapshotFigure(
        out, "widgets-gradients.png", *window,
        "Gradient views: three colours with locations filled in as 0, 1/3, 2/3 (the last third "
        "is solid); the same colours at 0, 0.5, 1; top and bottom colour (0 and 1); only a top "
        "colour (the layer is left alone: just the grey background).");
}

std::string progressFigure(const std::filesystem::path& out) {
    auto window = makeWindow({470, 60});
    window->setBackgroundColor(hue(0.6));
    const double values[] = {0, 0.1, 0.25, 0.5, 0.75, 1, 1.3};
    std::vector<std::shared_ptr<VLXCircularProgressView>> views;
    for (int i = 0; i < 7; ++i) {
        auto view = VLXCircularProgressView::create();
        view->setCenter({35.0 + i * 66, 30});
        if (i == 6) {
            view->setStrokeWidth(3);
        }
        window->addSubview(view);
        views.push_back(view);
    }
    // Laid out before anything commits, as in a run-loop turn, so nothing grows in.
    window->layoutIfNeeded();
    VLXTransaction::begin();
    for (int i = 0; i < 7; ++i) {
        views[static_cast<std::size_t>(i)]->setProgress(values[i], false);
    }
    VLXTransaction::commit();
    return snapshotFigure(out, "widgets-progress.png", *window,
                          "Circular progress views (37 × 37, white) at 0, 0.1, 0.25, 0.5, 0.75, "
                          "1 and 1.3 (wraps, stroke width 3).");
}

std::string progressAnimationFigure(const std::filesystem::path& out) {
    ManualClock clock;
    auto window = makeWindow({60, 60});
    window->setBackgroundColor(hue(0.6));
    auto view = VLXCircularProgressView::createWithFrame({{8, 8}, {44, 44}});
    window->addSubview(view);
    window->renderFrame();
    VLXTransaction::begin();
    VLXTransaction::setAnimationDuration(1);
    view->setProgress(0.9, true);
    VLXTransaction::commit();
    std::vector<std::shared_ptr<VLXImage>> frames;
    for (int i = 0; i < 8; ++i) {
        frames.push_back(window->snapshot());
        VLXClock::advance(1.0 / 7);
    }
    return stripFigure(out, "widgets-progress-animation.png", frames,
                       "setProgress(0.9, animated) in a transaction of 1 s: frames every 1/7 s "
                       "on the manual clock.");
}

// A stand-in for a graph below the overlay: a few bars.
void addBars(VLXView& parent) {
    const double heights[] = {40, 70, 55, 90, 30, 65};
    for (int i = 0; i < 6; ++i) {
        auto bar = VLXView::createWithFrame({{10 + i * 25.0, 110 - heights[i]}, {18, heights[i]}});
        bar->setBackgroundColor(hue(0.08 + i * 0.1));
        parent.addSubview(bar);
    }
}

std::string loadingFigure(const std::filesystem::path& out) {
    ManualClock clock;
    auto window = makeWindow({170, 120});
    addBars(*window);
    auto overlay = VLXGraphLoadingView::createWithFrame(window->bounds());
    window->addSubview(overlay);
    std::vector<std::shared_ptr<VLXImage>> frames;
    frames.push_back(window->renderFrame());
    overlay->showLoading(true);
    for (int i = 0; i < 2; ++i) {
        VLXClock::advance(0.25);
        frames.push_back(window->renderFrame());
    }
    overlay->showLoading(false);
    for (int i = 0; i < 5; ++i) {
        frames.push_back(window->renderFrame());
        VLXClock::advance(0.05);
    }
    return stripFigure(out, "widgets-loading.png", frames,
                       "Graph loading overlay: new (visible, not spinning); showLoading(YES) "
                       "spinning at +0.25 s and +0.5 s; then showLoading(NO) fading out over "
                       "0.2 s in steps of 0.05 s.");
}

std::string textStylesFigure(const std::filesystem::path& out) {
    auto window = makeWindow({420, 190});
    struct Sample {
        std::string text;
        std::function<void(VLXTextStyleSpec&)> style;
        double fontSize;  // NaN: applyToLabel without a size
    };
    const double none = std::nan("");
    const std::vector<Sample> samples = {
        {"Fresh style: label unchanged", [](VLXTextStyleSpec&) {}, none},
        {"Axis style: system 10, dark grey",
         [](VLXTextStyleSpec& s) {
             s.setFont(VLXFont::systemFontOfSize(10));
             s.setTextColor(VLXColor::darkGrayColor());
         },
         none},
        {"Right aligned on a tinted background",
         [](VLXTextStyleSpec& s) {
             s.setTextAlignment(VLXTextAlignment::Right);
             s.setBackgroundColor(hue(0.55, 0.25));
         },
         none},
        {"Shadow colour with offset (1, 2)",
         [](VLXTextStyleSpec& s) {
             s.setShadowColor(hue(0.0, 0.8));
             s.setShadowOffset({1, 2});
             s.setTextColor(hue(0.6));
         },
         none},
        {"Shrinks to fit (down to 0.5): a text much too long for its label at this size",
         [](VLXTextStyleSpec& s) {
             s.setAdjustsFontSizeToFitWidth(true);
             s.setMinimumScaleFactor(0.5);
         },
         none},
        {"No style font, size 20 applied", [](VLXTextStyleSpec& s) { s.setTextColor(hue(0.33)); },
         20},
    };
    double y = 8;
    for (const Sample& sample : samples) {
        auto label = VLXLabel::createWithFrame({{10, y}, {400, 26}});
        label->setText(sample.text);
        label->setFont(VLXFont::boldSystemFontOfSize(15));
        label->setBackgroundColor(VLXColor::colorWithWhite(0.95, 1));
        auto style = VLXTextStyleSpec::create();
        sample.style(*style);
        if (std::isnan(sample.fontSize)) {
            style->applyToLabel(*label);
        } else {
            style->applyToLabel(*label, sample.fontSize);
        }
        window->addSubview(label);
        y += 30;
    }
    return snapshotFigure(
        out, "widgets-text-styles.png", *window,
        "Labels (bold 15 on light grey, left aligned) after applying text styles; "
        "the fresh style writes nothing but turns shrinking off.");
}

}  // namespace

GalleryPage makeWidgetsPage(const std::filesystem::path& outputDirectory) {
    GalleryPage page;
    page.id = "widgets";
    page.title = "Widgets";
    page.summary = "Shape, gradient and circular progress views, the loading overlay, text styles";
    page.bodyHTML = "<h2>Shape views</h2>\n" + shapesFigure(outputDirectory) +
                    "<h2>Gradient views</h2>\n" + gradientsFigure(outputDirectory) +
                    "<h2>Circular progress views</h2>\n" + progressFigure(outputDirectory) +
                    progressAnimationFigure(outputDirectory) + "<h2>Graph loading overlay</h2>\n" +
                    loadingFigure(outputDirectory) + "<h2>Text style specs</h2>\n" +
                    textStylesFigure(outputDirectory);
    return page;
}
