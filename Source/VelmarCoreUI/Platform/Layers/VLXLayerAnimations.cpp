// The animation timeline of layers: attaching, committing, ticking, callbacks, presentation.

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

#include <algorithm>
#include <cmath>
#include <typeinfo>

#include <VelmarCoreUI/Platform/Foundation/Private/VLXRunLoopDetail.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Layers/Private/VLXLayerInternal.h>
#include <VelmarCoreUI/Platform/Layers/VLXAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXAnimationGroup.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXInterpolation.h>
#include <VelmarCoreUI/Platform/Layers/VLXKeyframeAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

namespace {

// A number animation (keyframes or basic, of the exact library classes, whose values are all
// numbers) as the tick evaluates it: everything the loop needs, in one flat record.
struct NumberRecord {
    VLXKeyframeAnimation::NumberFrames frames{};  // keyframes: the unpacked frames
    double from = 0;                              // basic animations (x of a point)
    double to = 0;
    double fromY = 0;  // basic animations of "position" and "anchorPoint"
    double toY = 0;
    double begin = 0;
    double duration = 0;
    const VLXMediaTimingFunction* timing = nullptr;
    bool keyframes = false;  // else a basic animation
    bool committed = false;
    bool backwards = false;
    bool forwards = false;
    bool discrete = false;
    bool point = false;
};

// The evaluated value of one number animation.
struct NumberSlot {
    double value = 0;
    double valueY = 0;  // points
    // The value is this frame (keyframes) or end (basic: 0 from, 1 to) as it was given, written
    // as given so store keys keep its encoding; −1: computed.
    std::int32_t exact = -1;
    bool applies = false;  // the animation applies at that time
    bool valid = false;    // false: not evaluated
    bool point = false;    // `value`, `valueY` are a point
};

// Model layers with animations (ticked every turn, attached or not, hidden or not) and those
// with animations waiting for their transaction's commit. Layers leave both lists when they die.
//
// The registry of number animations (`records`, evaluated into `slots`) is rebuilt at the next
// tick after an animation was added, removed, committed or finished; `slots` then hold the
// values at `tickTime`. Layers with other animations are listed in `generalLayers`.
struct Timeline {
    std::vector<VLXLayer*> animated;
    std::vector<VLXLayer*> pending;
    std::vector<VLXLayer*> scratch;
    std::vector<NumberRecord> records;
    std::vector<NumberSlot> slots;
    std::vector<VLXLayer*> generalLayers;
    double tickTime = NAN;
    // `VLXKeyframeAnimation::numberFramesDropCount()` when the registry was built: the records
    // point into unpacked frames, so any drop since means rebuilding.
    std::uint64_t framesDrops = 0;
    // No start or finish is due before this time (bookkeeping is skipped until then).
    double nextEventTime = -INFINITY;
    std::uint64_t commitCount = 0;
    bool dirty = true;
    bool installed = false;
};

bool fillsBackwards(VLXFillMode mode) {
    return mode == VLXFillMode::Backwards || mode == VLXFillMode::Both;
}

bool fillsForwards(VLXFillMode mode) {
    return mode == VLXFillMode::Forwards || mode == VLXFillMode::Both;
}

// Only the exact library classes (as made by `create` / `copy`, which wrap them in a final
// helper that adds nothing): a subclass may compute its values differently.
template <class T>
bool isExactly(const std::type_info& type) {
    return type == typeid(T) || type == typeid(vlx::detail::Constructible<T>);
}

std::optional<NumberRecord> makeNumberRecord(const VLXLayerAnimationEntry& entry) {
    const VLXAnimation* animation = entry.animation.get();
    NumberRecord record;
    const std::type_info& type = typeid(*animation);
    if (isExactly<VLXKeyframeAnimation>(type)) {
        const auto* keyframes = static_cast<const VLXKeyframeAnimation*>(animation);
        if (keyframes->keyPath().empty()) {
            return std::nullopt;
        }
        const auto frames = keyframes->numberFrames();
        if (!frames) {
            return std::nullopt;
        }
        record.keyframes = true;
        record.frames = *frames;
        record.discrete = keyframes->calculationMode() == VLXAnimationCalculationMode::Discrete;
    } else if (isExactly<VLXBasicAnimation>(type)) {
        const auto* basic = static_cast<const VLXBasicAnimation*>(animation);
        if (basic->keyPath().empty() || basic->toValue().isNil()) {
            return std::nullopt;  // "to the model value" reads the model at each evaluation
        }
        const VLXValue* from = &basic->fromValue();
        if (from->isNil()) {
            if (!basic->capturedBase()) {
                return std::nullopt;
            }
            from = &*basic->capturedBase();
        }
        const VLXInterpolationKind kind = VLXInterpolationKindOf(*from);
        if (kind != VLXInterpolationKindOf(basic->toValue())) {
            return std::nullopt;
        }
        if (kind == VLXInterpolationKind::Number) {
            record.from = from->doubleValue();
            record.to = basic->toValue().doubleValue();
        } else if (kind == VLXInterpolationKind::Point &&
                   (basic->keyPath() == "position" || basic->keyPath() == "anchorPoint")) {
            // The two points the compositor moves most: written straight into the copy.
            const VLXPoint a = from->pointValue();
            const VLXPoint b = basic->toValue().pointValue();
            record.point = true;
            record.from = a.x;
            record.fromY = a.y;
            record.to = b.x;
            record.toY = b.y;
        } else {
            return std::nullopt;
        }
    } else {
        return std::nullopt;
    }
    record.begin = entry.beginTime;
    record.committed = entry.committed;
    record.duration = animation->effectiveDuration();
    record.timing = animation->timingFunction().get();
    record.backwards = fillsBackwards(animation->fillMode());
    record.forwards = fillsForwards(animation->fillMode());
    return record;
}

// The value of a number animation at `time`: the same rules as `VLXAnimation::applyToLayer`
// with the keyframe or basic interpolation.
// The record must be current: made just now, or by the registry with no frames dropped since.
#if defined(__GNUC__)
[[gnu::always_inline]]
#endif
inline NumberSlot
evaluateNumber(const NumberRecord& record, double time) {
    NumberSlot slot;
    slot.valid = true;
    slot.point = record.point;
    // Not yet committed: it starts now, so it shows its start.
    const double local = record.committed ? time - record.begin : 0.0;
    double fraction;
    if (std::isnan(local)) {
        return slot;
    }
    if (local < 0.0) {
        if (!record.backwards) {
            return slot;
        }
        fraction = 0.0;
    } else if (local >= record.duration) {
        if (!record.forwards) {
            return slot;
        }
        fraction = 1.0;
    } else {
        fraction = local / record.duration;
    }
    const double progress = record.timing ? record.timing->y(fraction) : fraction;
    slot.applies = true;
    if (record.keyframes) {
        std::ptrdiff_t exact = -1;
        slot.value = VLXKeyframeAnimation::numberAtProgress(record.frames, progress,
                                                            record.discrete, &exact);
        slot.exact = static_cast<std::int32_t>(exact);
    } else if (std::isnan(progress) || progress == -INFINITY) {
        slot.value = record.from;
        slot.valueY = record.fromY;
        slot.exact = 0;
    } else if (progress == INFINITY) {
        slot.value = record.to;
        slot.valueY = record.toY;
        slot.exact = 1;
    } else {
        slot.value = VLXInterpolateDouble(record.from, record.to, progress);
        slot.valueY = VLXInterpolateDouble(record.fromY, record.toY, progress);
    }
    return slot;
}

Timeline& timeline() {
    static Timeline* instance = new Timeline();  // lives as long as the run loop it serves
    return *instance;
}

void eraseFrom(std::vector<VLXLayer*>& list, const VLXLayer* layer) {
    const auto it = std::find(list.begin(), list.end(), layer);
    if (it != list.end()) {
        list.erase(it);
    }
}

void queueStart(const std::shared_ptr<VLXAnimation>& animation) {
    if (!animation->delegate()) {
        return;
    }
    VLXRunLoop::main().performInCallbacksPhase([animation] {
        if (auto delegate = animation->delegate()) {
            delegate->animationDidStart(*animation);
        }
    });
}

// The transaction token is released right after the callback, so a completion block queued by
// that release runs after it in the same phase.
void queueStop(std::shared_ptr<VLXAnimation> animation, bool finished,
               std::shared_ptr<VLXTransactionToken> token) {
    VLXRunLoop::main().performInCallbacksPhase(
        [animation = std::move(animation), finished, token = std::move(token)]() mutable {
            if (auto delegate = animation->delegate()) {
                delegate->animationDidStop(*animation, finished);
            }
            token.reset();
        });
}

}  // namespace

