#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXEvent;
class VLXGestureRecognizer;
class VLXGraphicsContext;
class VLXLayoutAnchor;
class VLXLayoutGuide;
class VLXTouch;
class VLXWindow;

/// Options of `VLXView::animate`, with the platform's bit values. The curve sits in bits 16–19.
using VLXViewAnimationOptions = std::uint64_t;
inline constexpr VLXViewAnimationOptions VLXViewAnimationOptionNone = 0;
/// Start from what is on screen (the presentation) rather than from the model. Views always do;
/// the bit is accepted for the platform's sake.
inline constexpr VLXViewAnimationOptions VLXViewAnimationOptionBeginFromCurrentState = 1 << 2;
/// Also send touches to views while they animate (stored; hit tests read model values anyway).
inline constexpr VLXViewAnimationOptions VLXViewAnimationOptionAllowUserInteraction = 1 << 1;
inline constexpr VLXViewAnimationOptions VLXViewAnimationOptionCurveEaseInOut = 0 << 16;
inline constexpr VLXViewAnimationOptions VLXViewAnimationOptionCurveEaseIn = 1 << 16;
inline constexpr VLXViewAnimationOptions VLXViewAnimationOptionCurveEaseOut = 2 << 16;
inline constexpr VLXViewAnimationOptions VLXViewAnimationOptionCurveLinear = 3 << 16;

/// A rectangle of the screen that draws, lays out its subviews and takes part in touch handling,
/// over a backing layer that it owns and is the delegate of.
///
/// Creation: `create()` (zero frame) or `createWithFrame(frame)`; subclasses make themselves with
/// `makeWithFrame<MyView>(frame)` and override `initWithFrame` (calling the base first). The
/// backing layer is made by the virtual `layerClass()` at the start of `initWithFrame`, so a
/// subclass backed by a shape layer overrides `layerClass()` and reads its layer through
/// `layerAs<VLXShapeLayer>()`.
///
/// Geometry lives in the layer: `frame` is the layer's frame, `bounds` its bounds, `center` its
/// position (the anchor point stays at the middle), `transform` its affine transform. A change
/// of bounds size marks the view for layout. Setting a value equal to the current one does
/// nothing. Frames, bounds, centres and transforms with a NaN or infinite component are ignored
/// (the view keeps its geometry); a negative frame size is standardised; alpha is clamped to
/// 0…1 (NaN ignored).
///
/// Tree: a view owns its subviews (`shared_ptr` down, raw pointer up). Adding a view that is
/// this view or one of its ancestors is refused and leaves the tree unchanged. Adding puts the
/// view's layer in front of every sublayer of this view's layer (stand-alone layers included);
/// adding a view that is already a subview moves it to the front. Removing a view while its old
/// superview lays out is safe: the pass goes on with the views still attached.
///
/// Changes outside an animation block never animate: as the layer's delegate the view answers
/// "no action" for every key. Inside `animate(...)`'s block, alpha, frame, bounds, center,
/// background colour and transform become basic animations of the layer's "opacity",
/// "position", "bounds", "backgroundColor" and "transform" from what is on screen to the new
/// model value, which is stored at once.
///
/// Main thread only, like the layers and the run loop.
class VLX_EXPORT VLXView : public VLXObject, public VLXLayerDelegate {
public:
    using Subviews = std::vector<std::shared_ptr<VLXView>>;
    using Completion = std::function<void(bool finished)>;

    static std::shared_ptr<VLXView> create();
    static std::shared_ptr<VLXView> createWithFrame(const VLXRect& frame);
    ~VLXView() override;

    // --- backing layer -------------------------------------------------------------------
    /// Makes the backing layer: a new instance of the class this view is backed by
    /// (`VLXLayer::create()` here). Called once, at the start of `initWithFrame`.
    virtual std::shared_ptr<VLXLayer> layerClass() const;
    const std::shared_ptr<VLXLayer>& layer() const { return m_layer; }
    /// The backing layer as the class `layerClass()` makes (checked only in debug builds).
    template <class L>
    L& layerAs() const {
        return static_cast<L&>(*m_layer);
    }

