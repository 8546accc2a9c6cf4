// Gallery page for the controls: labels in every alignment, line count, break mode and
// shrink setting; activity indicators of each style as frame strips on the manual clock; a
// scroll view at a few offsets. Everything is drawn through window snapshots.
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Views/VLXActivityIndicatorView.h>
#include <VelmarCoreUI/Platform/Views/VLXLabel.h>
#include <VelmarCoreUI/Platform/Views/VLXScrollView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include "GalleryPage.h"

namespace {

constexpr double kScale = 2;

std::shared_ptr<VLXWindow> makeWindow(VLXSize size, VLXColor background) {
    auto window = VLXWindow::createWithFrame({{0, 0}, size});
    auto screen = VLXScreen::create();
    screen->setScale(kScale);
    window->setScreen(screen);
    window->setBackgroundColor(background);
    return window;
}

std::string figureOfImage(const std::filesystem::path& out, const std::string& fileName,
                          const std::shared_ptr<VLXImage>& image, const std::string& caption) {
    const VLXSize size = image ? image->size() : VLXSize{1, 1};
    auto bitmap = VLXGraphicsContext::createBitmap(size, kScale);
    if (image) {
        bitmap->drawImage(*image, {{0, 0}, size});
    }
    return galleryFigure(out, fileName, *bitmap, caption);
}

// One cell of the label grid: a light frame so the bounds show, the label inside.
std::shared_ptr<VLXLabel> addLabelCell(VLXView& parent, VLXRect frame, const std::string& text) {
    auto cell = VLXView::createWithFrame(frame);
    cell->setBackgroundColor(VLXColor::colorWithRed(0.9, 0.94, 1, 1));
    auto label = VLXLabel::createWithFrame({{4, 4}, {frame.size.width - 8, frame.size.height - 8}});
    label->setBackgroundColor(VLXColor::whiteColor());
    label->setText(text);
    cell->addSubview(label);
    parent.addSubview(cell);
    return label;
}

std::string labelFigures(const std::filesystem::path& out) {
    std::string html;
    const std::string sentence = "Pack my box with five dozen liquor jugs";

    {  // Alignment and shadow.
        auto window = makeWindow({480, 150}, VLXColor::whiteColor());
        const char* names[] = {"Left", "Centre", "Right"};
        for (int i = 0; i < 3; ++i) {
            auto label =
                addLabelCell(*window, {{8, 8 + 46.0 * i}, {228, 42}}, std::string(names[i]));
            label->setTextAlignment(static_cast<VLXTextAlignment>(i));
            auto shadowed =
                addLabelCell(*window, {{244, 8 + 46.0 * i}, {228, 42}}, std::string(names[i]));
            shadowed->setTextAlignment(static_cast<VLXTextAlignment>(i));
            shadowed->setFont(VLXFont::boldSystemFontOfSize(20));
            shadowed->setTextColor(VLXColor::colorWithRed(0.1, 0.3, 0.7, 1));
            shadowed->setShadowColor(VLXColor::colorWithWhite(0, 0.35));
            shadowed->setShadowOffset({1, 2});
        }
        html += figureOfImage(out, "controls-label-alignment.png", window->snapshot(),
                              "Alignment 0, 1, 2 (left, centre, right), vertically centred; on "
                              "the right in bold 20 pt with a shadow offset (1, 2).");
    }
    {  // Break modes on one line.
        auto window = makeWindow({480, 210}, VLXColor::whiteColor());
        const std::pair<VLXLineBreakMode, const char*> modes[] = {
            {VLXLineBreakMode::ByTruncatingTail, "tail"},
            {VLXLineBreakMode::ByTruncatingHead, "head"},
            {VLXLineBreakMode::ByTruncatingMiddle, "middle"},
            {VLXLineBreakMode::ByClipping, "clip"},
            {VLXLineBreakMode::ByWordWrapping, "word wrap (one line)"},
        };
        double y = 8;
        for (const auto& [mode, name] : modes) {
            auto label = addLabelCell(*window, {{8, y}, {300, 36}}, sentence);
            label->setLineBreakMode(mode);
            auto caption = VLXLabel::createWithFrame({{320, y}, {150, 36}});
            caption->setText(std::string(name));
            caption->setFont(VLXFont::systemFontOfSize(13));
            caption->setTextColor(VLXColor::darkGrayColor());
            window->addSubview(caption);
            y += 40;
        }
        html += figureOfImage(out, "controls-label-break-modes.png", window->snapshot(),
                              "One line in 292 pt: truncating the tail (the default), the head, "
                              "the middle; clipping; word wrapping cut to its first line.");
    }
    {  // Line counts and shrinking.
        auto window = makeWindow({480, 250}, VLXColor::whiteColor());
        const std::string longText = sentence + ". " + sentence + ". " + sentence + ".";
        const VLXInteger lines[] = {1, 2, 0};
        for (int i = 0; i < 3; ++i) {
            auto label = addLabelCell(*window, {{8 + 156.0 * i, 8}, {150, 130}}, longText);
            label->setNumberOfLines(lines[i]);
            label->setLineBreakMode(VLXLineBreakMode::ByWordWrapping);
            label->setFont(VLXFont::systemFontOfSize(14));
        }
        const double factors[] = {0, 0.5, 0.8};
        for (int i = 0; i < 3; ++i) {
            auto label = addLabelCell(*window, {{8 + 156.0 * i, 150}, {150, 40}}, sentence);
            label->setAdjustsFontSizeToFitWidth(true);
            label->setMinimumScaleFactor(factors[i]);
        }
        auto plain = addLabelCell(*window, {{8, 200}, {150, 40}}, sentence);
        (void)plain;
        html += figureOfImage(
            out, "controls-label-lines-shrink.png", window->snapshot(),
            "Top: word wrapping with 1, 2 and 0 (unlimited) lines, centred vertically in "
            "122 pt. Middle: shrink to fit with minimum scale factors 0, 0.5 and 0.8 (the last "
            "stops shrinking and truncates). Bottom: the same text without shrinking.");
    }
    return html;
}

std::string indicatorFigures(const std::filesystem::path& out) {
    constexpr int kFrames = 8;
    constexpr double kCell = 56;
    VLXClock::setManual(0);
    auto window = makeWindow({kCell * kFrames, kCell * 3}, VLXColor::whiteColor());
    const VLXActivityIndicatorViewStyle styles[] = {VLXActivityIndicatorViewStyle::WhiteLarge,
                                                    VLXActivityIndicatorViewStyle::White,
                                                    VLXActivityIndicatorViewStyle::Gray};
    std::vector<std::shared_ptr<VLXActivityIndicatorView>> indicators;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < kFrames; ++column) {
            auto backdrop =
                VLXView::createWithFrame({{column * kCell, row * kCell}, {kCell, kCell}});
            backdrop->setBackgroundColor(row < 2 ? VLXColor::colorWithWhite(0.25, 1)
                                                 : VLXColor::colorWithWhite(0.95, 1));
            auto indicator = VLXActivityIndicatorView::createWithFrame({{0, 0}, {kCell, kCell}});
            indicator->setActivityIndicatorViewStyle(styles[row]);
            backdrop->addSubview(indicator);
            window->addSubview(backdrop);
            indicators.push_back(indicator);
        }
    }
    // Each column starts its wheel one step (1/12 s) earlier than the one to its right, so one
    // frame shows the turn as a strip.
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < kFrames; ++column) {
            VLXClock::setManual(1 - column / 12.0);
            indicators[row * kFrames + column]->startAnimating();
        }
    }
    VLXClock::setManual(1.001);
    auto image = window->renderFrame();
    for (auto& indicator : indicators) {
        indicator->stopAnimating();
    }
    VLXClock::setReal();
    return figureOfImage(out, "controls-activity-indicators.png", image,
                         "Styles 0 (white large, 37 pt), 1 (white, 20 pt) and 2 (grey, 20 pt), "
                         "each centred in a 56 pt frame; left to right, 0 to 7 twelfths of a "
                         "second after starting.");
}

