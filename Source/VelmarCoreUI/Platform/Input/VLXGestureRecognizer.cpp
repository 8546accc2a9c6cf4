#include <VelmarCoreUI/Platform/Input/VLXGestureRecognizer.h>

#include <algorithm>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Input/Private/VLXGestureArena.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>

namespace {

bool isTerminal(VLXGestureRecognizerState state) {
    return state == VLXGestureRecognizerState::Ended ||
           state == VLXGestureRecognizerState::Cancelled ||
           state == VLXGestureRecognizerState::Failed;
}

bool isLegal(VLXGestureRecognizerState from, VLXGestureRecognizerState to) {
    using S = VLXGestureRecognizerState;
    switch (from) {
        case S::Possible:
            return to == S::Began || to == S::Ended || to == S::Failed;
        case S::Began:
        case S::Changed:
            return to == S::Changed || to == S::Ended || to == S::Cancelled || to == S::Failed;
        default:
            return false;
    }
}

}  // namespace

const char* VLXGestureRecognizerStateName(VLXGestureRecognizerState state) {
    switch (state) {
        case VLXGestureRecognizerState::Possible:
            return "possible";
        case VLXGestureRecognizerState::Began:
            return "began";
        case VLXGestureRecognizerState::Changed:
            return "changed";
        case VLXGestureRecognizerState::Ended:
            return "ended";
        case VLXGestureRecognizerState::Cancelled:
            return "cancelled";
        case VLXGestureRecognizerState::Failed:
            return "failed";
    }
    return "unknown";
}

// --- delegate defaults --------------------------------------------------------------------------

VLXGestureRecognizerDelegate::~VLXGestureRecognizerDelegate() = default;

bool VLXGestureRecognizerDelegate::gestureRecognizerShouldBegin(VLXGestureRecognizer&) {
    return true;
}

bool VLXGestureRecognizerDelegate::gestureRecognizerShouldReceiveTouch(VLXGestureRecognizer&,
                                                                       const VLXTouch&) {
    return true;
}

bool VLXGestureRecognizerDelegate::
    gestureRecognizerShouldRecognizeSimultaneouslyWithGestureRecognizer(VLXGestureRecognizer&,
                                                                        VLXGestureRecognizer&) {
    return false;
}

bool VLXGestureRecognizerDelegate::gestureRecognizerShouldRequireFailureOfGestureRecognizer(
    VLXGestureRecognizer&, VLXGestureRecognizer&) {
    return false;
}

bool VLXGestureRecognizerDelegate::gestureRecognizerShouldBeRequiredToFailByGestureRecognizer(
    VLXGestureRecognizer&, VLXGestureRecognizer&) {
    return false;
}

// --- recogniser ---------------------------------------------------------------------------------

VLXGestureRecognizer::VLXGestureRecognizer() = default;
VLXGestureRecognizer::~VLXGestureRecognizer() = default;

VLXGestureRecognizer::ActionToken VLXGestureRecognizer::addAction(Action action) {
    return addEntry(nullptr, std::move(action));
}

VLXGestureRecognizer::ActionToken VLXGestureRecognizer::addEntry(const void* target,
                                                                 Action action) {
    if (!action) {
        return 0;
    }
    const ActionToken token = m_nextToken++;
    m_entries.push_back({token, target, std::move(action)});
    return token;
}

void VLXGestureRecognizer::removeAction(ActionToken token) {
    std::erase_if(m_entries, [token](const Entry& entry) { return entry.token == token; });
}

void VLXGestureRecognizer::removeTarget(const void* target) {
    std::erase_if(m_entries,
                  [target](const Entry& entry) { return !target || entry.target == target; });
}

void VLXGestureRecognizer::sendActions() {
    // Actions may add or remove actions: run those present when the change happened and still
    // present when their turn comes.
    const std::vector<Entry> entries = m_entries;
    for (const Entry& entry : entries) {
        const bool present = std::any_of(m_entries.begin(), m_entries.end(),
                                         [&](const Entry& e) { return e.token == entry.token; });
        if (present) {
            entry.action(*this);
        }
    }
}

void VLXGestureRecognizer::setEnabled(bool enabled) {
    if (enabled == m_enabled) {
        return;
    }
    m_enabled = enabled;
    if (enabled) {
        return;
    }
    if (m_state == VLXGestureRecognizerState::Began ||
        m_state == VLXGestureRecognizerState::Changed) {
        applyState(VLXGestureRecognizerState::Cancelled);
    } else if (m_state == VLXGestureRecognizerState::Possible &&
               (!m_touches.empty() || m_waitingFor)) {
        m_waitingFor.reset();
        applyState(VLXGestureRecognizerState::Failed);
    }
}

VLXView* VLXGestureRecognizer::view() const {
    return m_view.lock().get();
}

void VLXGestureRecognizer::attachToView(VLXView* view) {
    auto self = sharedFrom<VLXGestureRecognizer>();
    if (m_state == VLXGestureRecognizerState::Began ||
        m_state == VLXGestureRecognizerState::Changed) {
        applyState(VLXGestureRecognizerState::Cancelled);
    }
    for (const auto& touch : m_touches) {
        std::erase_if(touch->m_recognizers, [this](const auto& weak) {
            auto r = weak.lock();
            return !r || r.get() == this;
        });
    }
    m_touches.clear();
    if (auto arena = m_arena.lock()) {
        arena->leave(*this);
    }
    m_arena.reset();
    // A recogniser leaving a view forgets everything, timers of a gesture still possible
    // included.
    if (!m_view.expired() || m_state != VLXGestureRecognizerState::Possible || m_waitingFor) {
        reset();
    }
    ++m_decisions;
    m_view.reset();
    if (view) {
        m_view = std::static_pointer_cast<VLXView>(view->shared_from_this());
    }
}

