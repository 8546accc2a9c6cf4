// Gallery page for the easing vocabulary: every easing code's exact curve with the 101 key frames
// its keyframe builder samples, the timing-function form of the codes that have one, and a strip
// of frames of a layer moved by such keyframe animations, rendered by the compositor.
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Animation/VLXEasing.h>
#include <VelmarCoreUI/Animation/VLXKeyframeAnimationBuilders.h>
#include <VelmarCoreUI/Animation/VLXLayerAnimationHelpers.h>
#include <VelmarCoreUI/Animation/VLXTransactionHelpers.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Graphics/VLXFont.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>
#include <VelmarCoreUI/Platform/Layers/VLXCompositor.h>
#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXMediaTimingFunction.h>
#include "GalleryPage.h"

namespace {

constexpr double kScale = 2;

struct Code {
    VLXEasing code;
    const char* name;
};

const Code kCodes[] = {
    {1, "EaseIn"},       {2, "EaseOut"},     {3, "EaseInOut"},   {4, "QuadIn"},
    {5, "QuadOut"},      {6, "QuadInOut"},   {7, "CubicIn"},     {8, "CubicOut"},
    {9, "CubicInOut"},   {10, "QuartIn"},    {11, "QuartOut"},   {12, "QuartInOut"},
    {13, "QuintIn"},     {14, "QuintOut"},   {15, "QuintInOut"}, {16, "SineIn"},
    {17, "SineOut"},     {18, "SineInOut"},  {19, "ExpoIn"},     {20, "ExpoOut"},
    {21, "ExpoInOut"},   {22, "CircIn"},     {23, "CircOut"},    {24, "CircInOut"},
    {25, "ElasticIn"},   {26, "ElasticOut"}, {31, "BounceIn"},   {32, "BounceOut"},
    {33, "BounceInOut"}, {34, "SmoothOut"},
};

const VLXColor kCurveColor = VLXColor::colorWithRed(0.15, 0.35, 0.7, 1);
const VLXColor kTimingColor = VLXColor::colorWithRed(0.9, 0.45, 0.1, 1);
const VLXColor kSampleColor = VLXColor::colorWithRed(0.1, 0.6, 0.3, 1);

VLXTextAttributes label(double size, VLXColor color = VLXColor::blackColor()) {
    VLXTextAttributes attributes;
    attributes.font = VLXFont::systemFontOfSize(size);
    attributes.foregroundColor = color;
    return attributes;
}

// One cell: the unit square (with room for elastic overshoot), the exact curve, the timing
// function's curve where the code has one, and the builder's 101 samples as dots.
void drawCell(VLXGraphicsContext& context, const VLXRect& cell, const Code& code) {
    const double plotX = cell.origin.x + 10;
    const double plotW = cell.size.width - 20;
    const double plotTop = cell.origin.y + 24;
    const double plotH = cell.size.height - 50;
    // y from −0.45 to 1.45, so the elastic curves fit; the frame marks 0 and 1.
    auto toPoint = [&](double t, double y) {
        return VLXPoint{plotX + t * plotW, plotTop + (1.45 - y) / 1.9 * plotH};
    };
    context.saveGState();
    context.setFillColor(VLXColor::colorWithWhite(0.97, 1));
    context.fillRect(cell);
    context.setStrokeColor(VLXColor::colorWithWhite(0.75, 1));
    context.setLineWidth(0.5);
    context.strokeRect({toPoint(0, 1), {plotW, plotH / 1.9}});

    const VLXEasingFunction exact = vlx_animationBlockForEasing(code.code);
    context.setStrokeColor(kCurveColor);
    context.setLineWidth(1.5);
    for (int i = 0; i <= 200; ++i) {
        const double t = i / 200.0;
        const VLXPoint p = toPoint(t, exact(t));
        if (i == 0) {
            context.moveToPoint(p);
        } else {
            context.addLineToPoint(p);
        }
    }
    context.strokePath();

    if (auto timing = vlx_functionWithEasing(code.code)) {
        context.setStrokeColor(kTimingColor);
        context.setLineWidth(1);
        const double dash[] = {3, 2};
        context.setLineDash(0, dash);
        for (int i = 0; i <= 100; ++i) {
            const double t = i / 100.0;
            const VLXPoint p = toPoint(t, timing->y(t));
            if (i == 0) {
                context.moveToPoint(p);
            } else {
                context.addLineToPoint(p);
            }
        }
        context.strokePath();
        context.setLineDash(0, {});
    }

    // The samples of a 0 → 1 keyframe animation, at the times the builder takes them.
    auto animation = vlx_animationWithKeyPath("opacity", 0.0, 1.0, code.code);
    context.setFillColor(kSampleColor);
    const auto& values = animation->values();
    for (std::size_t k = 0; k < values.size(); k += 4) {
        const VLXPoint p = toPoint(static_cast<double>(k) / 101.0, values[k].doubleValue());
        context.fillEllipseInRect({{p.x - 1.5, p.y - 1.5}, {3, 3}});
    }
    context.restoreGState();

    VLXStringDrawAtPoint(context, std::to_string(code.code) + "  " + code.name,
                         {cell.origin.x + 8, cell.origin.y + 6}, label(11));
    VLXStringDrawAtPoint(
        context, vlx_functionWithEasing(code.code) ? "exact + timing function" : "exact only",
        {cell.origin.x + 8, cell.origin.y + cell.size.height - 22},
        label(9, VLXColor::colorWithWhite(0.4, 1)));
}

// Frames of three layers moved left to right by keyframe animations of three easings, through
// the layer presentation on the manual clock and the compositor.
std::string drawStrip(const std::filesystem::path& outputDirectory) {
    const VLXEasing codes[] = {VLXEasingQuadOut, VLXEasingElasticOut, VLXEasingBounceOut};
    const char* names[] = {"QuadOut", "ElasticOut", "BounceOut"};
    const int frames = 9;
    const double laneHeight = 16;
    const double width = 360;
    const double rowHeight = laneHeight * 3 + 6;
    // Room on the right for the elastic curve's overshoot.
    const double kTarget = width - 100;
    auto context = VLXGraphicsContext::createBitmap({width + 90, rowHeight * frames + 6}, kScale);
    context->setFillColor(VLXColor::whiteColor());
    context->fillRect({{0, 0}, context->size()});

    const bool wasManual = VLXClock::isManual();
    const double start = 10000;
    VLXClock::setManual(start);
    VLXRunLoop::main().runOnce();
    auto root = VLXLayer::create();
    std::vector<std::shared_ptr<VLXLayer>> dots;
    vlx_transactionByDisablingActions([&] {
        root->setBounds({{0, 0}, {width, laneHeight * 3}});
        root->setPosition({width / 2, laneHeight * 1.5});
        for (int i = 0; i < 3; ++i) {
            auto dot = VLXLayer::create();
            dot->setBounds({{0, 0}, {12, 12}});
            dot->setCornerRadius(6);
            dot->setBackgroundColor(VLXColor::colorWithHue(0.1 + i * 0.3, 0.7, 0.85, 1));
            dot->setPosition({20, laneHeight * (i + 0.5)});
            root->addSublayer(dot);
            dots.push_back(dot);
        }
    });
    VLXRunLoop::main().runOnce();
    for (int i = 0; i < 3; ++i) {
        auto move = vlx_animationWithKeyPath("position.x", 20.0, kTarget, codes[i]);
        move->setDuration(1);
        vlx_addAnimation(*dots[static_cast<std::size_t>(i)], move, "move");
    }
    VLXRunLoop::main().runOnce();  // commits: the animations begin now
    for (int f = 0; f < frames; ++f) {
        VLXClock::setManual(start + f / double(frames - 1) * 0.999);
        context->saveGState();
        context->translateCTM(80, 6 + f * rowHeight);
        context->setFillColor(VLXColor::colorWithWhite(f % 2 ? 0.96 : 0.92, 1));
        context->fillRect({{0, 0}, {width, laneHeight * 3}});
        context->setFillColor(VLXColor::colorWithRed(0.85, 0.3, 0.1, 0.5));
        context->fillRect({{kTarget - 1, 0}, {2, laneHeight * 3}});
        VLXCompositor::render(*root, *context);
        context->restoreGState();
        VLXStringDrawAtPoint(*context, "t = " + std::to_string(f * 125) + " ms",
                             {6, 6 + f * rowHeight + 18}, label(9));
    }
    VLXClock::setManual(start + 2);
    VLXRunLoop::main().runOnce();
    if (!wasManual) {
        VLXClock::setReal();
    }
    std::string caption = "Three layers moved by 1 s keyframe animations (";
    caption += std::string(names[0]) + ", " + names[1] + ", " + names[2] +
               ", top to bottom of each frame), presented at nine times and rendered by the "
               "compositor; the orange mark is the end value.";
    return galleryFigure(outputDirectory, "easing-strip.png", *context, caption);
}

}  // namespace

