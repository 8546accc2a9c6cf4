#pragma once

#include <memory>

#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXPanGestureRecognizer;
class VLXPinchGestureRecognizer;
class VLXScrollView;

/// What a scroll view tells its delegate. Every method is optional (empty by default).
class VLX_EXPORT VLXScrollViewDelegate {
public:
    virtual ~VLXScrollViewDelegate();
    /// After every change of the content offset, programmatic or by dragging.
    virtual void scrollViewDidScroll(VLXScrollView& scrollView);
    /// When a drag of the content begins and ends.
    virtual void scrollViewWillBeginDragging(VLXScrollView& scrollView);
    virtual void scrollViewDidEndDragging(VLXScrollView& scrollView, bool willDecelerate);
    /// When an animated `setContentOffset` has finished moving.
    virtual void scrollViewDidEndScrollingAnimation(VLXScrollView& scrollView);
};

/// A view whose bounds origin is the offset of the content it shows: subviews are placed in
/// content coordinates and the view shows the part of them at `contentOffset`.
///
/// `contentSize` is stored only: it never clamps the offset, and offsets set by code are taken
/// as given (overshoot included). The delegate (held weakly) hears `scrollViewDidScroll` after
/// every change of the offset (`setContentOffset`, `setBounds` with a new origin, a drag), and
/// nothing for frame or content-size changes that keep the offset. Clips its subviews by default.
///
/// Dragging and pinching arrive with the touch-input classes: until then `panGestureRecognizer()`
/// and `pinchGestureRecognizer()` answer null and the scroll view moves only when told to.
class VLX_EXPORT VLXScrollView : public VLXView {
public:
    static std::shared_ptr<VLXScrollView> create();
    static std::shared_ptr<VLXScrollView> createWithFrame(const VLXRect& frame);
    ~VLXScrollView() override;

    /// (0, 0) by default. Non-finite or negative extents are stored as 0.
    VLXSize contentSize() const { return m_contentSize; }
    void setContentSize(VLXSize size);

    /// The bounds origin.
    VLXPoint contentOffset() const;
    /// Moves the bounds origin to `offset` unclamped and tells the delegate when it changed.
    /// Animated, the bounds origin moves over 0.3 s (the model takes the new value at once, so
    /// the delegate hears of it at once) and `scrollViewDidEndScrollingAnimation` follows when
    /// the move ends. A non-finite coordinate keeps the current one.
    void setContentOffset(VLXPoint offset, bool animated = false);
    /// A new origin is a new offset: the delegate hears of it.
    void setBounds(const VLXRect& bounds) override;

    /// Extra room around the content; stored only. Non-finite insets are stored as 0.
    VLXEdgeInsets contentInset() const { return m_contentInset; }
    void setContentInset(const VLXEdgeInsets& insets);

    /// The delegate, held weakly: one that has gone is simply not called.
    std::shared_ptr<VLXScrollViewDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(const std::shared_ptr<VLXScrollViewDelegate>& delegate) {
        m_delegate = delegate;
    }

    /// YES by default: a drag may take over touches that the content already holds.
    bool canCancelContentTouches() const { return m_canCancelContentTouches; }
    void setCanCancelContentTouches(bool can) { m_canCancelContentTouches = can; }
    /// Let a drag move the content along an axis even when the content fits (NO by default).
    bool alwaysBounceVertical() const { return m_alwaysBounceVertical; }
    void setAlwaysBounceVertical(bool bounce) { m_alwaysBounceVertical = bounce; }
    bool alwaysBounceHorizontal() const { return m_alwaysBounceHorizontal; }
    void setAlwaysBounceHorizontal(bool bounce) { m_alwaysBounceHorizontal = bounce; }
    /// YES by default; stored for the dragging to come.
    bool isScrollEnabled() const { return m_scrollEnabled; }
    void setScrollEnabled(bool enabled) { m_scrollEnabled = enabled; }

    /// True while the user drags the content (never, until touch input exists).
    bool isDragging() const { return m_dragging; }

    /// The recognisers that will drag and zoom the content: null until touch input exists.
    std::shared_ptr<VLXPanGestureRecognizer> panGestureRecognizer() const { return nullptr; }
    std::shared_ptr<VLXPinchGestureRecognizer> pinchGestureRecognizer() const { return nullptr; }

    std::string description() const override;

protected:
    VLXScrollView();
    void initWithFrame(const VLXRect& frame) override;
    /// Calls the delegate's `scrollViewDidScroll` when there is one (for subclasses and the
    /// dragging code that move the bounds origin themselves).
    void notifyDidScroll();

private:
    VLXSize m_contentSize{};
    VLXEdgeInsets m_contentInset{};
    std::weak_ptr<VLXScrollViewDelegate> m_delegate;
    bool m_canCancelContentTouches = true;
    bool m_alwaysBounceVertical = false;
    bool m_alwaysBounceHorizontal = false;
    bool m_scrollEnabled = true;
    bool m_dragging = false;
};