    // --- geometry ------------------------------------------------------------------------
    VLXRect frame() const;
    void setFrame(const VLXRect& frame);
    VLXRect bounds() const;
    /// The origin is the offset of the content (a scroll view's content offset).
    virtual void setBounds(const VLXRect& bounds);
    VLXPoint center() const;
    void setCenter(VLXPoint center);
    VLXAffineTransform transform() const;
    void setTransform(const VLXAffineTransform& transform);

    // --- appearance ----------------------------------------------------------------------
    /// The layer's opacity; 1 by default.
    double alpha() const;
    void setAlpha(double alpha);
    bool isHidden() const;
    void setHidden(bool hidden);
    /// Nil (the default): transparent.
    std::optional<VLXColor> backgroundColor() const;
    virtual void setBackgroundColor(std::optional<VLXColor> color);
    /// The layer's `masksToBounds`.
    bool clipsToBounds() const;
    void setClipsToBounds(bool clips);
    /// True by default; a view that is not interactive is skipped by hit tests with its subtree.
    bool isUserInteractionEnabled() const { return m_userInteractionEnabled; }
    void setUserInteractionEnabled(bool enabled) { m_userInteractionEnabled = enabled; }
    /// A number the host chooses (0 by default); `viewWithTag` finds it.
    std::int64_t tag() const { return m_tag; }
    void setTag(std::int64_t tag) { m_tag = tag; }

    // --- tree ----------------------------------------------------------------------------
    VLXView* superview() const { return m_superview; }
    /// Back to front.
    const Subviews& subviews() const { return m_subviews; }
    /// The nearest window among this view and its ancestors, or null.
    VLXWindow* window() const;
    /// Appends `view` in front (moving it to the front if it is already a subview), detaching it
    /// from its old superview first. Marks this view and `view` for layout. False, with the tree
    /// unchanged, for null, this view or one of its ancestors.
    bool addSubview(std::shared_ptr<VLXView> view);
    /// Inserts at `index` among the subviews (clamped to the count, counted once `view` left its
    /// old place); its layer goes just below the layer of the subview it lands below, or in front
    /// of everything when it lands frontmost.
    bool insertSubview(std::shared_ptr<VLXView> view, std::size_t index);
    /// Just above / below `sibling` (a subview of this view); false when it is not one.
    bool insertSubviewAbove(std::shared_ptr<VLXView> view, const VLXView* sibling);
    bool insertSubviewBelow(std::shared_ptr<VLXView> view, const VLXView* sibling);
    void bringSubviewToFront(const VLXView* view);
    void sendSubviewToBack(const VLXView* view);
    /// Detaches the view (and its layer); nothing when it has no superview.
    void removeFromSuperview();
    /// True when `view` is this view or one of its ancestors.
    bool isDescendantOfView(const VLXView* view) const;
    /// This view or the first descendant (depth first, back to front) with `tag`; null if none.
    VLXView* viewWithTag(std::int64_t tag);

    /// Tree hooks, empty by default: called around every change of superview and window.
    virtual void willMoveToSuperview(VLXView* newSuperview);
    virtual void didMoveToSuperview();
    virtual void willMoveToWindow(VLXWindow* newWindow);
    virtual void didMoveToWindow();
    virtual void didAddSubview(VLXView& subview);
    virtual void willRemoveSubview(VLXView& subview);

    // --- layout --------------------------------------------------------------------------
    /// Marks the view; the window's next frame (or `layoutIfNeeded`) lays it out.
    void setNeedsLayout();
    bool needsLayout() const;
    /// Lays out every marked view of this subtree now, parents before children, including views
    /// marked during the pass. Views outside windows are laid out only through this call (or the
    /// run loop's layout phase, which serves every marked layer tree).
    void layoutIfNeeded();
    /// Positions the subviews; the base does nothing. Overrides call the base first.
    virtual void layoutSubviews();
    /// The size this view would like within `size`; the base answers its bounds size.
    virtual VLXSize sizeThatFits(VLXSize size) const;
    /// Resizes the view to `sizeThatFits(bounds size)`, keeping the frame's origin.
    void sizeToFit();

