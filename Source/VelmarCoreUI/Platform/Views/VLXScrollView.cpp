#include <VelmarCoreUI/Platform/Views/VLXScrollView.h>

#include <cmath>
#include <cstdio>

namespace {

// How long an animated `setContentOffset` moves.
constexpr double kScrollAnimationDuration = 0.3;

double finiteNonNegative(double v) {
    return std::isfinite(v) && v > 0 ? v : 0;
}

double finiteOrZero(double v) {
    return std::isfinite(v) ? v : 0;
}

}  // namespace

VLXScrollViewDelegate::~VLXScrollViewDelegate() = default;
void VLXScrollViewDelegate::scrollViewDidScroll(VLXScrollView&) {}
void VLXScrollViewDelegate::scrollViewWillBeginDragging(VLXScrollView&) {}
void VLXScrollViewDelegate::scrollViewDidEndDragging(VLXScrollView&, bool) {}
void VLXScrollViewDelegate::scrollViewDidEndScrollingAnimation(VLXScrollView&) {}

VLXScrollView::VLXScrollView() = default;
VLXScrollView::~VLXScrollView() = default;

std::shared_ptr<VLXScrollView> VLXScrollView::create() {
    return makeWithFrame<VLXScrollView>(VLXRect{});
}

std::shared_ptr<VLXScrollView> VLXScrollView::createWithFrame(const VLXRect& frame) {
    return makeWithFrame<VLXScrollView>(frame);
}

void VLXScrollView::initWithFrame(const VLXRect& frame) {
    VLXView::initWithFrame(frame);
    setClipsToBounds(true);
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