struct VLXLayerAccess {
    static void install() {
        Timeline& t = timeline();
        // Only the loop's thread may register (elsewhere the registrations would be refused and
        // the timeline would never run).
        if (t.installed || !vlx::detail::isLoopThread()) {
            return;
        }
        t.installed = true;
        VLXTransaction::addCommitObserver([](double commitTime) { commit(commitTime); });
        VLXRunLoop& loop = VLXRunLoop::main();
        loop.addObserver(VLXRunLoopPhase::Layout, [] { VLXLayer::layoutAllIfNeeded(); });
        loop.addObserver(VLXRunLoopPhase::Display, [] { VLXLayer::displayAllIfNeeded(); });
        loop.addObserver(VLXRunLoopPhase::Tick, [] { VLXLayer::tickAnimations(VLXClock::now()); });
    }

    // Animations added in the committed transaction start: begin time 0 becomes the commit time.
    static void commit(double commitTime) {
        Timeline& t = timeline();
        ++t.commitCount;
        t.scratch.swap(t.pending);
        t.pending.clear();
        for (VLXLayer* layer : t.scratch) {
            if (!layer->m_animationState) {
                continue;
            }
            layer->m_animationState->pending = false;
            for (auto& entry : layer->m_animationState->entries) {
                if (!entry.committed) {
                    entry.committed = true;
                    entry.beginTime = entry.animation->resolvedBeginTime(commitTime);
                }
            }
            layer->didChangeAppearance();
        }
        t.scratch.clear();
        changed();
    }

