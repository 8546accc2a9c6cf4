#include <VelmarCoreUI/Platform/Views/VLXScrollView.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimer.h>
#include <VelmarCoreUI/Platform/Input/VLXEvent.h>
#include <VelmarCoreUI/Platform/Input/VLXPanGestureRecognizer.h>
#include <VelmarCoreUI/Platform/Input/VLXTouch.h>

namespace {

// How long an animated `setContentOffset` moves.
constexpr double kScrollAnimationDuration = 0.3;

double finiteNonNegative(double v) {
    return std::isfinite(v) && v > 0 ? v : 0;
}

double finiteOrZero(double v) {
    return std::isfinite(v) ? v : 0;
}

// How often the gliding moves the offset (the position itself is a function of the clock).
constexpr double kDecelerationStep = 1.0 / 60.0;

double clampOffset(double v, double maximum) {
    return std::clamp(v, 0.0, std::max(0.0, maximum));
}

}  // namespace

// The scroll view's pan: a plain pan that first asks its scroll view whether it may take the
// touches, and fails at once when not, so that the content's own recognisers and touch methods
// go on undisturbed. A touch coming down also stops the gliding.
class VLXScrollViewPanGestureRecognizer : public VLXPanGestureRecognizer {
public:
    static std::shared_ptr<VLXScrollViewPanGestureRecognizer> create() {
        return makeInitialized<VLXScrollViewPanGestureRecognizer>();
    }

    void touchesBegan(const VLXTouchSet& touches, const VLXEvent& event) override {
        if (auto* scrollView = owner()) {
            scrollView->stopDecelerating();
        }
        if (refuses()) {
            return;
        }
        VLXPanGestureRecognizer::touchesBegan(touches, event);
    }

    void touchesMoved(const VLXTouchSet& touches, const VLXEvent& event) override {
        if (refuses()) {
            return;
        }
        VLXPanGestureRecognizer::touchesMoved(touches, event);
    }

protected:
    VLXScrollViewPanGestureRecognizer() = default;

private:
    VLXScrollView* owner() const { return dynamic_cast<VLXScrollView*>(view()); }

    // Fails the pan while it is still possible and its scroll view says no.
    bool refuses() {
        if (state() != VLXGestureRecognizerState::Possible) {
            return false;
        }
        auto* scrollView = owner();
        if (!scrollView || scrollView->panMayBegin(this->touches())) {
            return false;
        }
        setState(VLXGestureRecognizerState::Failed);
        return true;
    }
};

struct VLXScrollView::Deceleration {
    double startTime = 0;
    VLXPoint startOffset{};
    VLXPoint velocity{};  // points per second at startTime
    std::shared_ptr<VLXTimer> timer;
};

VLXScrollViewDelegate::~VLXScrollViewDelegate() = default;
void VLXScrollViewDelegate::scrollViewDidScroll(VLXScrollView&) {}
void VLXScrollViewDelegate::scrollViewWillBeginDragging(VLXScrollView&) {}
void VLXScrollViewDelegate::scrollViewDidEndDragging(VLXScrollView&, bool) {}
void VLXScrollViewDelegate::scrollViewDidEndScrollingAnimation(VLXScrollView&) {}
void VLXScrollViewDelegate::scrollViewWillBeginDecelerating(VLXScrollView&) {}
void VLXScrollViewDelegate::scrollViewDidEndDecelerating(VLXScrollView&) {}

VLXScrollView::VLXScrollView() = default;

VLXScrollView::~VLXScrollView() {
    if (m_deceleration && m_deceleration->timer) {
        m_deceleration->timer->invalidate();
    }
}

std::shared_ptr<VLXScrollView> VLXScrollView::create() {
    return makeWithFrame<VLXScrollView>(VLXRect{});
}

std::shared_ptr<VLXScrollView> VLXScrollView::createWithFrame(const VLXRect& frame) {
    return makeWithFrame<VLXScrollView>(frame);
}

void VLXScrollView::initWithFrame(const VLXRect& frame) {
    VLXView::initWithFrame(frame);
    setClipsToBounds(true);
    m_pan = VLXScrollViewPanGestureRecognizer::create();
    m_pan->addTarget(sharedFrom<VLXScrollView>(), &VLXScrollView::handlePan);
    addGestureRecognizer(m_pan);
}

void VLXScrollView::setScrollEnabled(bool enabled) {
    m_scrollEnabled = enabled;
    if (m_pan) {
        m_pan->setEnabled(enabled);
    }
    if (!enabled) {
        stopDecelerating();
    }
}

