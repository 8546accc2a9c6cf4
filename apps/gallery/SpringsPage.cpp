// Gallery page for spring animations: value-over-time plots of 0 → 100 springs with several
// stiffness, damping and mass settings (every key frame, one per millisecond), and frame strips
// of layers moved by point springs, presented on the manual clock and drawn by the compositor.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Animation/VLXSpringAnimation.h>
#include <VelmarCoreUI/Animation/VLXTransactionHelpers.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>
#include <VelmarCoreUI/Platform/Layers/VLXCompositor.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include "GalleryPage.h"

namespace {

constexpr double kScale = 2;

struct Setting {
    double stiffness, damping, mass;
    const char* name;
};

const Setting kSettings[] = {
    {300, 30, 5, "default"},       {900, 30, 5, "stiff"},  {100, 30, 5, "soft"},
    {300, 12, 5, "light damping"}, {300, 30, 15, "heavy"}, {300, 90, 5, "over-damped"},
};

VLXTextAttributes label(double size, VLXColor color = VLXColor::blackColor()) {
    VLXTextAttributes attributes;
    attributes.font = VLXFont::systemFontOfSize(size);
    attributes.foregroundColor = color;
    return attributes;
}

std::string describe(const Setting& s) {
    char text[96];
    std::snprintf(text, sizeof text, "%s: k %.0f, c %.0f, m %.0f", s.name, s.stiffness, s.damping,
                  s.mass);
    return text;
}

std::shared_ptr<VLXSpringAnimation> spring(const Setting& s, VLXValue from, VLXValue to) {
    auto animation = VLXSpringAnimation::animationWithKeyPath("position");
    animation->setStiffness(s.stiffness);
    animation->setDamping(s.damping);
    animation->setMass(s.mass);
    animation->setFromValue(std::move(from));
    animation->setToValue(std::move(to));
    return animation;
}

// One plot per setting: every frame of a 0 → 100 spring against time, with the target and the
// end of the animation marked.
void drawPlot(VLXGraphicsContext& context, const VLXRect& cell, const Setting& setting,
              double seconds) {
    auto animation = spring(setting, VLXValue(0.0), VLXValue(100.0));
    const auto& frames = animation->values();
    const double x0 = cell.origin.x + 34;
    const double w = cell.size.width - 44;
    const double top = cell.origin.y + 26;
    const double h = cell.size.height - 50;
    // Values from −10 to 150 fit every setting shown.
    auto toPoint = [&](double t, double v) {
        return VLXPoint{x0 + t / seconds * w, top + (150 - v) / 160 * h};
    };
    context.saveGState();
    context.setFillColor(VLXColor::colorWithWhite(0.97, 1));
    context.fillRect(cell);
    context.setStrokeColor(VLXColor::colorWithWhite(0.7, 1));
    context.setLineWidth(0.5);
    for (double v : {0.0, 100.0}) {
        context.moveToPoint(toPoint(0, v));
        context.addLineToPoint(toPoint(seconds, v));
        context.strokePath();
    }
    for (double s = 1; s <= seconds; ++s) {
        context.moveToPoint(toPoint(s, -4));
        context.addLineToPoint(toPoint(s, 4));
        context.strokePath();
    }
    context.setStrokeColor(VLXColor::colorWithRed(0.15, 0.35, 0.7, 1));
    context.setLineWidth(1.25);
    for (std::size_t k = 0; k < frames.size(); ++k) {
        const double t = static_cast<double>(k) * 0.001;
        if (t > seconds) {
            break;
        }
        const VLXPoint p = toPoint(t, frames[k].doubleValue());
        if (k == 0) {
            context.moveToPoint(p);
        } else {
            context.addLineToPoint(p);
        }
    }
    context.strokePath();
    const double end = std::min(animation->duration(), seconds);
    context.setStrokeColor(VLXColor::colorWithRed(0.85, 0.3, 0.1, 1));
    context.moveToPoint(toPoint(end, -10));
    context.addLineToPoint(toPoint(end, 150));
    context.strokePath();
    context.restoreGState();
    VLXStringDrawAtPoint(context, describe(setting), {cell.origin.x + 6, cell.origin.y + 5},
                         label(11));
    char info[96];
    std::snprintf(info, sizeof info, "%zu frames, %.3f s", frames.size(), animation->duration());
    VLXStringDrawAtPoint(context, info, {cell.origin.x + 6, cell.origin.y + cell.size.height - 20},
                         label(9, VLXColor::colorWithWhite(0.35, 1)));
    VLXStringDrawAtPoint(context, "100", {cell.origin.x + 4, toPoint(0, 100).y - 6}, label(8));
    VLXStringDrawAtPoint(context, "0", {cell.origin.x + 16, toPoint(0, 0).y - 6}, label(8));
}

// Frames of layers moved by point springs: each row is one setting, each column one moment.
std::string drawStrips(const std::filesystem::path& outputDirectory) {
    const double laneWidth = 400;
    // The target leaves room for the overshoot of the lightly damped springs.
    const double kTarget = 120;
    const double laneHeight = 22;
    const int columns = 5;
    const double times[columns] = {0, 0.15, 0.3, 0.6, 1.2};
    const std::size_t rows = std::size(kSettings);
    auto context = VLXGraphicsContext::createBitmap(
        {120 + columns * (laneWidth / 2 + 8), 24 + rows * (laneHeight + 6)}, kScale);
    context->setFillColor(VLXColor::whiteColor());
    context->fillRect({{0, 0}, context->size()});

    const bool wasManual = VLXClock::isManual();
    const double start = 20000;
    VLXClock::setManual(start);
    VLXRunLoop::main().runOnce();
    auto root = VLXLayer::create();
    std::vector<std::shared_ptr<VLXLayer>> dots;
    vlx_transactionByDisablingActions([&] {
        root->setBounds({{0, 0}, {laneWidth / 2, rows * (laneHeight + 6)}});
        root->setPosition({laneWidth / 4, rows * (laneHeight + 6) / 2});
        for (std::size_t i = 0; i < rows; ++i) {
            auto dot = VLXLayer::create();
            dot->setBounds({{0, 0}, {10, 10}});
            dot->setCornerRadius(5);
            dot->setBackgroundColor(VLXColor::colorWithHue(0.08 + 0.15 * i, 0.7, 0.85, 1));
            dot->setPosition({10, i * (laneHeight + 6) + laneHeight / 2});
            root->addSublayer(dot);
            dots.push_back(dot);
        }
    });
    VLXRunLoop::main().runOnce();
    for (std::size_t i = 0; i < rows; ++i) {
        const VLXPoint from = dots[i]->position();
        const VLXPoint to{kTarget, from.y};
        auto move =
            spring(kSettings[i], VLXValue::valueWithPoint(from), VLXValue::valueWithPoint(to));
        dots[i]->addAnimation(move, "spring");
        // The model moves to the target at once, so the layer stays there after the spring.
        vlx_transactionByDisablingActions([&] { dots[i]->setPosition(to); });
    }
    VLXRunLoop::main().runOnce();
    for (int c = 0; c < columns; ++c) {
        VLXClock::setManual(start + times[c]);
        const double x = 120 + c * (laneWidth / 2 + 8);
        context->saveGState();
        context->translateCTM(x, 20);
        for (std::size_t i = 0; i < rows; ++i) {
            context->setFillColor(VLXColor::colorWithWhite(0.93, 1));
            context->fillRect({{0, i * (laneHeight + 6)}, {laneWidth / 2, laneHeight}});
            context->setFillColor(VLXColor::colorWithRed(0.85, 0.3, 0.1, 0.5));
            context->fillRect({{kTarget - 1, i * (laneHeight + 6)}, {2, laneHeight}});
        }
        VLXCompositor::render(*root, *context);
        context->restoreGState();
        char text[32];
        std::snprintf(text, sizeof text, "t = %.2f s", times[c]);
        VLXStringDrawAtPoint(*context, text, {x, 4}, label(9));
    }
    for (std::size_t i = 0; i < rows; ++i) {
        VLXStringDrawAtPoint(*context, kSettings[i].name, {6, 20 + i * (laneHeight + 6) + 5},
                             label(9));
    }
    VLXClock::setManual(start + 60);
    VLXRunLoop::main().runOnce();
    if (!wasManual) {
        VLXClock::setReal();
    }
    return galleryFigure(outputDirectory, "springs-strip.png", *context,
                         "Layers moved by point springs (one row per setting), presented at five "
                         "moments and rendered by the compositor; the orange mark is the target.");
}

}  // namespace