GalleryPage makeEasingPage(const std::filesystem::path& outputDirectory) {
    const int columns = 6;
    const double cellW = 150;
    const double cellH = 190;
    const int rows = (static_cast<int>(std::size(kCodes)) + columns - 1) / columns;
    auto context = VLXGraphicsContext::createBitmap({columns * cellW, rows * cellH}, kScale);
    context->setFillColor(VLXColor::whiteColor());
    context->fillRect({{0, 0}, context->size()});
    for (std::size_t i = 0; i < std::size(kCodes); ++i) {
        const double x = static_cast<double>(i % columns) * cellW;
        const double y = static_cast<double>(i / columns) * cellH;
        drawCell(*context, {{x + 3, y + 3}, {cellW - 6, cellH - 6}}, kCodes[i]);
    }
    GalleryPage page;
    page.id = "easing";
    page.title = "Easing curves";
    page.summary =
        "The 30 easing codes with exact curves, their timing functions and keyframe samples.";
    page.bodyHTML =
        "<p>Blue: the exact easing function of each code. Dashed orange: the cubic timing "
        "function of the codes that have one (single-precision control points). Green dots: "
        "every fourth of the 101 key frames that the keyframe builder samples for a change from "
        "0 to 1, placed at the times k/101 where they are taken, so the last one sits just "
        "short of the right edge.</p>\n" +
        galleryFigure(outputDirectory, "easing-curves.png", *context,
                      "Easing codes 1–26 and 31–34") +
        drawStrip(outputDirectory);
    return page;
}