    // --- drawing -------------------------------------------------------------------------
    /// Marks the view for the display pass. Only views whose class overrides `drawRect` draw
    /// (see `makeWithFrame`); a new such view starts marked.
    void setNeedsDisplay();
    /// Draws the view's content into `context` (the current context too), in bounds
    /// coordinates; `rect` is the whole bounds. Called in the display pass for non-empty bounds.
    /// The base draws nothing, and a view that does not override it gets no backing bitmap.
    virtual void drawRect(const VLXRect& rect, VLXGraphicsContext& context);

    // --- conversion and hit testing ------------------------------------------------------
    /// Between this view's bounds coordinates and `view`'s (both origins included). A null
    /// `view` means the window's coordinates (the root's superview space when there is no
    /// window); views of different trees convert as if their roots shared one superview.
    VLXPoint convertPointToView(VLXPoint point, const VLXView* view) const;
    VLXPoint convertPointFromView(VLXPoint point, const VLXView* view) const;
    VLXRect convertRectToView(const VLXRect& rect, const VLXView* view) const;
    VLXRect convertRectFromView(const VLXRect& rect, const VLXView* view) const;
    /// `point` in this view's coordinates. Null when the view is hidden, not interactive, has
    /// alpha below 0.01 or `pointInside` says no; else the deepest subview (front to back) that
    /// answers, or this view. Reads model values, never the presentation.
    virtual std::shared_ptr<VLXView> hitTest(VLXPoint point);
    /// True when `point` (in this view's coordinates) is inside the bounds.
    virtual bool pointInside(VLXPoint point) const;

    // --- touches --------------------------------------------------------------------------
    using Touches = std::vector<std::shared_ptr<VLXTouch>>;
    /// The touches of this view (hit when they began) that began, moved, ended or were
    /// cancelled, with their event, after the recognisers have seen them. The base passes them
    /// on to the superview, so a container hears the touches of subviews that do not handle
    /// them; the window ends the chain.
    virtual void touchesBegan(const Touches& touches, const VLXEvent& event);
    virtual void touchesMoved(const Touches& touches, const VLXEvent& event);
    virtual void touchesEnded(const Touches& touches, const VLXEvent& event);
    virtual void touchesCancelled(const Touches& touches, const VLXEvent& event);

    // --- gesture recognisers ----------------------------------------------------------------
    /// Stored in the order added; adding one twice keeps one entry. Adding attaches the
    /// recogniser to this view (moving it from any other view); removing detaches it, cancelling
    /// a gesture in progress.
    void addGestureRecognizer(std::shared_ptr<VLXGestureRecognizer> recognizer);
    void removeGestureRecognizer(const VLXGestureRecognizer* recognizer);
    const std::vector<std::shared_ptr<VLXGestureRecognizer>>& gestureRecognizers() const {
        return m_gestureRecognizers;
    }

