// The animation timeline of layers: attaching, committing, ticking, callbacks, presentation.

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

#include <algorithm>

#include <VelmarCoreUI/Platform/Foundation/Private/VLXRunLoopDetail.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Layers/Private/VLXLayerInternal.h>
#include <VelmarCoreUI/Platform/Layers/VLXAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXAnimationGroup.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

namespace {

// Model layers with animations (ticked every turn, attached or not, hidden or not) and those
// with animations waiting for their transaction's commit. Layers leave both lists when they die.
struct Timeline {
    std::vector<VLXLayer*> animated;
    std::vector<VLXLayer*> pending;
    std::vector<VLXLayer*> scratch;
    std::uint64_t commitCount = 0;
    bool installed = false;
};

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
        loop.addObserver(VLXRunLoopPhase::Tick, [] { tick(VLXClock::now()); });
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
    }

    static void tick(double now) {
        Timeline& t = timeline();
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
                ++i;
            }
            if (removed) {
                layer->didChangeAppearance();
                if (entries.empty()) {
                    unregister(*layer);
                }
            }
        }
        t.scratch.clear();
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
    }

    static void unregister(VLXLayer& layer) {
        auto& state = *layer.m_animationState;
        Timeline& t = timeline();
        if (state.registered) {
            state.registered = false;
            eraseFrom(t.animated, &layer);
        }
        if (state.pending) {
            state.pending = false;
            eraseFrom(t.pending, &layer);
        }
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
    VLXLayerAccess::registerLayer(*this);
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
    const double now = VLXClock::now();
    const bool animated = hasAnimations();
    if (m_presentationCache && m_presentationGeneration == m_generation &&
        (!animated || m_presentationTime == now)) {
        return m_presentationCache;
    }
    std::shared_ptr<VLXLayer> copy = newInstance();
    copy->m_isPresentation = true;
    copy->m_model = std::const_pointer_cast<VLXLayer>(
        std::static_pointer_cast<const VLXLayer>(shared_from_this()));
    copy->initWithLayer(*this);
    if (animated) {
        // Copied first: applying runs animation code, which must not see the list change.
        std::vector<std::pair<std::shared_ptr<VLXAnimation>, double>> applied;
        for (const auto& entry : m_animationState->entries) {
            // Not yet committed: it starts now, so it shows its start.
            applied.emplace_back(entry.animation, entry.committed ? now - entry.beginTime : 0.0);
        }
        for (const auto& [animation, local] : applied) {
            animation->applyToLayer(*copy, *this, local);
        }
    }
    m_presentationCache = copy;
    m_presentationGeneration = m_generation;
    m_presentationTime = now;
    return copy;
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
