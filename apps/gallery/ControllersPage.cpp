// Gallery page for view controllers and constraints: the constraints the layout helpers build,
// a screenshot of a small view tree, and the safe-area guides of windows with insets.
#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutAnchor.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutConstraint.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutGuide.h>
#include <VelmarCoreUI/Platform/Views/VLXNavigationController.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Platform/Views/VLXViewController.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include <VelmarCoreUI/Utilities/VLXViewControllerHelpers.h>
#include <VelmarCoreUI/Utilities/VLXViewLayoutHelpers.h>
#include "GalleryPage.h"

namespace {

constexpr double kScale = 2;

VLXColor hue(double h, double alpha = 1) {
    return VLXColor::colorWithHue(h, 0.6, 0.9, alpha);
}

std::shared_ptr<VLXView> box(VLXView* parent, VLXRect frame, std::optional<VLXColor> color) {
    auto view = VLXView::createWithFrame(frame);
    view->setBackgroundColor(std::move(color));
    if (parent) {
        parent->addSubview(view);
    }
    return view;
}

// Descriptions name objects by address; the page names them by role instead.
std::string named(std::string text, const std::map<const void*, std::string>& names) {
    for (const auto& [address, name] : names) {
        const std::string key = VLXStringWithFormat("%p", address);
        for (std::size_t at = text.find(key); at != std::string::npos; at = text.find(key, at)) {
            text.replace(at, key.size(), name);
            at += name.size();
        }
    }
    return text;
}

std::string constraintList(const std::string& heading, const VLXLayoutConstraints& constraints,
                           const std::map<const void*, std::string>& names) {
    std::string html = "<h3>" + galleryEscapeHTML(heading) + "</h3>\n<pre>";
    if (constraints.empty()) {
        html += "(none)\n";
    }
    for (const auto& constraint : constraints) {
        html += galleryEscapeHTML(named(constraint->description(), names)) + "\n";
    }
    return html + "</pre>\n";
}

std::string constraintsSection() {
    auto card = VLXView::createWithFrame(VLXRectMake(0, 0, 200, 120));
    auto badge = VLXView::create();
    const std::map<const void*, std::string> names = {{card.get(), "card"}, {badge.get(), "badge"}};
    std::string html;
    html += constraintList("vlx_constraintsByCenteringInView(badge, card)",
                           vlx_constraintsByCenteringInView(*badge, card.get()), names);
    html += constraintList("vlx_constraintsByPinningToEdgesOfView(badge, card)",
                           vlx_constraintsByPinningToEdgesOfView(*badge, card.get()), names);
    html += constraintList(
        "vlx_constraintsByPinningToEdgesOfView(badge, card, {8, 12, 8, 12}) — the insets are "
        "added on every edge, so bottom and right reach outside the card",
        vlx_constraintsByPinningToEdgesOfView(*badge, card.get(), VLXEdgeInsetsMake(8, 12, 8, 12)),
        names);
    html += constraintList("vlx_constraintsByPinningToEdgesOfView(badge, card, -4)",
                           vlx_constraintsByPinningToEdgesOfView(*badge, card.get(), -4), names);
    html += constraintList("vlx_constraintsBySettingDimensionsToSize(badge, {44, 24})",
                           vlx_constraintsBySettingDimensionsToSize(*badge, VLXSizeMake(44, 24)),
                           names);
    html += constraintList("vlx_constraintsByCenteringInView(badge, nil)",
                           vlx_constraintsByCenteringInView(*badge, nullptr), names);
    html += constraintList("vlx_constraintsByPinningToEdgesOfView(badge, card, NaN)",
                           vlx_constraintsByPinningToEdgesOfView(*badge, card.get(), std::nan("")),
                           names);

    // The safe-area anchors with and without the fallback.
    auto controller = VLXViewController::create();
    std::map<const void*, std::string> controllerNames = {
        {controller->view().get(), "controller.view"}};
    controllerNames[controller->view()->safeAreaLayoutGuide().get()] = "guide";
    controllerNames[controller->topLayoutGuide().get()] = "guide";
    controllerNames[controller->bottomLayoutGuide().get()] = "guide";
    html += "<h3>Safe-area anchors of a view controller</h3>\n<pre>";
    for (const char* version : {"17.0", "10.3"}) {
        VLXScopedSystemVersion scoped(version);
        html += galleryEscapeHTML(VLXStringWithFormat(
            "system %s: top %s, bottom %s\n", version,
            named(vlx_topSafeAreaLayoutGuideWithFallback(*controller)->itemDescription(),
                  controllerNames)
                .c_str(),
            named(vlx_bottomSafeAreaLayoutGuideWithFallback(*controller)->itemDescription(),
                  controllerNames)
                .c_str()));
    }
    auto presenter = VLXViewController::create();
    auto root = VLXViewController::create();
    auto navigation = VLXNavigationController::createWithRootViewController(root);
    html += VLXStringWithFormat("vlx_isModal(root of a navigation controller): %s\n",
                                vlx_isModal(*root) ? "YES" : "NO");
    presenter->presentViewController(navigation);
    html += VLXStringWithFormat("… once the navigation controller is presented: %s\n",
                                vlx_isModal(*root) ? "YES" : "NO");
    return html + "</pre>\n";
}

// Draws `image` at its size into a fresh bitmap for a figure.
std::string imageFigure(const std::filesystem::path& out, const std::string& file,
                        const std::shared_ptr<VLXImage>& image, const std::string& caption) {
    if (!image) {
        return "<p>" + galleryEscapeHTML(file) + ": no image</p>\n";
    }
    auto context = VLXGraphicsContext::createBitmap(image->size(), kScale);
    context->drawImage(*image, VLXRectMake(0, 0, image->size().width, image->size().height));
    return galleryFigure(out, file, *context, caption);
}

std::string screenshotSection(const std::filesystem::path& out) {
    // A card placed and turned inside a larger scene; the screenshot shows it upright, alone.
    auto scene = box(nullptr, VLXRectMake(0, 0, 320, 200), VLXColor::colorWithWhite(0.85, 1));
    auto card = box(scene.get(), VLXRectMake(60, 40, 200, 120), VLXColor::colorWithWhite(1, 1));
    card->layer()->setCornerRadius(14);
    card->layer()->setBorderWidth(2);
    card->layer()->setBorderColor(hue(0.6));
    box(card.get(), VLXRectMake(16, 16, 48, 48), hue(0.02));
    box(card.get(), VLXRectMake(76, 16, 108, 14), hue(0.6, 0.8));
    box(card.get(), VLXRectMake(76, 38, 80, 10), hue(0.6, 0.4));
    auto badge = box(card.get(), VLXRectMake(140, 80, 44, 24), hue(0.35));
    badge->layer()->setCornerRadius(12);
    card->setTransform(VLXAffineTransformMakeRotation(-0.2));

    std::string html = "<div class=\"columns\">\n";
    html += imageFigure(out, "controllers-scene.png", vlx_screenshot(*scene),
                        "vlx_screenshot of the whole scene (the card is turned in it)");
    html += imageFigure(out, "controllers-card.png", vlx_screenshot(*card),
                        "vlx_screenshot of the card alone: its bounds, upright, transparent "
                        "outside the rounded corners");
    return html + "</div>\n";
}

std::string safeAreaFigure(const std::filesystem::path& out, const std::string& file, VLXSize size,
                           VLXEdgeInsets insets, const std::string& caption) {
    auto window = VLXWindow::createWithFrame(VLXRectMake(0, 0, size.width, size.height));
    window->setBackgroundColor(VLXColor::colorWithWhite(0.95, 1));
    window->setSafeAreaInsets(insets);
    auto controller = VLXViewController::create();
    controller->view()->setFrame(window->bounds());
    controller->view()->setBackgroundColor(hue(0.55, 0.15));
    window->addSubview(controller->view());
    // A panel across the top edge: its own safe area is what the window's insets leave of it.
    auto panel = box(controller->view().get(),
                     VLXRectMake(size.width * 0.1, 10, size.width * 0.8, 60), hue(0.1, 0.35));

    auto context = VLXGraphicsContext::createBitmap(size, kScale);
    auto shot = vlx_screenshot(*window);
    if (shot) {
        context->drawImage(*shot, VLXRectMake(0, 0, size.width, size.height));
    }
    // Legacy strips shaded, the safe-area guide outlined, the panel's guide dashed.
    context->setFillColor(VLXColor::colorWithRed(0.9, 0.2, 0.2, 0.25));
    context->fillRect(controller->topLayoutGuide()->layoutFrame());
    context->fillRect(controller->bottomLayoutGuide()->layoutFrame());
    context->setStrokeColor(VLXColor::colorWithRed(0.1, 0.5, 0.1, 1));
    context->setLineWidth(2);
    context->strokeRect(
        VLXRectInset(controller->view()->safeAreaLayoutGuide()->layoutFrame(), 1, 1));
    const VLXRect panelGuide = panel->convertRectToView(panel->safeAreaLayoutGuide()->layoutFrame(),
                                                        controller->view().get());
    const double dash[] = {4, 3};
    context->setLineDash(0, dash);
    context->setStrokeColor(VLXColor::colorWithRed(0.1, 0.2, 0.8, 1));
    context->strokeRect(VLXRectInset(panelGuide, 1, 1));
    return galleryFigure(out, file, *context, caption);
}

}  // namespace

