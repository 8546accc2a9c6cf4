#include <VelmarCoreUI/Graphing/VLXGraphLoadingView.h>

#include <VelmarCoreUI/Platform/Views/VLXActivityIndicatorView.h>

std::shared_ptr<VLXGraphLoadingView> VLXGraphLoadingView::create() {
    return createWithFrame(VLXRectZero);
}

std::shared_ptr<VLXGraphLoadingView> VLXGraphLoadingView::createWithFrame(const VLXRect& frame) {
    return makeWithFrame<VLXGraphLoadingView>(frame);
}

void VLXGraphLoadingView::initWithFrame(const VLXRect& frame) {
    VLXView::initWithFrame(frame);
    setBackgroundColor(VLXColor::colorWithWhite(1.0, 0.7));
    auto indicator = VLXActivityIndicatorView::createWithFrame(bounds());
    indicator->setActivityIndicatorViewStyle(VLXActivityIndicatorViewStyle::Gray);
    addSubview(indicator);
    m_indicatorView = std::move(indicator);
    m_isLoadingState = false;
}

void VLXGraphLoadingView::layoutSubviews() {
    VLXView::layoutSubviews();
    if (m_indicatorView) {
        m_indicatorView->setFrame(bounds());
    }
}

void VLXGraphLoadingView::showLoading(bool loading) {
    double targetAlpha = 1.0;
    if (!loading || m_isLoadingState) {
        targetAlpha = 0.0;
        if (m_indicatorView) {
            m_indicatorView->stopAnimating();
        }
    } else if (m_indicatorView) {
        m_indicatorView->startAnimating();
    }
    VLXView::animate(0.2, 0, VLXViewAnimationOptionNone,
                     [this, targetAlpha] { setAlpha(targetAlpha); });
}
