#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

#include <VelmarCoreUI/Platform/Foundation/Private/VLXRunLoopDetail.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Layers/Private/VLXLayerInternal.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

// Reaches the token's private parts from the helpers below.
struct VLXTransactionAccess {
    static std::shared_ptr<VLXTransactionToken> makeToken(
        std::shared_ptr<VLXTransactionToken> outer) {
        return std::shared_ptr<VLXTransactionToken>(new VLXTransactionToken(std::move(outer)));
    }
    static std::function<void()>& completion(VLXTransactionToken& token) {
        return token.m_completion;
    }
};

namespace {

// Changes made by commit observers during the Commit phase are committed again within the
// phase this many times; what is left commits in the next turn.
constexpr int kCommitRounds = 4;

struct Level {
    bool implicit = false;
    std::optional<bool> disableActions;
    std::optional<double> duration;
    std::optional<std::shared_ptr<VLXMediaTimingFunction>> timingFunction;
    std::shared_ptr<VLXTransactionToken> token;
};

struct CommitObserver {
    VLXTransaction::CommitObserverToken token;
    std::shared_ptr<std::function<void(double)>> block;
};

struct TransactionState {
    // Innermost last; the implicit transaction, when open, is always at the bottom.
    std::vector<Level> levels;
    std::vector<CommitObserver> observers;
    VLXTransaction::CommitObserverToken nextObserverToken = 1;
    std::optional<double> lastCommitTime;
    VLXRunLoop::ObserverToken runLoopObserver = 0;
    bool flushRequested = false;
    int notifying = 0;
    bool observersRemoved = false;
};

TransactionState& state() {
    static TransactionState shared;
    return shared;
}

void commitImplicit();

void registerWithRunLoop() {
    auto& s = state();
    if (s.runLoopObserver == 0) {
        s.runLoopObserver =
            VLXRunLoop::main().addObserver(VLXRunLoopPhase::Commit, [] { commitImplicit(); });
    }
}

Level& innermost() {
    VLXTransaction::ensureImplicitTransaction();
    return state().levels.back();
}

void notifyCommit(double time) {
    auto& s = state();
    s.lastCommitTime = time;
    // Also when an observer throws: the count goes back down and removals are compacted.
    struct Notifying {
        TransactionState& s;
        explicit Notifying(TransactionState& st) : s(st) { ++s.notifying; }
        ~Notifying() {
            if (--s.notifying == 0 && s.observersRemoved) {
                s.observersRemoved = false;
                std::erase_if(s.observers, [](const CommitObserver& o) { return !o.block; });
            }
        }
    } notifying(s);
    const std::size_t count = s.observers.size();
    for (std::size_t i = 0; i < count && i < s.observers.size(); ++i) {
        const auto block = s.observers[i].block;
        if (block && *block) {
            (*block)(time);
        }
    }
}

// Closes the innermost level; when it was the outermost, its changes are committed.
void popLevel() {
    auto& s = state();
    // The token is released after the level is gone, so that a completion queued by it sees
    // the transaction closed.
    auto token = std::move(s.levels.back().token);
    s.levels.pop_back();
    const bool outermost = s.levels.empty();
    token.reset();
    if (outermost) {
        notifyCommit(VLXClock::now());
    }
}

bool onlyImplicitOpen() {
    const auto& s = state();
    return s.levels.size() == 1 && s.levels.front().implicit;
}

void commitImplicit() {
    auto& s = state();
    for (int round = 0; round < kCommitRounds && onlyImplicitOpen(); ++round) {
        s.flushRequested = false;
        popLevel();
    }
}

// Makes the tokens missing at `index` and below, outermost first (a loop: nesting may be deep).
std::shared_ptr<VLXTransactionToken> tokenForLevel(std::size_t index) {
    auto& levels = state().levels;
    std::size_t first = index;
    while (first > 0 && !levels[first].token) {
        --first;
    }
    for (std::size_t i = first; i <= index; ++i) {
        if (!levels[i].token) {
            levels[i].token =
                VLXTransactionAccess::makeToken(i > 0 ? levels[i - 1].token : nullptr);
        }
    }
    return levels[index].token;
}

// Main-thread-only state is left alone on other threads.
bool offLoopThread() {
    return !vlx::detail::isLoopThread();
}

}  // namespace

VLXTransactionToken::VLXTransactionToken(std::shared_ptr<VLXTransactionToken> outer)
    : m_outer(std::move(outer)) {}

VLXTransactionToken::~VLXTransactionToken() {
    if (m_completion) {
        VLXRunLoop::main().performInCallbacksPhase(std::move(m_completion));
    }
    // Outer tokens that only this one holds are released here one by one, outermost last, so
    // that their completions queue after this one and deep nesting does not recurse.
    auto outer = std::move(m_outer);
    while (outer && outer.use_count() == 1) {
        auto next = std::move(outer->m_outer);
        outer.reset();
        outer = std::move(next);
    }
}

void VLXTransaction::begin() {
    if (offLoopThread()) {
        return;
    }
    registerWithRunLoop();
    state().levels.push_back(Level{});
}

void VLXTransaction::commit() {
    if (offLoopThread()) {
        return;
    }
    auto& s = state();
    if (s.levels.empty() || s.levels.back().implicit) {
        return;
    }
    popLevel();
    if (s.flushRequested && onlyImplicitOpen()) {
        s.flushRequested = false;
        popLevel();
    }
}

