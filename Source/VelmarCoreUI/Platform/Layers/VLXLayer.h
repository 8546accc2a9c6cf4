#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Primitives/VLXTransform3D.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXAnimation;
class VLXGraphicsContext;
class VLXImage;
class VLXLayer;

/// The answer of a layer delegate to `actionForLayer`: `std::nullopt` means "no opinion" (the
/// search goes on), a value is the answer and ends the search; a null animation inside the value
/// is the "no action" answer (`VLXLayerDelegate::noAction()`).
using VLXLayerActionAnswer = std::optional<std::shared_ptr<VLXAnimation>>;

/// The owner of a layer (usually its view). Held by the layer as a raw pointer that the owner
/// clears before it goes away. Every method is optional: the defaults do nothing.
class VLX_EXPORT VLXLayerDelegate {
public:
    virtual ~VLXLayerDelegate();

    /// The action for a change of `key`. `std::nullopt` (the default) lets the layer go on
    /// searching (its `actions` dictionary, then `defaultActionForKey`); `noAction()` stops the
    /// search without an action; an animation is the action.
    virtual VLXLayerActionAnswer actionForLayer(VLXLayer& layer, std::string_view key);
    /// The "no action" answer of `actionForLayer`.
    static VLXLayerActionAnswer noAction() { return std::shared_ptr<VLXAnimation>(); }

    /// Draws the layer's content; called by the base `VLXLayer::drawInContext` with the context
    /// set up in the layer's bounds coordinates.
    virtual void drawLayer(VLXLayer& layer, VLXGraphicsContext& context);
    /// Called by the base `layoutSublayers`.
    virtual void layoutSublayersOfLayer(VLXLayer& layer);
    /// Lets the delegate provide the contents itself (e.g. `layer.setContents(image)`). Return
    /// true when it did; false (the default) lets `display` draw through `drawInContext`.
    virtual bool displayLayer(VLXLayer& layer);

protected:
    VLXLayerDelegate() = default;
    VLXLayerDelegate(const VLXLayerDelegate&) = default;
    VLXLayerDelegate& operator=(const VLXLayerDelegate&) = default;
};

/// A rectangle of the layer tree: geometry, appearance, custom drawing, layout, actions and the
/// animation timeline. The compositor renders the tree of presentation layers.
///
/// Geometry: `bounds` is the layer's own coordinate space; `position` is where the
/// `anchorPoint` (unit coordinates of the bounds, default (0.5, 0.5)) sits in the superlayer;
/// `transform` applies about the anchor point. A point p of the bounds maps to the superlayer as
/// position + (p − anchor in bounds) × transform (the z = 0 plane projected; m14 / m24 / m44
/// give perspective).
///
/// Key-value: every property has a key ("position", "opacity", …) readable and writable through
/// `valueForKey` / `setValue`, and key paths reach into structures ("position.x",
/// "bounds.size.width", "transform.scale", …). Keys that are not built in live in an open
/// key-value store, so subclasses declare animatable properties without new members: a getter
/// reads `storedDouble("progress")`, a setter calls `setValue(v, "progress")`. Store keys take
/// part in actions, `needsDisplayForKey`, interpolation and presentation copies like built-in
/// ones.
///
/// Actions: every change of a property (built-in, store, key path) first asks
/// `actionForKey(key)`, before the new value is stored, unless the current transaction disables
/// actions; a non-null answer is added with `addAnimation(action, key)`. Setting a value equal
/// to the current one changes nothing and runs no action.
///
/// Presentation: `presentationLayer()` is a copy made through `newInstance()` +
/// `initWithLayer(model)`, with the attached animations applied at the clock's time. Copies are
/// detached (no superlayer, no sublayers, no delegate, no animations); changes made to them never
/// run actions nor mark anything.
///
/// Main thread only, like the run loop that drives it.
class VLX_EXPORT VLXLayer : public VLXObject {
public:
    using Sublayers = std::vector<std::shared_ptr<VLXLayer>>;
    using Store = std::map<std::string, VLXValue, std::less<>>;
    /// Per-key actions; a null animation under a key means "no action" and ends the search.
    using Actions = std::map<std::string, std::shared_ptr<VLXAnimation>, std::less<>>;