    // The animation lists changed: the registry is rebuilt and the events looked at next tick.
    static void changed() {
        Timeline& t = timeline();
        t.dirty = true;
        t.nextEventTime = -INFINITY;
    }

    static void tick(double now) {
        Timeline& t = timeline();
        if (!(now < t.nextEventTime)) {
            bookkeeping(now);
        }
        if (t.dirty || t.framesDrops != VLXKeyframeAnimation::numberFramesDropCount()) {
            rebuild();
        }
        const std::size_t count = t.records.size();
        const NumberRecord* records = t.records.data();
        NumberSlot* slots = t.slots.data();
        for (std::size_t i = 0; i < count; ++i) {
            slots[i] = evaluateNumber(records[i], now);
        }
        t.tickTime = now;
        // The general path writes into each layer's presentation copy. Indexed: applying runs
        // animation and subclass code, which may remove layers from the list.
        for (std::size_t i = 0; i < t.generalLayers.size(); ++i) {
            t.generalLayers[i]->presentationAt(now);
        }
    }

    static void rebuild() {
        Timeline& t = timeline();
        t.records.clear();
        t.generalLayers.clear();
        for (VLXLayer* layer : t.animated) {
            auto* state = layer->m_animationState.get();
            if (!state) {
                continue;
            }
            state->hasGeneralEntries = false;
            for (auto& entry : state->entries) {
                if (auto record = makeNumberRecord(entry)) {
                    entry.slot = static_cast<std::int32_t>(t.records.size());
                    t.records.push_back(*record);
                } else {
                    entry.slot = -1;
                    state->hasGeneralEntries = true;
                }
            }
            if (state->hasGeneralEntries) {
                t.generalLayers.push_back(layer);
            }
        }
        t.slots.assign(t.records.size(), NumberSlot{});
        t.tickTime = NAN;
        t.framesDrops = VLXKeyframeAnimation::numberFramesDropCount();
        t.dirty = false;
    }