void VLXTransaction::flush() {
    if (offLoopThread()) {
        return;
    }
    auto& s = state();
    if (s.levels.empty()) {
        return;
    }
    if (onlyImplicitOpen() && s.notifying == 0) {
        s.flushRequested = false;
        popLevel();
    } else if (s.levels.front().implicit) {
        s.flushRequested = true;
    }
}

bool VLXTransaction::disableActions() {
    if (offLoopThread()) {
        return false;
    }
    const auto& levels = state().levels;
    for (auto it = levels.rbegin(); it != levels.rend(); ++it) {
        if (it->disableActions) {
            return *it->disableActions;
        }
    }
    return false;
}

void VLXTransaction::setDisableActions(bool disable) {
    if (offLoopThread()) {
        return;
    }
    innermost().disableActions = disable;
}

double VLXTransaction::animationDuration() {
    if (offLoopThread()) {
        return kDefaultAnimationDuration;
    }
    const auto& levels = state().levels;
    for (auto it = levels.rbegin(); it != levels.rend(); ++it) {
        if (it->duration) {
            return *it->duration;
        }
    }
    return kDefaultAnimationDuration;
}

void VLXTransaction::setAnimationDuration(double duration) {
    if (!std::isfinite(duration) || duration < 0 || offLoopThread()) {
        return;
    }
    innermost().duration = duration;
}

std::shared_ptr<VLXMediaTimingFunction> VLXTransaction::animationTimingFunction() {
    if (offLoopThread()) {
        return nullptr;
    }
    const auto& levels = state().levels;
    for (auto it = levels.rbegin(); it != levels.rend(); ++it) {
        if (it->timingFunction) {
            return *it->timingFunction;
        }
    }
    return nullptr;
}

void VLXTransaction::setAnimationTimingFunction(std::shared_ptr<VLXMediaTimingFunction> function) {
    if (offLoopThread()) {
        return;
    }
    innermost().timingFunction = std::move(function);
}

std::function<void()> VLXTransaction::completionBlock() {
    if (offLoopThread()) {
        return {};
    }
    const auto& levels = state().levels;
    if (levels.empty() || !levels.back().token) {
        return {};
    }
    return levels.back().token->m_completion;
}

void VLXTransaction::setCompletionBlock(std::function<void()> block) {
    if (offLoopThread()) {
        return;
    }
    ensureImplicitTransaction();
    tokenForLevel(state().levels.size() - 1)->m_completion = std::move(block);
}

void VLXTransaction::ensureImplicitTransaction() {
    if (offLoopThread()) {
        return;
    }
    auto& s = state();
    if (!s.levels.empty()) {
        return;
    }
    registerWithRunLoop();
    Level level;
    level.implicit = true;
    s.levels.push_back(std::move(level));
}

bool vlx::detail::layerChangeRunsActions() {
    if (offLoopThread()) {
        return true;  // as `disableActions()` answers there
    }
    auto& s = state();
    if (s.levels.empty()) {
        VLXTransaction::ensureImplicitTransaction();
    }
    for (auto it = s.levels.rbegin(); it != s.levels.rend(); ++it) {
        if (it->disableActions) {
            return !*it->disableActions;
        }
    }
    return true;
}

std::shared_ptr<VLXTransactionToken> VLXTransaction::currentAnimationToken() {
    if (offLoopThread()) {
        // A token of no transaction: holding and dropping it has no effect.
        return VLXTransactionAccess::makeToken(nullptr);
    }
    ensureImplicitTransaction();
    return tokenForLevel(state().levels.size() - 1);
}

VLXTransaction::CommitObserverToken VLXTransaction::addCommitObserver(
    std::function<void(double)> observer) {
    if (!observer || offLoopThread()) {
        return 0;
    }
    auto& s = state();
    const CommitObserverToken token = s.nextObserverToken++;
    s.observers.push_back(
        CommitObserver{token, std::make_shared<std::function<void(double)>>(std::move(observer))});
    return token;
}

void VLXTransaction::removeCommitObserver(CommitObserverToken token) {
    if (offLoopThread()) {
        return;
    }
    auto& s = state();
    const auto it = std::find_if(s.observers.begin(), s.observers.end(),
                                 [token](const CommitObserver& o) { return o.token == token; });
    if (token == 0 || it == s.observers.end()) {
        return;
    }
    if (s.notifying > 0) {
        it->block.reset();
        s.observersRemoved = true;
    } else {
        s.observers.erase(it);
    }
}

std::optional<double> VLXTransaction::lastCommitTime() {
    if (offLoopThread()) {
        return std::nullopt;
    }
    return state().lastCommitTime;
}

int VLXTransaction::explicitDepth() {
    if (offLoopThread()) {
        return 0;
    }
    const auto& levels = state().levels;
    const auto depth = static_cast<int>(levels.size());
    return !levels.empty() && levels.front().implicit ? depth - 1 : depth;
}

bool VLXTransaction::hasImplicitTransaction() {
    if (offLoopThread()) {
        return false;
    }
    const auto& levels = state().levels;
    return !levels.empty() && levels.front().implicit;
}
