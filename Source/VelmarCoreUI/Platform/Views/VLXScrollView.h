#pragma once

#include <memory>
#include <vector>

#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXPanGestureRecognizer;
class VLXPinchGestureRecognizer;
class VLXScrollView;
class VLXTouch;

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
    /// When the content starts gliding after a drag, and when it has stopped (also when a touch
    /// or a new offset stops it early, so the two always come in pairs).
    virtual void scrollViewWillBeginDecelerating(VLXScrollView& scrollView);
    virtual void scrollViewDidEndDecelerating(VLXScrollView& scrollView);
};

/// A view whose bounds origin is the offset of the content it shows: subviews are placed in
/// content coordinates and the view shows the part of them at `contentOffset`.
///
/// `contentSize` is stored only: it never clamps the offset, and offsets set by code are taken
/// as given (overshoot included). The delegate (held weakly) hears `scrollViewDidScroll` after
/// every change of the offset (`setContentOffset`, `setBounds` with a new origin, a drag), and
/// nothing for frame or content-size changes that keep the offset. Clips its subviews by default.
///
/// Dragging: the scroll view's own pan recogniser (`panGestureRecognizer()`) moves the offset
/// with the finger along each axis whose content is larger than the bounds (or that
/// `alwaysBounce…` opens), clamped to [0, contentSize − bounds size]: there is no rubber band
/// and the insets are not part of the range. The pan refuses to begin when no axis can move, when
/// scrolling is off, and, with `canCancelContentTouches` NO, for touches that a view inside the
/// content holds; other recognisers of the touch then go on as if it were not there. After the
/// last finger lifts the content glides on (`decelerationEnabled`) at the finger's speed,
/// slowing by `kDecelerationRate` per millisecond until it is slower than
/// `kMinimumDecelerationSpeed` or reaches the end of its range; a new touch or a
/// `setContentOffset` stops it. There is no pinch: `pinchGestureRecognizer()` is always null.
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
    /// the move ends. A non-finite coordinate keeps the current one. Stops gliding.
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
    /// YES by default; NO disables the pan recogniser (ending a drag in progress) and stops
    /// gliding.
    bool isScrollEnabled() const { return m_scrollEnabled; }
    void setScrollEnabled(bool enabled);

    /// The factor the gliding speed keeps per millisecond.
    static constexpr double kDecelerationRate = 0.998;
    /// Points per second below which gliding stops (and a release does not start it).
    static constexpr double kMinimumDecelerationSpeed = 10.0;
    /// YES by default: after a drag the content glides on with the finger's speed.
    bool decelerationEnabled() const { return m_decelerationEnabled; }
    void setDecelerationEnabled(bool enabled) { m_decelerationEnabled = enabled; }

    /// True while the user drags the content.
    bool isDragging() const { return m_dragging; }
    /// True while the content glides after a drag.
    bool isDecelerating() const;

    /// The recogniser that drags the content (made with the view, attached to it).
    std::shared_ptr<VLXPanGestureRecognizer> panGestureRecognizer() const { return m_pan; }
    /// Always null: the scroll view does not zoom.
    std::shared_ptr<VLXPinchGestureRecognizer> pinchGestureRecognizer() const { return nullptr; }

    std::string description() const override;

protected:
    VLXScrollView();
    void initWithFrame(const VLXRect& frame) override;
    /// Calls the delegate's `scrollViewDidScroll` when there is one (for subclasses and the
    /// dragging code that move the bounds origin themselves).
    void notifyDidScroll();

private:
    friend class VLXScrollViewPanGestureRecognizer;
    struct Deceleration;

    // Whether the pan may take `touches` now (content that can move, scrolling on, and touches
    // the content does not hold unless it may be taken over).
    bool panMayBegin(const std::vector<std::shared_ptr<VLXTouch>>& touches) const;
    void handlePan(VLXPanGestureRecognizer& pan);
    // The largest offset on each axis (0 where the content fits).
    VLXPoint maximumOffset() const;
    bool canScrollHorizontally() const;
    bool canScrollVertically() const;
    // Moves the bounds origin without stopping the gliding.
    void moveOffset(VLXPoint offset);
    void startDecelerating(VLXPoint velocity);
    void stepDeceleration();
    void stopDecelerating();

    std::shared_ptr<VLXPanGestureRecognizer> m_pan;
    std::unique_ptr<Deceleration> m_deceleration;
    VLXPoint m_dragStartOffset{};
    VLXSize m_contentSize{};
    VLXEdgeInsets m_contentInset{};
    std::weak_ptr<VLXScrollViewDelegate> m_delegate;
    bool m_canCancelContentTouches = true;
    bool m_alwaysBounceVertical = false;
    bool m_alwaysBounceHorizontal = false;
    bool m_scrollEnabled = true;
    bool m_dragging = false;
    bool m_decelerationEnabled = true;
};