    static std::shared_ptr<VLXLayer> create();
    ~VLXLayer() override;

    // --- geometry ------------------------------------------------------------------------
    VLXRect bounds() const { return m_bounds; }
    /// A change of size marks the layer for layout (and for display when
    /// `needsDisplayOnBoundsChange`). Stored as given (negative sizes included).
    void setBounds(const VLXRect& bounds);
    VLXPoint position() const { return m_position; }
    void setPosition(VLXPoint position);
    /// Unit coordinates of the bounds; (0.5, 0.5) by default.
    VLXPoint anchorPoint() const { return m_anchorPoint; }
    void setAnchorPoint(VLXPoint anchorPoint);
    /// Drawing order among siblings: higher values draw in front (stable for equal values).
    double zPosition() const { return m_zPosition; }
    void setZPosition(double zPosition);
    VLXTransform3D transform() const { return m_transform; }
    void setTransform(const VLXTransform3D& transform);
    /// The x-y part of `transform`.
    VLXAffineTransform affineTransform() const;
    void setAffineTransform(const VLXAffineTransform& transform);

    /// The smallest rectangle of the superlayer that holds the transformed bounds (standardised:
    /// never a negative size).
    VLXRect frame() const;
    /// Sets position and bounds.size (bounds.origin is kept) so that `frame()` gives `frame`.
    /// The rectangle is standardised first: a negative width or height gives the same layer as
    /// the equivalent positive rectangle. With a non-identity transform the size is the frame's
    /// size taken back through the transform's scale (exact for scales and translations).
    /// Non-finite input is stored as it comes (the frame then reads back non-finite).
    void setFrame(const VLXRect& frame);