    // Start and stop callbacks, removal of finished animations; notes when the next is due.
    static void bookkeeping(double now) {
        Timeline& t = timeline();
        double next = INFINITY;
        // Released after the walk: dropping an animation may drop its delegate, whose
        // destructor may touch layers and the lists.
        std::vector<VLXLayerAnimationEntry> finished;
        t.scratch = t.animated;
        for (VLXLayer* layer : t.scratch) {
            if (!layer->m_animationState) {
                continue;
            }
            auto& entries = layer->m_animationState->entries;
            bool removed = false;
            for (std::size_t i = 0; i < entries.size();) {
                auto& entry = entries[i];
                const double local = now - entry.beginTime;
                if (entry.committed && !entry.started && local >= 0) {
                    entry.started = true;
                    queueStart(entry.animation);
                }
                if (entry.committed && entry.started && !entry.stopped &&
                    local >= entry.animation->activeDuration()) {
                    entry.stopped = true;
                    queueStop(entry.animation, true, std::move(entry.token));
                    if (entry.animation->isRemovedOnCompletion()) {
                        finished.push_back(std::move(entry));
                        entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(i));
                        removed = true;
                        continue;
                    }
                }
                if (entry.committed && !entry.stopped) {
                    next = std::min(next, entry.started
                                              ? entry.beginTime + entry.animation->activeDuration()
                                              : entry.beginTime);
                }
                ++i;
            }
            if (removed) {
                layer->didChangeAppearance();
                t.dirty = true;
                if (entries.empty()) {
                    unregister(*layer);
                }
            }
        }
        t.scratch.clear();
        // A little early rather than late: "now − begin ≥ duration" and "now ≥ begin + duration"
        // may round apart.
        t.nextEventTime = next - std::abs(next) * 1e-12;
        if (t.dirty) {
            t.nextEventTime = -INFINITY;  // callbacks run in the bookkeeping may have added some
        }
    }

    static void registerLayer(VLXLayer& layer) {
        auto& state = *layer.m_animationState;
        Timeline& t = timeline();
        if (!state.registered) {
            state.registered = true;
            t.animated.push_back(&layer);
        }
        if (!state.pending) {
            state.pending = true;
            t.pending.push_back(&layer);
        }
        changed();
    }

    static void unregister(VLXLayer& layer) {
        auto& state = *layer.m_animationState;
        Timeline& t = timeline();
        if (state.registered) {
            state.registered = false;
            eraseFrom(t.animated, &layer);
            eraseFrom(t.generalLayers, &layer);
            changed();
        }
        if (state.pending) {
            state.pending = false;
            eraseFrom(t.pending, &layer);
        }
    }

    // The number value of `entry` at `time`: the tick's when it is current, else evaluated now.
    // Nothing for an entry of the general path.
    static std::optional<NumberSlot> numberSlot(const VLXLayerAnimationEntry& entry, double time) {
        const Timeline& t = timeline();
        NumberSlot slot;
        const bool registered = !t.dirty && entry.slot >= 0 &&
                                static_cast<std::size_t>(entry.slot) < t.records.size() &&
                                t.framesDrops == VLXKeyframeAnimation::numberFramesDropCount();
        if (registered) {
            const auto index = static_cast<std::size_t>(entry.slot);
            // The tick's value at its time; the registry's record evaluated at any other.
            slot = t.tickTime == time ? t.slots[index] : evaluateNumber(t.records[index], time);
        } else if (auto record = makeNumberRecord(entry)) {
            slot = evaluateNumber(*record, time);
        } else {
            return std::nullopt;
        }
        if (!slot.valid) {
            return std::nullopt;
        }
        return slot;
    }

    // Writes an evaluated number as `setValueForKeyPath` would; the common built-in keys
    // directly (on a presentation copy their setters do nothing else).
    static void writeNumber(VLXLayer& copy, const VLXAnimation& animation, const NumberSlot& slot) {
        if (!slot.applies) {
            return;
        }
        const auto& property = static_cast<const VLXPropertyAnimation&>(animation);
        const std::string& keyPath = property.keyPath();
        const double v = slot.value;
        if (slot.point) {  // a basic animation of "position" or "anchorPoint"
            (keyPath == "position" ? copy.m_position : copy.m_anchorPoint) = {v, slot.valueY};
        } else if (keyPath == "opacity") {
            copy.m_opacity = v;
        } else if (keyPath == "position.x") {
            copy.m_position.x = v;
        } else if (keyPath == "position.y") {
            copy.m_position.y = v;
        } else if (keyPath == "zPosition") {
            copy.m_zPosition = v;
        } else if (keyPath == "cornerRadius") {
            copy.m_cornerRadius = v;
        } else if (keyPath == "borderWidth") {
            copy.m_borderWidth = v;
        } else {
            copy.setValueForKeyPath(exactValue(animation, slot), keyPath);
            return;
        }
        copy.didChangeAppearance();
    }

    static VLXValue exactValue(const VLXAnimation& animation, const NumberSlot& slot) {
        if (slot.exact >= 0) {
            if (const auto* keyframes = dynamic_cast<const VLXKeyframeAnimation*>(&animation)) {
                const auto& values = keyframes->values();
                if (static_cast<std::size_t>(slot.exact) < values.size()) {
                    return values[static_cast<std::size_t>(slot.exact)];
                }
            } else if (const auto* basic = dynamic_cast<const VLXBasicAnimation*>(&animation)) {
                if (slot.exact == 1) {
                    return basic->toValue();
                }
                if (!basic->fromValue().isNil()) {
                    return basic->fromValue();
                }
                if (basic->capturedBase()) {
                    return *basic->capturedBase();
                }
            }
        }
        return VLXValue(slot.value);
    }

    // Key paths whose number can be written again over an earlier one with the same result as
    // writing it over the model's value.
    static bool rewritable(const std::string& keyPath) {
        return keyPath == "opacity" || keyPath == "position" || keyPath == "anchorPoint" ||
               keyPath == "position.x" || keyPath == "position.y" || keyPath == "zPosition" ||
               keyPath == "cornerRadius" || keyPath == "borderWidth" ||
               (keyPath.find('.') == std::string::npos && !VLXLayer::isBuiltInKey(keyPath));
    }

    // A copy filled from the same model by numbers only, untouched since: when every animation
    // still applies a number to a rewritable key, writing the new numbers is enough. False (and
    // nothing written) otherwise.
    static bool refillNumbers(const VLXLayer& model, VLXLayer& copy, double time) {
        const auto& entries = model.m_animationState->entries;
        constexpr std::size_t kMaximum = 8;
        if (entries.size() > kMaximum) {
            return false;
        }
        NumberSlot slots[kMaximum];
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const auto slot = numberSlot(entries[i], time);
            if (!slot || !slot->applies ||
                !rewritable(
                    static_cast<const VLXPropertyAnimation&>(*entries[i].animation).keyPath())) {
                return false;
            }
            slots[i] = *slot;
        }
        for (std::size_t i = 0; i < entries.size(); ++i) {
            writeNumber(copy, *entries[i].animation, slots[i]);
        }
        return true;
    }

    // Every attached animation applied to `copy` (just initialised from `model`) at `time`, in
    // the order added. True when only numbers were written.
    static bool applyAnimations(const VLXLayer& model, VLXLayer& copy, double time) {
        const auto& entries = model.m_animationState->entries;
        bool general = false;
        for (const auto& entry : entries) {
            if (entry.slot < 0 || timeline().dirty) {
                general = general || !makeNumberRecord(entry);
            }
        }
        if (!general) {
            // Numbers only: no animation code runs, the list cannot change under the loop.
            for (const auto& entry : entries) {
                if (auto slot = numberSlot(entry, time)) {
                    writeNumber(copy, *entry.animation, *slot);
                } else {
                    general = true;  // frames changed since: the general path below
                    break;
                }
            }
            if (!general) {
                return true;
            }
            copy.initWithLayer(model);
        }
        // Copied first: applying runs animation code, which must not see the list change.
        struct Applied {
            std::shared_ptr<VLXAnimation> animation;
            double local;
            std::optional<NumberSlot> slot;
        };
        std::vector<Applied> applied;
        applied.reserve(entries.size());
        for (const auto& entry : entries) {
            // Not yet committed: it starts now, so it shows its start.
            applied.push_back({entry.animation, entry.committed ? time - entry.beginTime : 0.0,
                               numberSlot(entry, time)});
        }
        for (const auto& item : applied) {
            if (item.slot) {
                writeNumber(copy, *item.animation, *item.slot);
            } else {
                item.animation->applyToLayer(copy, model, item.local);
            }
        }
        return false;
    }

    static void layerGone(VLXLayer& layer) {
        unregister(layer);
        for (auto& entry : layer.m_animationState->entries) {
            if (!entry.stopped) {
                queueStop(std::move(entry.animation), false, std::move(entry.token));
            }
        }
        layer.m_animationState->entries.clear();
    }
};