bool VLXScrollView::isDecelerating() const {
    return m_deceleration != nullptr;
}

// --- dragging ---------------------------------------------------------------------------------

VLXPoint VLXScrollView::maximumOffset() const {
    const VLXSize size = bounds().size;
    return {std::max(0.0, m_contentSize.width - size.width),
            std::max(0.0, m_contentSize.height - size.height)};
}

bool VLXScrollView::canScrollHorizontally() const {
    return m_alwaysBounceHorizontal || m_contentSize.width > bounds().size.width;
}

bool VLXScrollView::canScrollVertically() const {
    return m_alwaysBounceVertical || m_contentSize.height > bounds().size.height;
}

bool VLXScrollView::panMayBegin(const std::vector<std::shared_ptr<VLXTouch>>& touches) const {
    if (!m_scrollEnabled || !(canScrollHorizontally() || canScrollVertically())) {
        return false;
    }
    if (!m_canCancelContentTouches) {
        for (const auto& touch : touches) {
            if (touch && touch->view() != this) {
                return false;
            }
        }
    }
    return true;
}

void VLXScrollView::moveOffset(VLXPoint offset) {
    VLXRect b = bounds();
    b.origin = offset;
    setBounds(b);
}

void VLXScrollView::handlePan(VLXPanGestureRecognizer& pan) {
    if (pan.view() != this) {
        return;
    }
    const auto state = pan.state();
    if (state == VLXGestureRecognizerState::Began) {
        stopDecelerating();
        m_dragging = true;
        m_dragStartOffset = contentOffset();
        if (auto d = delegate()) {
            d->scrollViewWillBeginDragging(*this);
        }
    }
    if (state == VLXGestureRecognizerState::Began || state == VLXGestureRecognizerState::Changed) {
        if (!m_dragging) {
            return;
        }
        // The content follows the finger: it moves the other way from the offset.
        const VLXPoint translation = pan.translationInView(this);
        const VLXPoint maximum = maximumOffset();
        VLXPoint offset = contentOffset();
        if (canScrollHorizontally() && std::isfinite(translation.x)) {
            offset.x = clampOffset(m_dragStartOffset.x - translation.x, maximum.x);
        }
        if (canScrollVertically() && std::isfinite(translation.y)) {
            offset.y = clampOffset(m_dragStartOffset.y - translation.y, maximum.y);
        }
        moveOffset(offset);
        return;
    }
    if (state != VLXGestureRecognizerState::Ended &&
        state != VLXGestureRecognizerState::Cancelled) {
        return;
    }
    if (!m_dragging) {
        return;
    }
    m_dragging = false;
    VLXPoint velocity{};
    if (state == VLXGestureRecognizerState::Ended && m_decelerationEnabled) {
        const VLXPoint fingerVelocity = pan.velocityInView(this);
        const VLXPoint offset = contentOffset();
        const VLXPoint maximum = maximumOffset();
        // Only axes that scroll, and not into the end the content already rests against.
        auto axisVelocity = [](bool scrolls, double v, double position, double end) {
            if (!scrolls || !std::isfinite(v) || (v < 0 && position <= 0) ||
                (v > 0 && position >= end)) {
                return 0.0;
            }
            return v;
        };
        velocity.x = axisVelocity(canScrollHorizontally(), -fingerVelocity.x, offset.x, maximum.x);
        velocity.y = axisVelocity(canScrollVertically(), -fingerVelocity.y, offset.y, maximum.y);
    }
    const bool willDecelerate = std::hypot(velocity.x, velocity.y) >= kMinimumDecelerationSpeed;
    if (auto d = delegate()) {
        d->scrollViewDidEndDragging(*this, willDecelerate);
    }
    if (willDecelerate && !m_dragging) {
        startDecelerating(velocity);
    }
}

// --- gliding ----------------------------------------------------------------------------------
//
// The speed decays exponentially, v(t) = v0 · rate^(1000 t), so the offset at time t after the
// release is p0 + v0 · (e^(k t) − 1) / k with k = 1000 · ln(rate): a function of the clock, the
// same however often the timer runs.

