#include <VelmarCoreUI/Utilities/VLXViewLayoutHelpers.h>

#include <cmath>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/VLXCompositor.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutAnchor.h>
#include <VelmarCoreUI/Platform/Views/VLXLayoutConstraint.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>

namespace {

// All or nothing: one missing constraint empties the list.
VLXLayoutConstraints allOrNone(VLXLayoutConstraints constraints) {
    for (const auto& constraint : constraints) {
        if (!constraint) {
            return {};
        }
    }
    return constraints;
}

}  // namespace

VLXLayoutConstraints vlx_constraintsByCenteringInView(const VLXView& view, const VLXView* other) {
    if (!other) {
        return {};
    }
    return allOrNone({
        view.centerXAnchor()->constraintEqualToAnchor(other->centerXAnchor()),
        view.centerYAnchor()->constraintEqualToAnchor(other->centerYAnchor()),
    });
}

VLXLayoutConstraints vlx_constraintsByPinningToEdgesOfView(const VLXView& view,
                                                           const VLXView* other) {
    return vlx_constraintsByPinningToEdgesOfView(view, other, VLXEdgeInsetsZero);
}

VLXLayoutConstraints vlx_constraintsByPinningToEdgesOfView(const VLXView& view,
                                                           const VLXView* other, double inset) {
    return vlx_constraintsByPinningToEdgesOfView(view, other,
                                                 VLXEdgeInsetsMake(inset, inset, inset, inset));
}

VLXLayoutConstraints vlx_constraintsByPinningToEdgesOfView(const VLXView& view,
                                                           const VLXView* other,
                                                           VLXEdgeInsets insets) {
    if (!other) {
        return {};
    }
    // Anchors of a view that does not live in a shared_ptr are nil.
    auto top = view.topAnchor();
    auto left = view.leftAnchor();
    auto bottom = view.bottomAnchor();
    auto right = view.rightAnchor();
    if (!top || !left || !bottom || !right) {
        return {};
    }
    return allOrNone({
        top->constraintEqualToAnchor(other->topAnchor(), insets.top),
        left->constraintEqualToAnchor(other->leftAnchor(), insets.left),
        bottom->constraintEqualToAnchor(other->bottomAnchor(), insets.bottom),
        right->constraintEqualToAnchor(other->rightAnchor(), insets.right),
    });
}

VLXLayoutConstraints vlx_constraintsBySettingDimensionsToSize(const VLXView& view, VLXSize size) {
    auto width = view.widthAnchor();
    auto height = view.heightAnchor();
    if (!width || !height) {
        return {};
    }
    return allOrNone({
        width->constraintEqualToConstant(size.width),
        height->constraintEqualToConstant(size.height),
    });
}

std::shared_ptr<VLXImage> vlx_screenshot(VLXView& view) {
    const VLXRect bounds = view.bounds();
    if (!std::isfinite(bounds.size.width) || !std::isfinite(bounds.size.height) ||
        bounds.size.width <= 0 || bounds.size.height <= 0) {
        return nullptr;
    }
    view.layoutIfNeeded();
    const auto& root = view.layer();
    root->displayTreeIfNeeded();

    // The compositor places the root as its superlayer would: position, transform, anchor and
    // bounds origin. The screenshot wants the bounds at the image's origin, so the context
    // starts with the inverse of everything but the bounds origin, read from what the
    // compositor will draw (the presentation while the root animates).
    std::shared_ptr<VLXLayer> presentation =
        root->hasAnimations() ? root->presentationLayer() : nullptr;
    const VLXLayer& drawn = presentation ? *presentation : *root;
    const VLXRect drawnBounds = VLXRectStandardize(drawn.bounds());
    const VLXPoint anchor = drawn.anchorPoint();
    const VLXPoint position = drawn.position();
    const VLXAffineTransform transform = VLXTransform3DGetAffineTransform(drawn.transform());
    const double determinant = transform.a * transform.d - transform.b * transform.c;

    VLXGraphicsBeginImageContextWithOptions(bounds.size, false, VLXScreen::mainScreen()->scale());
    VLXGraphicsContext* context = VLXGraphicsGetCurrentContext();
    if (!context) {
        VLXGraphicsEndImageContext();
        return nullptr;
    }
    const bool placeable = std::isfinite(determinant) && determinant != 0 &&
                           std::isfinite(position.x) && std::isfinite(position.y) &&
                           std::isfinite(anchor.x) && std::isfinite(anchor.y);
    if (placeable) {
        context->translateCTM(anchor.x * drawnBounds.size.width,
                              anchor.y * drawnBounds.size.height);
        context->concatCTM(VLXAffineTransformInvert(transform));
        context->translateCTM(-position.x, -position.y);
        VLXCompositor::render(*root, *context);
    }
    auto image = VLXGraphicsGetImageFromCurrentImageContext();
    VLXGraphicsEndImageContext();
    return image;
}

void vlx_debug(const VLXView&) {}