std::uint64_t vlx::detail::layerCommitCount() {
    VLXLayerAccess::install();
    return timeline().commitCount;
}

void vlx::detail::timelineLayerGone(VLXLayer& layer) {
    VLXLayerAccess::layerGone(layer);
}

std::size_t VLXLayer::animatedLayerCount() {
    return timeline().animated.size();
}

// --- attaching --------------------------------------------------------------------------------

void VLXLayer::addAnimation(const std::shared_ptr<VLXAnimation>& animation,
                            std::optional<std::string> key) {
    if (!animation || m_isPresentation) {
        return;
    }
    std::shared_ptr<VLXAnimation> copy = animation->copy();
    if (!copy) {
        return;
    }
    // What is on screen now (before the caller changes the model) is where ends left nil start.
    if (auto presentation = presentationLayer()) {
        copy->prepareForLayer(*presentation);
    } else {
        copy->prepareForLayer(*this);
    }
    if (!m_animationState) {
        m_animationState = std::make_unique<AnimationState>();
    }
    VLXLayerAnimationEntry replaced;
    bool didReplace = false;
    auto& entries = m_animationState->entries;
    if (key) {
        const auto it = std::find_if(entries.begin(), entries.end(),
                                     [&key](const auto& e) { return e.key == key; });
        if (it != entries.end()) {
            replaced = std::move(*it);
            entries.erase(it);
            didReplace = true;
        }
    }
    VLXLayerAnimationEntry entry;
    entry.key = std::move(key);
    entry.animation = std::move(copy);
    entry.token = VLXTransaction::currentAnimationToken();
    entries.push_back(std::move(entry));
    VLXLayerAccess::registerLayer(*this);  // also marks the registry for rebuilding
    if (didReplace && !replaced.stopped) {
        queueStop(replaced.animation, false, std::move(replaced.token));
    }
    didChangeAppearance();
}