void VLXGestureRecognizer::requireGestureRecognizerToFail(
    const std::shared_ptr<VLXGestureRecognizer>& other) {
    if (!other || other.get() == this) {
        return;
    }
    for (const auto& weak : m_requiredToFail) {
        if (weak.lock() == other) {
            return;
        }
    }
    m_requiredToFail.push_back(other);
}

VLXPoint VLXGestureRecognizer::locationInView(const VLXView* view) const {
    VLXPoint point = m_lastLocation;
    const VLXWindow* window = nullptr;
    if (!m_touches.empty()) {
        point = {};
        for (const auto& touch : m_touches) {
            const VLXPoint p = touch->locationInView(nullptr);
            point.x += p.x;
            point.y += p.y;
        }
        point.x /= double(m_touches.size());
        point.y /= double(m_touches.size());
        window = m_touches.front()->window();
    } else if (auto* own = this->view()) {
        window = own->window();
    }
    return view ? view->convertPointFromView(point, window) : point;
}

VLXPoint VLXGestureRecognizer::locationOfTouch(std::size_t index, const VLXView* view) const {
    return index < m_touches.size() ? m_touches[index]->locationInView(view) : locationInView(view);
}

void VLXGestureRecognizer::touchesBegan(const VLXTouchSet&, const VLXEvent&) {}
void VLXGestureRecognizer::touchesMoved(const VLXTouchSet&, const VLXEvent&) {}
void VLXGestureRecognizer::touchesEnded(const VLXTouchSet&, const VLXEvent&) {}
void VLXGestureRecognizer::touchesCancelled(const VLXTouchSet&, const VLXEvent&) {}

void VLXGestureRecognizer::reset() {
    if (m_state != VLXGestureRecognizerState::Possible || m_waitingFor) {
        ++m_decisions;
    }
    m_state = VLXGestureRecognizerState::Possible;
    m_waitingFor.reset();
}

void VLXGestureRecognizer::ignoreTouch(const std::shared_ptr<VLXTouch>& touch, const VLXEvent&) {
    if (!touch) {
        return;
    }
    std::erase(m_touches, touch);
    std::erase_if(touch->m_recognizers, [this](const auto& weak) {
        auto r = weak.lock();
        return !r || r.get() == this;
    });
}

bool VLXGestureRecognizer::canPreventGestureRecognizer(const VLXGestureRecognizer&) const {
    return true;
}

bool VLXGestureRecognizer::canBePreventedByGestureRecognizer(const VLXGestureRecognizer&) const {
    return true;
}

bool VLXGestureRecognizer::shouldRequireFailureOfGestureRecognizer(
    const VLXGestureRecognizer&) const {
    return false;
}

bool VLXGestureRecognizer::shouldBeRequiredToFailByGestureRecognizer(
    const VLXGestureRecognizer&) const {
    return false;
}

void VLXGestureRecognizer::setState(VLXGestureRecognizerState state) {
    if (!isLegal(m_state, state)) {
        return;
    }
    if (m_state == VLXGestureRecognizerState::Possible &&
        (state == VLXGestureRecognizerState::Began || state == VLXGestureRecognizerState::Ended)) {
        if (!m_enabled) {
            return;
        }
        auto self = sharedFrom<VLXGestureRecognizer>();
        const VLXGestureRecognizerState requested = state;
        if (auto arena = m_arena.lock()) {
            state = arena->arbitrate(*this, state);
        } else if (auto d = delegate(); d && !d->gestureRecognizerShouldBegin(*this)) {
            state = VLXGestureRecognizerState::Failed;
        }
        if (state == VLXGestureRecognizerState::Possible) {
            m_waitingFor = requested;
            return;
        }
    }
    applyState(state);
}

void VLXGestureRecognizer::finishGesture(VLXGestureRecognizerState ifPossible,
                                         VLXGestureRecognizerState ifBegun) {
    if (m_state == VLXGestureRecognizerState::Possible) {
        setState(ifPossible);
    } else if (m_state == VLXGestureRecognizerState::Began ||
               m_state == VLXGestureRecognizerState::Changed) {
        setState(ifBegun);
    }
}

void VLXGestureRecognizer::applyState(VLXGestureRecognizerState state) {
    auto self = sharedFrom<VLXGestureRecognizer>();
    m_state = state;
    m_waitingFor.reset();
    if (isTerminal(state)) {
        ++m_decisions;
    }
    if (state != VLXGestureRecognizerState::Failed &&
        state != VLXGestureRecognizerState::Possible) {
        sendActions();
    }
    if (auto arena = m_arena.lock()) {
        arena->stateDidChange(*this);
    }
}

std::string VLXGestureRecognizer::description() const {
    const VLXPoint location = locationInView(nullptr);
    return VLXStringWithFormat("<%s: %p; state = %s; touches = %zu; location = (%g %g)%s>",
                               className().c_str(), static_cast<const void*>(this),
                               VLXGestureRecognizerStateName(m_state), m_touches.size(), location.x,
                               location.y, m_enabled ? "" : "; enabled = NO");
}
