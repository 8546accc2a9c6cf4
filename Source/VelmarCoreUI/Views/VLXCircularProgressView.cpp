#include <VelmarCoreUI/Views/VLXCircularProgressView.h>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>
#include <VelmarCoreUI/Views/VLXCircularLayer.h>

std::shared_ptr<VLXCircularProgressView> VLXCircularProgressView::create() {
    return createWithFrame(VLXRect{{0, 0}, {37, 37}});
}

std::shared_ptr<VLXCircularProgressView> VLXCircularProgressView::createWithFrame(
    const VLXRect& frame) {
    return makeWithFrame<VLXCircularProgressView>(frame);
}

void VLXCircularProgressView::initWithFrame(const VLXRect& frame) {
    VLXView::initWithFrame(frame);
    setBackgroundColor(VLXColor::clearColor());
    setFillColor(VLXColor::whiteColor());
    // There is no layer yet, so these two only store.
    setStrokeColor(VLXColor::whiteColor());
    setStrokeWidth(1.0);
    auto circular = VLXCircularLayer::create();
    circular->setBackgroundColor(VLXColor::clearColor());
    circular->setBorderColor(m_strokeColor);
    circular->setBorderWidth(m_strokeWidth);
    circular->setContentsScale(VLXScreen::mainScreen()->scale());
    layer()->addSublayer(circular);
    m_circularLayer = std::move(circular);
}

double VLXCircularProgressView::progress() const {
    return m_circularLayer ? m_circularLayer->progress() : 0;
}

void VLXCircularProgressView::setProgress(double progress, bool animated) {
    VLXTransaction::setDisableActions(!animated);
    if (m_circularLayer) {
        m_circularLayer->setProgress(progress);
    }
}

void VLXCircularProgressView::setStrokeColor(std::optional<VLXColor> color) {
    m_strokeColor = std::move(color);
    if (m_circularLayer) {
        m_circularLayer->setBorderColor(m_strokeColor);
    }
}

void VLXCircularProgressView::setStrokeWidth(double width) {
    m_strokeWidth = width;
    if (m_circularLayer) {
        m_circularLayer->setBorderWidth(width);
    }
}

void VLXCircularProgressView::layoutSubviews() {
    VLXView::layoutSubviews();
    if (!m_circularLayer) {
        return;
    }
    const VLXRect frameRect = frame();
    const VLXRect boundsRect = bounds();
    m_circularLayer->setBounds(VLXRect{
        {0, 0}, {frameRect.size.width - m_strokeWidth, frameRect.size.height - m_strokeWidth}});
    m_circularLayer->setPosition(VLXPoint{boundsRect.midX(), boundsRect.midY()});
}