void VLXLayer::removeAnimationForKey(std::string_view key) {
    if (!m_animationState) {
        return;
    }
    auto& entries = m_animationState->entries;
    const auto it = std::find_if(entries.begin(), entries.end(),
                                 [key](const auto& e) { return e.key && *e.key == key; });
    if (it == entries.end()) {
        return;
    }
    VLXLayerAnimationEntry removed = std::move(*it);
    entries.erase(it);
    VLXLayerAccess::changed();
    if (entries.empty()) {
        VLXLayerAccess::unregister(*this);
    }
    if (!removed.stopped) {
        queueStop(removed.animation, false, std::move(removed.token));
    }
    didChangeAppearance();
}

void VLXLayer::removeAllAnimations() {
    if (!m_animationState || m_animationState->entries.empty()) {
        return;
    }
    std::vector<VLXLayerAnimationEntry> removed = std::move(m_animationState->entries);
    m_animationState->entries.clear();
    VLXLayerAccess::unregister(*this);
    for (auto& entry : removed) {
        if (!entry.stopped) {
            queueStop(entry.animation, false, std::move(entry.token));
        }
    }
    didChangeAppearance();
}

std::shared_ptr<VLXAnimation> VLXLayer::animationForKey(std::string_view key) const {
    return attachedAnimation(key);
}

std::shared_ptr<VLXAnimation> VLXLayer::attachedAnimation(std::string_view key) const {
    if (!m_animationState) {
        return nullptr;
    }
    for (const auto& entry : m_animationState->entries) {
        if (entry.key && *entry.key == key) {
            return entry.animation;
        }
    }
    return nullptr;
}

std::vector<std::string> VLXLayer::animationKeys() const {
    std::vector<std::string> keys;
    if (m_animationState) {
        for (const auto& entry : m_animationState->entries) {
            if (entry.key) {
                keys.push_back(*entry.key);
            }
        }
    }
    return keys;
}

std::vector<std::shared_ptr<VLXAnimation>> VLXLayer::attachedAnimations() const {
    std::vector<std::shared_ptr<VLXAnimation>> animations;
    if (m_animationState) {
        for (const auto& entry : m_animationState->entries) {
            animations.push_back(entry.animation);
        }
    }
    return animations;
}