    // --- appearance ----------------------------------------------------------------------
    double opacity() const { return m_opacity; }
    void setOpacity(double opacity);
    bool isHidden() const { return m_hidden; }
    void setHidden(bool hidden);
    /// Nil: no background.
    const std::optional<VLXColor>& backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(std::optional<VLXColor> color);
    /// Rounds background and border (and the clip when `masksToBounds`).
    double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);
    /// The border draws above contents and sublayers, inside the bounds.
    double borderWidth() const { return m_borderWidth; }
    void setBorderWidth(double width);
    /// Nil: no border. Opaque black by default, as the platform has it.
    const std::optional<VLXColor>& borderColor() const { return m_borderColor; }
    void setBorderColor(std::optional<VLXColor> color);
    bool masksToBounds() const { return m_masksToBounds; }
    void setMasksToBounds(bool masks);
    /// A layer whose alpha masks this layer's rendering, in this layer's coordinates. Setting it
    /// detaches it from any superlayer; a mask that is this layer or one of its ancestors is
    /// refused (false, nothing changes).
    const std::shared_ptr<VLXLayer>& mask() const { return m_mask; }
    bool setMask(std::shared_ptr<VLXLayer> mask);
    /// The layer whose mask this layer is, or null.
    VLXLayer* maskOwner() const { return m_maskOwner; }
    /// Pixels per point of the backing store made by `display` (1 by default; non-finite or
    /// non-positive values are refused).
    double contentsScale() const { return m_contentsScale; }
    void setContentsScale(double scale);
    /// The image shown in the bounds, below the sublayers: set by hand or made by `display`.
    const std::shared_ptr<VLXImage>& contents() const { return m_contents; }
    void setContents(std::shared_ptr<VLXImage> contents);
    const std::optional<std::string>& name() const { return m_name; }
    void setName(std::optional<std::string> name);
    /// When true, a change of bounds size also calls `setNeedsDisplay` (false by default).
    bool needsDisplayOnBoundsChange() const { return m_needsDisplayOnBoundsChange; }
    void setNeedsDisplayOnBoundsChange(bool needs) { m_needsDisplayOnBoundsChange = needs; }

    // --- tree ----------------------------------------------------------------------------
    /// The parent, or null (kept valid by the tree: a parent owns its sublayers).
    VLXLayer* superlayer() const { return m_superlayer; }
    /// Back to front.
    const Sublayers& sublayers() const { return m_sublayers; }
    /// Appends `layer` in front of the other sublayers, detaching it from its old parent (or
    /// from being a mask). Refused (false, the tree unchanged) for null, this layer itself or
    /// one of its ancestors.
    bool addSublayer(std::shared_ptr<VLXLayer> layer);
    /// Inserts at `index` (0 = backmost; clamped to the count, counted after `layer` left its
    /// old place). Refusals as `addSublayer`.
    bool insertSublayer(std::shared_ptr<VLXLayer> layer, std::size_t index);
    /// Just below `sibling`; a null sibling means backmost. False when `sibling` is not a
    /// sublayer or for the refusals of `addSublayer`.
    bool insertSublayerBelow(std::shared_ptr<VLXLayer> layer, const VLXLayer* sibling);
    /// Just above `sibling`; a null sibling means frontmost.
    bool insertSublayerAbove(std::shared_ptr<VLXLayer> layer, const VLXLayer* sibling);
    /// Puts `newLayer` where `oldLayer` was and detaches `oldLayer`. A null `newLayer` just
    /// removes `oldLayer`. False when `oldLayer` is not a sublayer or `newLayer` is refused.
    bool replaceSublayer(const VLXLayer* oldLayer, std::shared_ptr<VLXLayer> newLayer);
    /// Detaches the layer from its superlayer (or from the layer it masks); nothing otherwise.
    void removeFromSuperlayer();
    /// True when `layer` is this layer or lies below it (through sublayers and masks).
    bool isDescendantOf(const VLXLayer* layer) const;

    // --- key-value -----------------------------------------------------------------------
    /// Built-in keys: "bounds", "position", "anchorPoint", "zPosition", "transform",
    /// "affineTransform", "frame", "opacity", "hidden", "backgroundColor", "cornerRadius",
    /// "borderWidth", "borderColor", "masksToBounds", "mask", "contentsScale", "contents",
    /// "name", "needsDisplayOnBoundsChange". Values are boxed as `VLXValue` (points, sizes,
    /// rects and transforms boxed, colours as colours, images and layers as objects, nil for
    /// an unset optional). Other keys read the store, then `defaultValueForKey`.
    VLXValue valueForKey(std::string_view key) const;
    /// Built-in keys are converted to their type; a value of the wrong kind is ignored (nil
    /// clears the optional ones and is ignored by the others). Other keys are stored as given
    /// (nil removes the entry, so the default shows again).
    void setValue(const VLXValue& value, std::string_view key);
    /// "key.sub.sub": sub-keys reach into boxed points ("x", "y"), sizes ("width", "height"),
    /// rects ("origin", "size", "x", "y", "width", "height") and dictionaries; transforms
    /// answer "scale" (mean of the three axis scales), "scale.x/y/z", "rotation" (= about z),
    /// "rotation.x/y/z", "translation" (a size), "translation.x/y/z". Unknown paths give nil.
    VLXValue valueForKeyPath(std::string_view keyPath) const;
    /// Changes one component and stores the whole property again (one action, under the root
    /// key: "transform" for "transform.scale"). Transform components decompose the transform into
    /// scale, a rotation about z and translation and compose it again (shear and rotations about x
    /// or y are then lost); "transform.scale" sets all three axis scales. Unknown paths change
    /// nothing.
    void setValueForKeyPath(const VLXValue& value, std::string_view keyPath);

    /// The value of a store key when nothing was stored (nil by default). Subclasses give their
    /// properties' defaults here.
    virtual VLXValue defaultValueForKey(std::string_view key) const;
    /// The whole store (not the built-in properties).
    const Store& storedValues() const { return m_store; }
    /// Typed readers of `valueForKey` for subclass properties.
    VLXValue storedValue(std::string_view key) const;
    double storedDouble(std::string_view key, double defaultValue = 0) const;
    bool storedBool(std::string_view key, bool defaultValue = false) const;
    std::optional<VLXColor> storedColor(std::string_view key) const;
    VLXPoint storedPoint(std::string_view key, VLXPoint defaultValue = VLXPointZero) const;
    /// True for the built-in keys listed at `valueForKey`.
    static bool isBuiltInKey(std::string_view key);

    // --- actions -------------------------------------------------------------------------
    VLXLayerDelegate* delegate() const { return m_delegate; }
    void setDelegate(VLXLayerDelegate* delegate) { m_delegate = delegate; }
    const Actions& actions() const { return m_actions; }
    void setActions(Actions actions) { m_actions = std::move(actions); }
    /// The action for a change of `key`: the delegate's answer (a "no action" answer stops the
    /// search with null), then the `actions` dictionary, then `defaultActionForKey` — only once
    /// the layer has been committed (a layer being set up gets no implicit animations).
    virtual std::shared_ptr<VLXAnimation> actionForKey(std::string_view key);
    /// The class-level implicit action: for "bounds", "position", "anchorPoint", "opacity",
    /// "backgroundColor", "cornerRadius", "borderColor", "borderWidth", "transform" and
    /// "contents", a basic animation of that key path, from nil, with the current transaction's
    /// animation duration and timing function; null for other keys. Reached only when the
    /// delegate has no opinion (a view answers "no action" outside its animation blocks).
    /// Subclasses add their keys and call the base for the rest.
    virtual std::shared_ptr<VLXAnimation> defaultActionForKey(std::string_view key);
    /// True for the built-in animatable keys (those of `defaultActionForKey`).
    static bool isImplicitlyAnimatableKey(std::string_view key);
    /// Whether a change of `key` redraws the layer (class-level meaning, asked per instance).
    /// False for every key by default.
    virtual bool needsDisplayForKey(std::string_view key) const;

    // --- display -------------------------------------------------------------------------
    void setNeedsDisplay();
    bool needsDisplay() const { return m_needsDisplay; }
    /// `display()` when marked (clears the mark first).
    void displayIfNeeded();
    /// `displayIfNeeded` for this layer, its mask and every descendant, parents first.
    void displayTreeIfNeeded();
    /// Makes the contents: the delegate's `displayLayer` when it handles it, else a transparent
    /// bitmap of bounds × contentsScale drawn by `drawInContext` (nil contents for empty or
    /// unusable bounds). The new contents replace the old without an action.
    virtual void display();
    /// Draws the layer's own content, in bounds coordinates. The base asks the delegate's
    /// `drawLayer`.
    virtual void drawInContext(VLXGraphicsContext& context);

    // --- layout --------------------------------------------------------------------------
    void setNeedsLayout();
    bool needsLayout() const { return m_needsLayout; }
    /// Lays out every marked layer of this subtree, parents before children, including layers
    /// marked during the pass (a pass repeats while anything is marked, at most 64 times).
    void layoutIfNeeded();
    /// Positions the sublayers. The base asks the delegate's `layoutSublayersOfLayer`.
    virtual void layoutSublayers();

    /// `layoutIfNeeded` / `displayTreeIfNeeded` of every tree with a marked layer (run by the
    /// main run loop's Layout and Display phases, so a marked layer is served within the turn,
    /// attached to a window or not).
    static void layoutAllIfNeeded();
    static void displayAllIfNeeded();

    // --- hit testing and conversion ------------------------------------------------------
    /// `point` in this layer's coordinates: inside the (standardised) bounds, half-open on the
    /// max edges.
    virtual bool containsPoint(VLXPoint point) const;
    /// `point` in the superlayer's coordinates. Null unless the layer is visible (not hidden)
    /// and contains the point; else the deepest descendant containing it, front-most first
    /// (hidden ones skipped), or this layer.
    std::shared_ptr<VLXLayer> hitTest(VLXPoint point) const;
    /// Between this layer's coordinates and `layer`'s. `layer` may be anywhere in the same
    /// tree; null means the coordinates of this tree's root's superlayer. Layers of different
    /// trees convert as if their roots shared one superlayer.
    VLXPoint convertPointFromLayer(VLXPoint point, const VLXLayer* layer) const;
    VLXPoint convertPointToLayer(VLXPoint point, const VLXLayer* layer) const;
    /// The bounding box of the converted corners (null stays null).
    VLXRect convertRectFromLayer(const VLXRect& rect, const VLXLayer* layer) const;
    VLXRect convertRectToLayer(const VLXRect& rect, const VLXLayer* layer) const;

    // --- animations ----------------------------------------------------------------------
    /// Attaches a copy of `animation` (made through its virtual copy). A key already in use
    /// replaces that animation, which then gets `animationDidStop(finished = false)`; animations
    /// without key coexist. A begin time of 0 becomes the commit time of the current
    /// transaction. Null is ignored.
    void addAnimation(const std::shared_ptr<VLXAnimation>& animation,
                      std::optional<std::string> key = std::nullopt);
    /// Detaches; the animation gets `animationDidStop(finished = false)`.
    void removeAnimationForKey(std::string_view key);
    void removeAllAnimations();
    /// The attached animation under `key` by default. Subclasses may override it (as a factory,
    /// say); the compositor and the timeline use `attachedAnimation` instead.
    virtual std::shared_ptr<VLXAnimation> animationForKey(std::string_view key) const;
    /// The attached animation under `key`, or null (do not modify it).
    std::shared_ptr<VLXAnimation> attachedAnimation(std::string_view key) const;
    /// Keys of the attached animations, in the order added (animations without key left out).
    std::vector<std::string> animationKeys() const;
    /// Every attached animation, keyed or not, in the order added.
    std::vector<std::shared_ptr<VLXAnimation>> attachedAnimations() const;
    bool hasAnimations() const;

    /// Null until the layer has been committed once (the first transaction commit after its
    /// creation). Otherwise a copy through `initWithLayer` with every attached animation applied
    /// at the clock's time, in the order added (the values the last tick evaluated when it ran
    /// at that time). The copy is cached while nothing changes and the clock stands still: treat
    /// it as read-only. When it is needed again and nobody else holds it, the same object is
    /// filled again instead of a new one. A presentation layer answers itself.
    std::shared_ptr<VLXLayer> presentationLayer() const;
    /// Runs the animation tick at `time` (the run loop's Tick phase calls it with the clock's
    /// reading; hosts and benchmarks may call it themselves): delivers start and stop callbacks
    /// (through the Callbacks phase), drops finished animations, then evaluates every running
    /// animation of every model layer into presentation state. Keyframe and basic animations of
    /// numbers are evaluated in one pass over a flat list kept up to date as animations are
    /// added, removed, committed or finished, writing doubles without allocating; other
    /// animations (groups, points, rectangles, transforms, colours, subclasses) are applied to
    /// the layer's reused presentation copy. `presentationLayer()` at the same clock reading
    /// then only writes those values into its copy.
    static void tickAnimations(double time);

    /// The layer a presentation copy was made from; a model layer answers itself.
    std::shared_ptr<VLXLayer> modelLayer() const;
    bool isPresentationLayer() const { return m_isPresentation; }
    /// True once a transaction commit happened after the layer was created.
    bool isCommitted() const;
    /// True while an attached animation animates a key for which `needsDisplayForKey` holds: the
    /// compositor then redraws the presentation copy (`display()` on it) every frame instead of
    /// using the model's cached contents.
    bool presentationNeedsRedraw() const;

    // --- subclassing ---------------------------------------------------------------------
    /// A new, uninitialised instance of the most-derived class, for presentation copies.
    /// Every subclass overrides it as `return VLXMakeShared<MyLayer>();` (no `init()`:
    /// `initWithLayer` runs instead).
    virtual std::shared_ptr<VLXLayer> newInstance() const;
    /// Copies every model property and the whole store from `other` (not the tree, delegate,
    /// animations or marks). Subclasses call the base first, then copy their own members.
    virtual void initWithLayer(const VLXLayer& other);

    // --- change tracking -----------------------------------------------------------------
    /// Bumped on every change that affects how this layer renders: model properties, store,
    /// contents, its sublayer list, its mask, its animations.
    std::uint64_t generation() const { return m_generation; }
    /// Bumped on any model, tree, contents or animation change of any model layer: a frame with
    /// the same count as the last one needs no new rendering unless animations run.
    static std::uint64_t globalChangeCount();
    /// Model layers that have animations attached right now.
    static std::size_t animatedLayerCount();

    // --- description ---------------------------------------------------------------------
    /// An indented dump of this subtree, one line per layer: class, name, frame, bounds,
    /// position, then what differs from the defaults (anchor, z, opacity, hidden, colours,
    /// corner radius, border, masking, contents size, transform, animation keys), sublayer
    /// count; masks are listed under "mask:" lines.
    std::string layerTreeAsText() const;
    /// "<VLXLayer: 0x…; frame = {{0, 0}, {10, 10}}>".
    std::string description() const override;