GalleryPage makeSpringsPage(const std::filesystem::path& outputDirectory) {
    const int columns = 3;
    const double cellW = 260;
    const double cellH = 170;
    const std::size_t count = std::size(kSettings);
    const double rows = static_cast<double>((count + columns - 1) / columns);
    auto context = VLXGraphicsContext::createBitmap({columns * cellW, rows * cellH}, kScale);
    context->setFillColor(VLXColor::whiteColor());
    context->fillRect({{0, 0}, context->size()});
    for (std::size_t i = 0; i < count; ++i) {
        const double x = static_cast<double>(i % columns) * cellW;
        const double y = static_cast<double>(i / columns) * cellH;
        drawPlot(*context, {{x + 3, y + 3}, {cellW - 6, cellH - 6}}, kSettings[i], 4.5);
    }
    GalleryPage page;
    page.id = "springs";
    page.title = "Spring animations";
    page.summary = "Damped springs of several settings as value plots and moving layers.";
    page.bodyHTML =
        "<p>Each plot shows every key frame of a spring from 0 to 100 (one per millisecond) over "
        "the first 4.5 s (ticks every second); grey lines mark 0 and the target, the orange line "
        "the end of the "
        "animation (frames × 0.001 s).</p>\n" +
        galleryFigure(outputDirectory, "springs-plots.png", *context, "Value over time") +
        drawStrips(outputDirectory);
    return page;
}
