#pragma once

#include <memory>

#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXActivityIndicatorView;

/// The translucent overlay (white at 70 %) with a grey spinner that a graph lays over itself
/// while its series load. The spinner's frame is the overlay's whole bounds (the wheel sits
/// centred in it).
///
/// A new overlay is visible (alpha 1) but not spinning. `showLoading(true)` starts the spinner
/// and fades the overlay in; `showLoading(false)` stops it and fades out (0.2 s view
/// animations). While `isLoadingState` is set, `showLoading(true)` also stops and fades out:
/// the flag inverts the request. Nothing in the graph sets it.
class VLX_EXPORT VLXGraphLoadingView : public VLXView {
public:
    static std::shared_ptr<VLXGraphLoadingView> create();
    static std::shared_ptr<VLXGraphLoadingView> createWithFrame(const VLXRect& frame);

    /// The spinner, made with the overlay and added to it.
    const std::shared_ptr<VLXActivityIndicatorView>& indicatorView() const {
        return m_indicatorView;
    }
    void setIndicatorView(std::shared_ptr<VLXActivityIndicatorView> view) {
        m_indicatorView = std::move(view);
    }
    /// False by default.
    bool isLoadingState() const { return m_isLoadingState; }
    void setIsLoadingState(bool loading) { m_isLoadingState = loading; }

    /// Starts or stops the spinner and fades the overlay's alpha to 1 or 0 over 0.2 s.
    void showLoading(bool loading);

    /// The spinner's frame becomes the bounds.
    void layoutSubviews() override;

protected:
    VLXGraphLoadingView() = default;
    void initWithFrame(const VLXRect& frame) override;

private:
    std::shared_ptr<VLXActivityIndicatorView> m_indicatorView;
    bool m_isLoadingState = false;
};