protected:
    VLXLayer();
    void init() override;

    /// Appends subclass details to this layer's `layerTreeAsText` line (" path = …"); the
    /// base appends nothing.
    virtual void appendTreeTextAttributes(std::string& line) const;

    /// Stores a store key without asking for an action (initialisers setting defaults).
    void setStoredValueWithoutAction(std::string_view key, VLXValue value);
    /// Notes a change that affects rendering (bumps the counters). Subclasses with members
    /// outside the store call it from their setters.
    void didChangeAppearance();
    /// For subclass setters of members outside the store: runs the action search for `key`
    /// (unless actions are disabled or this is a presentation copy), then the caller stores the
    /// value and calls `didChangeValueForKey(key)` (which marks display when
    /// `needsDisplayForKey`, and bumps the counters).
    void willChangeValueForKey(std::string_view key);
    void didChangeValueForKey(std::string_view key);

private:
    friend struct VLXLayerAccess;
    struct AnimationState;

    // Stores `value` with the will / did-change notifications of `key` unless it is the same
    // value (NaN counts as equal to NaN); true when it changed.
    template <class T>
    bool changeProperty(T& member, T value, std::string_view key);
    void setBuiltInValue(int keyIndex, const VLXValue& value, std::string_view key);
    void setStored(std::string_view key, VLXValue value, bool runAction);
    bool canAdopt(const VLXLayer* layer) const;
    void detachFromParent();
    void insertAdopted(std::shared_ptr<VLXLayer> layer, std::size_t index);
    void noteTreeChange();
    void markSubtreeNeedsLayout();
    void markSubtreeNeedsDisplay();
    std::shared_ptr<VLXLayer> presentationAt(double time) const;

    VLXRect m_bounds{};
    VLXPoint m_position{};
    VLXPoint m_anchorPoint{0.5, 0.5};
    double m_zPosition = 0;
    VLXTransform3D m_transform{};
    double m_opacity = 1;
    bool m_hidden = false;
    bool m_masksToBounds = false;
    bool m_needsDisplayOnBoundsChange = false;
    bool m_isPresentation = false;
    bool m_needsDisplay = false;
    bool m_needsLayout = false;
    bool m_subtreeNeedsDisplay = false;
    bool m_subtreeNeedsLayout = false;
    bool m_queuedForLayout = false;   // listed as a root for the next layout pass
    bool m_queuedForDisplay = false;  // listed as a root for the next display pass
    std::optional<VLXColor> m_backgroundColor;
    double m_cornerRadius = 0;
    double m_borderWidth = 0;
    std::optional<VLXColor> m_borderColor;
    double m_contentsScale = 1;
    std::shared_ptr<VLXImage> m_contents;
    std::optional<std::string> m_name;
    std::shared_ptr<VLXLayer> m_mask;
    VLXLayer* m_maskOwner = nullptr;
    VLXLayer* m_superlayer = nullptr;
    Sublayers m_sublayers;
    Store m_store;
    VLXLayerDelegate* m_delegate = nullptr;
    Actions m_actions;
    std::weak_ptr<VLXLayer> m_model;
    std::uint64_t m_generation = 0;
    std::uint64_t m_createdAtCommit = 0;
    std::unique_ptr<AnimationState> m_animationState;
    mutable std::shared_ptr<VLXLayer> m_presentationCache;
    mutable std::uint64_t m_presentationGeneration = 0;
    mutable double m_presentationTime = 0;
    // The copy's own generation right after it was filled, and whether only numbers were written
    // then (so the next fill may just write the new numbers).
    mutable std::uint64_t m_presentationCopyGeneration = 0;
    mutable bool m_presentationNumbersOnly = false;
};