bool VLXLayer::hasAnimations() const {
    return m_animationState && !m_animationState->entries.empty();
}

// --- presentation -----------------------------------------------------------------------------

bool VLXLayer::isCommitted() const {
    return m_isPresentation || vlx::detail::layerCommitCount() > m_createdAtCommit;
}

std::shared_ptr<VLXLayer> VLXLayer::presentationLayer() const {
    if (m_isPresentation) {
        return std::const_pointer_cast<VLXLayer>(
            std::static_pointer_cast<const VLXLayer>(shared_from_this()));
    }
    if (!isCommitted()) {
        return nullptr;
    }
    return presentationAt(VLXClock::now());
}

std::shared_ptr<VLXLayer> VLXLayer::presentationAt(double time) const {
    if (m_isPresentation || !isCommitted()) {
        return nullptr;
    }
    const bool animated = hasAnimations();
    if (m_presentationCache && m_presentationGeneration == m_generation &&
        (!animated || m_presentationTime == time)) {
        return m_presentationCache;
    }
    std::shared_ptr<VLXLayer> copy;
    bool filled = false;
    if (m_presentationCache && m_presentationCache.use_count() == 1) {
        // Nobody else holds the last copy: filled again.
        copy = std::move(m_presentationCache);
        if (animated && m_presentationNumbersOnly && m_presentationGeneration == m_generation &&
            copy->m_generation == m_presentationCopyGeneration) {
            filled = VLXLayerAccess::refillNumbers(*this, *copy, time);
        }
        if (!filled) {
            copy->m_needsDisplay = false;  // as a fresh copy
            copy->m_needsLayout = false;
        }
    } else {
        copy = newInstance();
        copy->m_isPresentation = true;
        copy->m_model = std::const_pointer_cast<VLXLayer>(
            std::static_pointer_cast<const VLXLayer>(shared_from_this()));
    }
    m_presentationCache.reset();
    if (!filled) {
        copy->initWithLayer(*this);
        m_presentationNumbersOnly = animated && VLXLayerAccess::applyAnimations(*this, *copy, time);
    }
    m_presentationCopyGeneration = copy->m_generation;
    m_presentationCache = copy;
    m_presentationGeneration = m_generation;
    m_presentationTime = time;
    return copy;
}

void VLXLayer::tickAnimations(double time) {
    VLXLayerAccess::tick(time);
}

std::shared_ptr<VLXLayer> VLXLayer::modelLayer() const {
    if (m_isPresentation) {
        return m_model.lock();
    }
    return std::const_pointer_cast<VLXLayer>(
        std::static_pointer_cast<const VLXLayer>(shared_from_this()));
}

bool VLXLayer::presentationNeedsRedraw() const {
    if (!m_animationState) {
        return false;
    }
    const auto redraws = [this](const VLXPropertyAnimation& property) {
        const std::string& path = property.keyPath();
        return needsDisplayForKey(std::string_view(path).substr(0, path.find('.')));
    };
    // Property animations answer without the walk below (no allocation per frame).
    bool groups = false;
    for (const auto& entry : m_animationState->entries) {
        if (const auto* property =
                dynamic_cast<const VLXPropertyAnimation*>(entry.animation.get())) {
            if (redraws(*property)) {
                return true;
            }
        } else if (dynamic_cast<const VLXAnimationGroup*>(entry.animation.get())) {
            groups = true;
        }
    }
    if (!groups) {
        return false;
    }
    std::vector<const VLXAnimation*> stack;
    for (const auto& entry : m_animationState->entries) {
        stack.push_back(entry.animation.get());
    }
    while (!stack.empty()) {
        const VLXAnimation* animation = stack.back();
        stack.pop_back();
        if (const auto* property = dynamic_cast<const VLXPropertyAnimation*>(animation)) {
            const std::string& path = property->keyPath();
            if (needsDisplayForKey(std::string_view(path).substr(0, path.find('.')))) {
                return true;
            }
        } else if (const auto* group = dynamic_cast<const VLXAnimationGroup*>(animation)) {
            for (const auto& member : group->animations()) {
                stack.push_back(member.get());
            }
        }
    }
    return false;
}