GalleryPage makeControllersPage(const std::filesystem::path& outputDirectory) {
    GalleryPage page;
    page.id = "controllers";
    page.title = "View controllers and constraints";
    page.summary = "Constraint builders, view screenshots, safe-area and legacy layout guides";
    std::string html = "<h2>Constraints the helpers build</h2>\n";
    html +=
        "<p>The builders only make constraints: all are inactive and nothing moves (there is no "
        "solver). Views are named by role in place of their addresses.</p>\n";
    html += constraintsSection();
    html += "<h2>Screenshots</h2>\n" + screenshotSection(outputDirectory);
    html += "<h2>Safe-area guides</h2>\n<div class=\"columns\">\n";
    html += safeAreaFigure(outputDirectory, "controllers-safe-portrait.png", VLXSizeMake(200, 380),
                           VLXEdgeInsetsMake(47, 0, 34, 0),
                           "Portrait window, insets 47 / 0 / 34 / 0: the green outline is the "
                           "controller view's safe-area guide, the red strips its legacy top "
                           "and bottom guides, the dashed blue outline the safe-area guide of "
                           "the orange panel that reaches into the top inset.");
    html += safeAreaFigure(outputDirectory, "controllers-safe-landscape.png", VLXSizeMake(380, 200),
                           VLXEdgeInsetsMake(0, 47, 21, 47),
                           "Landscape window, insets 0 / 47 / 21 / 47: the panel keeps only the "
                           "side insets it lies across.");
    html += "</div>\n";
    page.bodyHTML = html;
    return page;
}