    // --- constraints and safe area --------------------------------------------------------
    /// Anchors for building layout constraints (`VLXLayoutAnchor`). Each call may give a new
    /// object; anchors of the same view and attribute are equal (`isEqual`).
    std::shared_ptr<VLXLayoutAnchor> topAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> leftAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> bottomAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> rightAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> centerXAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> centerYAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> widthAnchor() const;
    std::shared_ptr<VLXLayoutAnchor> heightAnchor() const;
    /// True by default; stored only (constraints are never solved here).
    bool translatesAutoresizingMaskIntoConstraints() const { return m_translatesAutoresizingMask; }
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates) {
        m_translatesAutoresizingMask = translates;
    }
    /// The part of the window's safe-area insets that covers this view (zero outside a window).
    VLXEdgeInsets safeAreaInsets() const;
    /// The guide whose layout frame is the bounds inset by `safeAreaInsets()`; made on first use
    /// and kept.
    const std::shared_ptr<VLXLayoutGuide>& safeAreaLayoutGuide() const;

    // --- animation -----------------------------------------------------------------------
    /// Runs `animations` now; the view changes it makes (alpha, frame, bounds, center,
    /// background colour, transform) animate from what is on screen to their new values over
    /// `duration` with the curve of `options`, starting after `delay` (filling backwards until
    /// then). Stand-alone layers changed inside the block animate with the same duration and
    /// curve, without the delay. A duration of 0 (or NaN, ∞, negative) and no delay changes
    /// everything at once, stand-alone layers included; with a delay, view changes then jump
    /// when it is over. Blocks nest: an inner block's settings hold inside it. `completion` runs
    /// from the run loop (its Callbacks phase, never inside `animate`) once every animation of
    /// the block and of the blocks nested in it has stopped: finished is false when one of the
    /// view animations was interrupted (replaced by a new animation of the same key or
    /// removed); with nothing to animate it runs once the block's changes have committed, with
    /// true. The animations start when the transaction open around the call commits (at once
    /// outside any transaction, else at the end of the turn).
    static void animate(double duration, double delay, VLXViewAnimationOptions options,
                        const std::function<void()>& animations, Completion completion = {});
    static void animate(double duration, const std::function<void()>& animations,
                        Completion completion = {});
    /// True inside an animation block that animates (not inside `performWithoutAnimation` or a
    /// block that changes things at once).
    static bool isAnimating();
    /// Runs `block` with every change immediate (views and stand-alone layers: actions are
    /// disabled), even inside an animation block.
    static void performWithoutAnimation(const std::function<void()>& block);

    // --- description ---------------------------------------------------------------------
    /// "<VLXView: 0x…; frame = (0 0; 10 10); layer = <VLXLayer: 0x…>>" plus what differs from
    /// the defaults (hidden, alpha, clipsToBounds, userInteractionEnabled = NO, tag).
    std::string description() const override;
    /// This view's description, then each subview's, indented by "   | " per level.
    std::string recursiveDescription() const;

    // --- layer delegate ------------------------------------------------------------------
    /// "No action" outside animation blocks; inside one, the block's animation for the view
    /// keys (other keys: no action).
    VLXLayerActionAnswer actionForLayer(VLXLayer& layer, std::string_view key) override;
    void drawLayer(VLXLayer& layer, VLXGraphicsContext& context) override;
    void layoutSublayersOfLayer(VLXLayer& layer) override;

protected:
    VLXView();
    /// Runs `VLXObject::init`, makes the backing layer, becomes its delegate and sets the frame.
    /// Overrides call the base first.
    virtual void initWithFrame(const VLXRect& frame);

    /// How subclasses make themselves: `VLXMakeShared<T>()`, then the initialiser chain from
    /// `initWithFrame(frame)`. Whether T (or a class between it and `VLXView`) overrides
    /// `drawRect` is read from its type here: only such views get a backing bitmap.
    template <class T>
    static std::shared_ptr<T> makeWithFrame(const VLXRect& frame) {
        auto view = VLXMakeShared<T>();
        static_cast<VLXView&>(*view).m_drawsContent =
            !std::is_same_v<decltype(&T::drawRect),
                            void (VLXView::*)(const VLXRect&, VLXGraphicsContext&)>;
        static_cast<VLXView&>(*view).initWithFrame(frame);
        return view;
    }

private:
    friend struct VLXViewAccess;

    std::shared_ptr<VLXLayer> m_layer;
    VLXView* m_superview = nullptr;
    Subviews m_subviews;
    std::vector<std::shared_ptr<VLXGestureRecognizer>> m_gestureRecognizers;
    mutable std::shared_ptr<VLXLayoutGuide> m_safeAreaLayoutGuide;
    std::int64_t m_tag = 0;
    bool m_userInteractionEnabled = true;
    bool m_translatesAutoresizingMask = true;
    bool m_drawsContent = false;
    bool m_isWindow = false;  // set by VLXWindow, so that window() walks up without casts
};
