#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>

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
    ++s.notifying;
    const std::size_t count = s.observers.size();
    for (std::size_t i = 0; i < count && i < s.observers.size(); ++i) {
        const auto block = s.observers[i].block;
        if (block && *block) {
            (*block)(time);
        }
    }
    if (--s.notifying == 0 && s.observersRemoved) {
        s.observersRemoved = false;
        std::erase_if(s.observers, [](const CommitObserver& o) { return !o.block; });
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

std::shared_ptr<VLXTransactionToken> tokenForLevel(std::size_t index) {
    auto& s = state();
    if (!s.levels[index].token) {
        auto outer = index > 0 ? tokenForLevel(index - 1) : nullptr;
        s.levels[index].token = VLXTransactionAccess::makeToken(std::move(outer));
    }
    return s.levels[index].token;
}

}  // namespace

VLXTransactionToken::VLXTransactionToken(std::shared_ptr<VLXTransactionToken> outer)
    : m_outer(std::move(outer)) {}

VLXTransactionToken::~VLXTransactionToken() {
    if (m_completion) {
        VLXRunLoop::main().performInCallbacksPhase(std::move(m_completion));
    }
    // m_outer is released after this body, so an outer completion queues after this one.
}

void VLXTransaction::begin() {
    registerWithRunLoop();
    state().levels.push_back(Level{});
}

void VLXTransaction::commit() {
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
    const auto& levels = state().levels;
    for (auto it = levels.rbegin(); it != levels.rend(); ++it) {
        if (it->disableActions) {
            return *it->disableActions;
        }
    }
    return false;
}

void VLXTransaction::setDisableActions(bool disable) {
    innermost().disableActions = disable;
}

double VLXTransaction::animationDuration() {
    const auto& levels = state().levels;
    for (auto it = levels.rbegin(); it != levels.rend(); ++it) {
        if (it->duration) {
            return *it->duration;
        }
    }
    return kDefaultAnimationDuration;
}

void VLXTransaction::setAnimationDuration(double duration) {
    if (!std::isfinite(duration) || duration < 0) {
        return;
    }
    innermost().duration = duration;
}

std::shared_ptr<VLXMediaTimingFunction> VLXTransaction::animationTimingFunction() {
    const auto& levels = state().levels;
    for (auto it = levels.rbegin(); it != levels.rend(); ++it) {
        if (it->timingFunction) {
            return *it->timingFunction;
        }
    }
    return nullptr;
}

void VLXTransaction::setAnimationTimingFunction(std::shared_ptr<VLXMediaTimingFunction> function) {
    innermost().timingFunction = std::move(function);
}

std::function<void()> VLXTransaction::completionBlock() {
    const auto& levels = state().levels;
    if (levels.empty() || !levels.back().token) {
        return {};
    }
    return levels.back().token->m_completion;
}

void VLXTransaction::setCompletionBlock(std::function<void()> block) {
    ensureImplicitTransaction();
    tokenForLevel(state().levels.size() - 1)->m_completion = std::move(block);
}

void VLXTransaction::ensureImplicitTransaction() {
    auto& s = state();
    if (!s.levels.empty()) {
        return;
    }
    registerWithRunLoop();
    Level level;
    level.implicit = true;
    s.levels.push_back(std::move(level));
}

std::shared_ptr<VLXTransactionToken> VLXTransaction::currentAnimationToken() {
    ensureImplicitTransaction();
    return tokenForLevel(state().levels.size() - 1);
}

VLXTransaction::CommitObserverToken VLXTransaction::addCommitObserver(
    std::function<void(double)> observer) {
    if (!observer) {
        return 0;
    }
    auto& s = state();
    const CommitObserverToken token = s.nextObserverToken++;
    s.observers.push_back(
        CommitObserver{token, std::make_shared<std::function<void(double)>>(std::move(observer))});
    return token;
}

void VLXTransaction::removeCommitObserver(CommitObserverToken token) {
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
    return state().lastCommitTime;
}

int VLXTransaction::explicitDepth() {
    const auto& levels = state().levels;
    const auto depth = static_cast<int>(levels.size());
    return !levels.empty() && levels.front().implicit ? depth - 1 : depth;
}

bool VLXTransaction::hasImplicitTransaction() {
    const auto& levels = state().levels;
    return !levels.empty() && levels.front().implicit;
}