void VLXScrollView::startDecelerating(VLXPoint velocity) {
    stopDecelerating();
    auto deceleration = std::make_unique<Deceleration>();
    deceleration->startTime = VLXClock::now();
    deceleration->startOffset = contentOffset();
    deceleration->velocity = velocity;
    std::weak_ptr<VLXScrollView> weakSelf = sharedFrom<VLXScrollView>();
    deceleration->timer =
        VLXTimer::scheduledTimer(kDecelerationStep, true, [weakSelf](VLXTimer& timer) {
            if (auto self = weakSelf.lock()) {
                self->stepDeceleration();
            } else {
                timer.invalidate();
            }
        });
    m_deceleration = std::move(deceleration);
    if (auto d = delegate()) {
        d->scrollViewWillBeginDecelerating(*this);
    }
}

void VLXScrollView::stepDeceleration() {
    if (!m_deceleration) {
        return;
    }
    const Deceleration& glide = *m_deceleration;
    const double k = 1000.0 * std::log(kDecelerationRate);
    const double speed = std::hypot(glide.velocity.x, glide.velocity.y);
    // When the speed falls below the minimum.
    const double endTime =
        speed > kMinimumDecelerationSpeed ? std::log(kMinimumDecelerationSpeed / speed) / k : 0;
    const double t = std::clamp(VLXClock::now() - glide.startTime, 0.0, endTime);
    const double travelled = (std::exp(k * t) - 1) / k;
    const VLXPoint maximum = maximumOffset();
    bool moving = false;
    auto axis = [&](double current, double start, double v, double end) {
        if (v == 0) {
            return current;
        }
        const double raw = start + v * travelled;
        const double clamped = clampOffset(raw, end);
        moving = moving || clamped == raw;
        return clamped;
    };
    const VLXPoint current = contentOffset();
    const VLXPoint offset{axis(current.x, glide.startOffset.x, glide.velocity.x, maximum.x),
                          axis(current.y, glide.startOffset.y, glide.velocity.y, maximum.y)};
    const bool finished = t >= endTime || !moving;
    moveOffset(offset);
    if (finished) {
        stopDecelerating();
    }
}

void VLXScrollView::stopDecelerating() {
    if (!m_deceleration) {
        return;
    }
    const auto glide = std::move(m_deceleration);
    if (glide->timer) {
        glide->timer->invalidate();
    }
    if (auto d = delegate()) {
        d->scrollViewDidEndDecelerating(*this);
    }
}

void VLXScrollView::setContentSize(VLXSize size) {
    m_contentSize = {finiteNonNegative(size.width), finiteNonNegative(size.height)};
}

void VLXScrollView::setContentInset(const VLXEdgeInsets& insets) {
    m_contentInset = {finiteOrZero(insets.top), finiteOrZero(insets.left),
                      finiteOrZero(insets.bottom), finiteOrZero(insets.right)};
}

VLXPoint VLXScrollView::contentOffset() const {
    return bounds().origin;
}

void VLXScrollView::setContentOffset(VLXPoint offset, bool animated) {
    stopDecelerating();
    VLXRect b = bounds();
    const VLXPoint old = b.origin;
    if (std::isfinite(offset.x)) {
        b.origin.x = offset.x;
    }
    if (std::isfinite(offset.y)) {
        b.origin.y = offset.y;
    }
    if (b.origin.x == old.x && b.origin.y == old.y) {
        return;
    }
    if (animated) {
        std::weak_ptr<VLXScrollView> weakSelf = sharedFrom<VLXScrollView>();
        VLXView::animate(
            kScrollAnimationDuration, 0, VLXViewAnimationOptionCurveEaseInOut,
            [this, b] { setBounds(b); },
            [weakSelf](bool) {
                auto self = weakSelf.lock();
                if (!self) {
                    return;
                }
                if (auto delegate = self->delegate()) {
                    delegate->scrollViewDidEndScrollingAnimation(*self);
                }
            });
    } else {
        setBounds(b);
    }
}

void VLXScrollView::setBounds(const VLXRect& bounds) {
    const VLXPoint old = contentOffset();
    VLXView::setBounds(bounds);
    const VLXPoint offset = contentOffset();
    if (offset.x != old.x || offset.y != old.y) {
        notifyDidScroll();
    }
}

void VLXScrollView::notifyDidScroll() {
    if (auto d = delegate()) {
        d->scrollViewDidScroll(*this);
    }
}

std::string VLXScrollView::description() const {
    std::string result = VLXView::description();
    if (!result.empty() && result.back() == '>') {
        char buffer[160];
        const VLXPoint offset = contentOffset();
        std::snprintf(buffer, sizeof buffer, "; contentOffset: {%g, %g}; contentSize: {%g, %g}>",
                      offset.x, offset.y, m_contentSize.width, m_contentSize.height);
        result.pop_back();
        result += buffer;
    }
    return result;
}
