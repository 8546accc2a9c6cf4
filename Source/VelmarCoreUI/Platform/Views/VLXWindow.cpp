#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

#include <cmath>
#include <memory>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Input/Private/VLXTouchDispatch.h>
#include <VelmarCoreUI/Platform/Layers/VLXCompositor.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>
#include <VelmarCoreUI/Platform/Views/Private/VLXViewInternal.h>

namespace {

double cleanInset(double v) {
    return std::isfinite(v) && v > 0 ? v : 0;
}

// The size a frame is rendered at: the bounds' standardised size, or nothing when it cannot
// make a picture.
std::optional<VLXSize> renderSize(const VLXRect& bounds) {
    const VLXSize size = VLXRectStandardize(bounds).size;
    if (!(size.width > 0) || !(size.height > 0) || !std::isfinite(size.width) ||
        !std::isfinite(size.height)) {
        return std::nullopt;
    }
    return size;
}

void runTurnUnlessInOne() {
    VLXRunLoop& loop = VLXRunLoop::main();
    if (!loop.isInTurn()) {
        loop.runOnce();
    }
}

}  // namespace

VLXWindow::VLXWindow() = default;
VLXWindow::~VLXWindow() = default;

std::shared_ptr<VLXWindow> VLXWindow::create() {
    return makeWithFrame<VLXWindow>(VLXScreen::mainScreen()->bounds());
}

std::shared_ptr<VLXWindow> VLXWindow::createWithFrame(const VLXRect& frame) {
    return makeWithFrame<VLXWindow>(frame);
}

void VLXWindow::initWithFrame(const VLXRect& frame) {
    VLXViewAccess::markAsWindow(*this);
    m_screen = VLXScreen::mainScreen();
    m_compositor = VLXCompositor::create();
    m_appliedScale = m_screen->scale();
    VLXView::initWithFrame(frame);
}

void VLXWindow::setScreen(std::shared_ptr<VLXScreen> screen) {
    if (!screen) {
        screen = VLXScreen::mainScreen();
    }
    if (screen == m_screen) {
        return;
    }
    m_screen = std::move(screen);
    m_appliedScale = m_screen->scale();
    VLXViewAccess::applyContentsScale(*this, m_appliedScale);
    m_compositor->invalidate();
}

void VLXWindow::setSafeAreaInsets(const VLXEdgeInsets& insets) {
    const VLXEdgeInsets clean{cleanInset(insets.top), cleanInset(insets.left),
                              cleanInset(insets.bottom), cleanInset(insets.right)};
    if (clean == m_safeAreaInsets) {
        return;
    }
    m_safeAreaInsets = clean;
    setNeedsLayout();
}

std::shared_ptr<VLXImage> VLXWindow::renderFrame() {
    auto self = sharedFrom<VLXWindow>();  // a callback of the turn may drop the last owner
    runTurnUnlessInOne();
    const std::optional<VLXSize> size = renderSize(bounds());
    if (!size) {
        return nullptr;
    }
    // The screen's scale may have been changed in place since it was set: follow it.
    if (m_screen->scale() != m_appliedScale) {
        m_appliedScale = m_screen->scale();
        VLXViewAccess::applyContentsScale(*this, m_appliedScale);
    }
    return m_compositor->renderFrame(*layer(), *size, m_screen->scale());
}

std::string VLXWindow::renderSVG() {
    auto self = sharedFrom<VLXWindow>();
    runTurnUnlessInOne();
    const std::optional<VLXSize> size = renderSize(bounds());
    return size ? VLXCompositor::renderSVG(*layer(), *size) : std::string();
}

std::string VLXWindow::renderPDF() {
    auto self = sharedFrom<VLXWindow>();
    runTurnUnlessInOne();
    const std::optional<VLXSize> size = renderSize(bounds());
    return size ? VLXCompositor::renderPDF(*layer(), *size) : std::string();
}

std::shared_ptr<VLXImage> VLXWindow::snapshot() {
    auto self = sharedFrom<VLXWindow>();
    // The turn's order: layout and display first, then the commit, so that layers placed in
    // layout commit with everything else and animations added meanwhile show from their start.
    layoutIfNeeded();
    layer()->displayTreeIfNeeded();
    VLXTransaction::flush();
    const std::optional<VLXSize> size = renderSize(bounds());
    if (!size) {
        return nullptr;
    }
    std::shared_ptr<VLXImage> image;
    VLXGraphicsBeginImageContextWithOptions(*size, false, m_screen->scale());
    if (VLXGraphicsContext* context = VLXGraphicsGetCurrentContext()) {
        VLXCompositor::render(*layer(), *context);
        image = VLXGraphicsGetImageFromCurrentImageContext();
    }
    VLXGraphicsEndImageContext();
    return image;
}

void VLXWindow::sendEvent(const VLXEvent& event) {
    if (!m_dispatch) {
        m_dispatch = std::make_unique<VLXTouchDispatch>(*this);
    }
    m_dispatch->sendEvent(event);
}