std::string scrollFigures(const std::filesystem::path& out) {
    std::string html;
    const VLXPoint offsets[] = {{0, 0}, {60, 40}, {-20, -20}, {160, 120}};
    std::string strip;
    auto window = makeWindow({4 * 118.0, 118}, VLXColor::whiteColor());
    for (int i = 0; i < 4; ++i) {
        auto frame = VLXView::createWithFrame({{4 + 118.0 * i, 4}, {110, 110}});
        frame->setBackgroundColor(VLXColor::darkGrayColor());
        auto scrollView = VLXScrollView::createWithFrame({{2, 2}, {106, 106}});
        scrollView->setBackgroundColor(VLXColor::colorWithWhite(0.97, 1));
        scrollView->setContentSize({240, 240});
        for (int y = 0; y < 6; ++y) {
            for (int x = 0; x < 6; ++x) {
                auto tile = VLXView::createWithFrame({{x * 40.0 + 2, y * 40.0 + 2}, {36, 36}});
                tile->setBackgroundColor(VLXColor::colorWithHue((x + y) / 12.0, 0.5, 0.95, 1));
                auto label = VLXLabel::createWithFrame({{0, 0}, {36, 36}});
                label->setText(std::to_string(y * 6 + x));
                label->setTextAlignment(VLXTextAlignment::Center);
                label->setFont(VLXFont::systemFontOfSize(12));
                tile->addSubview(label);
                scrollView->addSubview(tile);
            }
        }
        scrollView->setContentOffset(offsets[i]);
        frame->addSubview(scrollView);
        window->addSubview(frame);
    }
    html += figureOfImage(out, "controls-scroll-offsets.png", window->snapshot(),
                          "One 240 × 240 pt content of numbered tiles in a 106 pt scroll view "
                          "at offsets (0, 0), (60, 40), (−20, −20) (overshoot is not clamped) "
                          "and (160, 120); the content is clipped to the bounds.");
    return html;
}

}  // namespace

GalleryPage makeControlsPage(const std::filesystem::path& outputDirectory) {
    GalleryPage page;
    page.id = "controls";
    page.title = "Controls";
    page.summary = "Labels, activity indicators and a scroll view, drawn by window snapshots";
    page.bodyHTML = "<h2>Labels</h2>\n" + labelFigures(outputDirectory) +
                    "<h2>Activity indicators</h2>\n" + indicatorFigures(outputDirectory) +
                    "<h2>Scroll view</h2>\n" + scrollFigures(outputDirectory);
    return page;
}
