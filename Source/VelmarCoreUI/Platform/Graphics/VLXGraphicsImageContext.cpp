#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>

#include <cmath>
#include <vector>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>

namespace {

struct StackEntry {
    // Owned for image contexts (nil when the requested size was unusable); null for pushed ones.
    std::shared_ptr<VLXGraphicsContext> owned;
    VLXGraphicsContext* context = nullptr;
    bool isImageContext = false;
};

std::vector<StackEntry>& contextStack() {
    thread_local std::vector<StackEntry> stack;
    return stack;
}

}  // namespace

void VLXGraphicsBeginImageContextWithOptions(VLXSize size, bool opaque, double scale) {
    if (!(std::isfinite(scale) && scale > 0)) {
        scale = VLXScreen::mainScreen()->scale();
    }
    StackEntry entry;
    entry.isImageContext = true;
    entry.owned = VLXGraphicsContext::createBitmap(size, scale, opaque);
    entry.context = entry.owned.get();
    contextStack().push_back(std::move(entry));
}

void VLXGraphicsBeginImageContext(VLXSize size) {
    VLXGraphicsBeginImageContextWithOptions(size, false, 1);
}

VLXGraphicsContext* VLXGraphicsGetCurrentContext() {
    const auto& stack = contextStack();
    return stack.empty() ? nullptr : stack.back().context;
}

std::shared_ptr<VLXImage> VLXGraphicsGetImageFromCurrentImageContext() {
    const auto& stack = contextStack();
    if (stack.empty() || !stack.back().isImageContext || !stack.back().owned) {
        return nullptr;
    }
    return stack.back().owned->makeImage();
}

void VLXGraphicsEndImageContext() {
    auto& stack = contextStack();
    if (!stack.empty() && stack.back().isImageContext) {
        stack.pop_back();
    }
}

void VLXGraphicsPushContext(VLXGraphicsContext& context) {
    StackEntry entry;
    entry.context = &context;
    contextStack().push_back(std::move(entry));
}

void VLXGraphicsPopContext() {
    auto& stack = contextStack();
    if (!stack.empty() && !stack.back().isImageContext) {
        stack.pop_back();
    }
}
