#include <VelmarCoreUI/Platform/Views/VLXActivityIndicatorView.h>

#include <cmath>
#include <numbers>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>
#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>

namespace {

constexpr int kSpokes = 12;
// A whole turn takes one second: one spoke's step every twelfth of a second.
constexpr double kStepInterval = 1.0 / kSpokes;

VLXActivityIndicatorViewStyle sanitizedStyle(VLXActivityIndicatorViewStyle style) {
    switch (style) {
        case VLXActivityIndicatorViewStyle::WhiteLarge:
        case VLXActivityIndicatorViewStyle::White:
        case VLXActivityIndicatorViewStyle::Gray:
            return style;
    }
    return VLXActivityIndicatorViewStyle::White;
}

// Twelve rounded spokes, the one at twelve o'clock opaque and the others fading
// anticlockwise behind it, so a clockwise turn reads as motion.
std::shared_ptr<VLXImage> makeWheelImage(double side, const VLXColor& color, double scale) {
    auto context = VLXGraphicsContext::createBitmap({side, side}, scale);
    if (!context || !context->isValid()) {
        return nullptr;
    }
    const double centre = side / 2;
    const double inner = side * 0.25;
    const double outer = side * 0.48;
    context->setLineWidth(side * 0.09);
    context->setLineCap(VLXLineCap::Round);
    for (int i = 0; i < kSpokes; ++i) {
        const double angle = 2 * std::numbers::pi * i / kSpokes;
        const double dx = std::sin(angle);
        const double dy = -std::cos(angle);
        // Spoke i sits i steps clockwise of the leading one, so the wheel passed it 12 − i steps
        // ago: the spoke just anticlockwise of the lead is the brightest of the trail.
        const double alpha = i == 0 ? 1.0 : 0.2 + 0.6 * i / (kSpokes - 1);
        context->setStrokeColor(color.colorWithAlphaComponent(color.alpha() * alpha));
        context->beginPath();
        context->moveToPoint({centre + dx * inner, centre + dy * inner});
        context->addLineToPoint({centre + dx * outer, centre + dy * outer});
        context->strokePath();
    }
    return context->makeImage();
}

}  // namespace

VLXActivityIndicatorView::VLXActivityIndicatorView() = default;

VLXActivityIndicatorView::~VLXActivityIndicatorView() {
    if (m_timer) {
        m_timer->invalidate();
    }
}

std::shared_ptr<VLXActivityIndicatorView> VLXActivityIndicatorView::create() {
    return createWithStyle(VLXActivityIndicatorViewStyle::White);
}

std::shared_ptr<VLXActivityIndicatorView> VLXActivityIndicatorView::createWithFrame(
    const VLXRect& frame) {
    return makeWithFrame<VLXActivityIndicatorView>(frame);
}

std::shared_ptr<VLXActivityIndicatorView> VLXActivityIndicatorView::createWithStyle(
    VLXActivityIndicatorViewStyle style) {
    const double side = wheelSizeForStyle(style);
    auto view = makeWithFrame<VLXActivityIndicatorView>({{0, 0}, {side, side}});
    view->setActivityIndicatorViewStyle(style);
    return view;
}

double VLXActivityIndicatorView::wheelSizeForStyle(VLXActivityIndicatorViewStyle style) {
    return sanitizedStyle(style) == VLXActivityIndicatorViewStyle::WhiteLarge ? 37 : 20;
}

void VLXActivityIndicatorView::initWithFrame(const VLXRect& frame) {
    VLXView::initWithFrame(frame);
    m_wheel = VLXLayer::create();
    layer()->addSublayer(m_wheel);
    setHidden(m_hidesWhenStopped);
    updateWheel();
}

void VLXActivityIndicatorView::setActivityIndicatorViewStyle(VLXActivityIndicatorViewStyle style) {
    style = sanitizedStyle(style);
    if (style == m_style) {
        return;
    }
    m_style = style;
    updateWheel();
}

VLXColor VLXActivityIndicatorView::color() const {
    if (m_color) {
        return *m_color;
    }
    return m_style == VLXActivityIndicatorViewStyle::Gray ? VLXColor::grayColor()
                                                          : VLXColor::whiteColor();
}

void VLXActivityIndicatorView::setColor(std::optional<VLXColor> color) {
    if (color == m_color) {
        return;
    }
    m_color = color;
    updateWheel();
}

void VLXActivityIndicatorView::updateWheel() {
    if (!m_wheel) {
        return;
    }
    const double side = wheelSizeForStyle(m_style);
    const auto screen = VLXScreen::mainScreen();
    const double scale = screen ? screen->scale() : 1;
    // The wheel is not a view's layer: keep its changes from animating implicitly.
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    m_wheel->setContentsScale(scale);
    m_wheel->setContents(makeWheelImage(side, color(), scale));
    m_wheel->setBounds({{0, 0}, {side, side}});
    VLXTransaction::commit();
    updateRotation();
}

void VLXActivityIndicatorView::updateRotation() {
    if (!m_wheel) {
        return;
    }
    double angle = 0;
    if (m_animating) {
        const double elapsed = VLXClock::now() - m_startTime;
        if (std::isfinite(elapsed) && elapsed > 0) {
            const double step = std::fmod(std::floor(elapsed / kStepInterval), kSpokes);
            angle = 2 * std::numbers::pi * step / kSpokes;
        }
    }
    const VLXRect b = bounds();
    VLXPoint centre{b.origin.x + b.size.width / 2, b.origin.y + b.size.height / 2};
    if (!std::isfinite(centre.x) || !std::isfinite(centre.y)) {
        centre = {0, 0};
    }
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    m_wheel->setPosition(centre);
    m_wheel->setAffineTransform(VLXAffineTransformMakeRotation(angle));
    VLXTransaction::commit();
}

void VLXActivityIndicatorView::layoutSubviews() {
    VLXView::layoutSubviews();
    updateRotation();
}

VLXSize VLXActivityIndicatorView::sizeThatFits(VLXSize size) const {
    (void)size;
    const double side = wheelSizeForStyle(m_style);
    return {side, side};
}

void VLXActivityIndicatorView::startAnimating() {
    if (m_animating) {
        return;
    }
    m_animating = true;
    m_startTime = VLXClock::now();
    std::weak_ptr<VLXActivityIndicatorView> weakSelf = sharedFrom<VLXActivityIndicatorView>();
    m_timer = VLXTimer::scheduledTimer(kStepInterval, true, [weakSelf](VLXTimer& timer) {
        if (auto self = weakSelf.lock()) {
            self->updateRotation();
        } else {
            timer.invalidate();
        }
    });
    if (m_hidesWhenStopped) {
        setHidden(false);
    }
    updateRotation();
}

void VLXActivityIndicatorView::stopAnimating() {
    if (!m_animating) {
        return;
    }
    m_animating = false;
    if (m_timer) {
        m_timer->invalidate();
        m_timer.reset();
    }
    if (m_hidesWhenStopped) {
        setHidden(true);
    }
    updateRotation();
}

void VLXActivityIndicatorView::setHidesWhenStopped(bool hides) {
    if (hides == m_hidesWhenStopped) {
        return;
    }
    m_hidesWhenStopped = hides;
    if (!m_animating) {
        setHidden(hides);
    }
}
