#include <VelmarCoreUI/Platform/Layers/VLXAnimationGroup.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

namespace {

bool fillsBackwards(VLXFillMode mode) {
    return mode == VLXFillMode::Backwards || mode == VLXFillMode::Both;
}

bool fillsForwards(VLXFillMode mode) {
    return mode == VLXFillMode::Forwards || mode == VLXFillMode::Both;
}

VLXFillMode combinedFill(VLXFillMode a, VLXFillMode b) {
    const bool backwards = fillsBackwards(a) || fillsBackwards(b);
    const bool forwards = fillsForwards(a) || fillsForwards(b);
    if (backwards && forwards) {
        return VLXFillMode::Both;
    }
    if (backwards) {
        return VLXFillMode::Backwards;
    }
    return forwards ? VLXFillMode::Forwards : VLXFillMode::Removed;
}

// Copying, preparing and applying walk nested groups recursively; this bounds the depth.
thread_local int t_nesting = 0;

struct NestingScope {
    NestingScope() { ++t_nesting; }
    ~NestingScope() { --t_nesting; }
    NestingScope(const NestingScope&) = delete;
    NestingScope& operator=(const NestingScope&) = delete;
    bool tooDeep() const { return t_nesting > VLXAnimationGroup::kMaximumNesting; }
};

// True when `root` is `group` or holds it at any depth (walked without recursion).
bool contains(const VLXAnimation* root, const VLXAnimationGroup* group) {
    std::vector<const VLXAnimation*> stack{root};
    while (!stack.empty()) {
        const VLXAnimation* animation = stack.back();
        stack.pop_back();
        if (animation == group) {
            return true;
        }
        if (const auto* inner = dynamic_cast<const VLXAnimationGroup*>(animation)) {
            for (const auto& member : inner->animations()) {
                stack.push_back(member.get());
            }
        }
    }
    return false;
}

}  // namespace

VLXAnimationGroup::VLXAnimationGroup(const VLXAnimationGroup& other) : VLXAnimation(other) {
    const NestingScope scope;
    if (scope.tooDeep()) {
        return;
    }
    m_animations.reserve(other.m_animations.size());
    for (const auto& member : other.m_animations) {
        m_animations.push_back(member->copy());
    }
}

std::shared_ptr<VLXAnimationGroup> VLXAnimationGroup::create() {
    return makeInitialized<VLXAnimationGroup>();
}

void VLXAnimationGroup::setAnimations(std::vector<std::shared_ptr<VLXAnimation>> animations) {
    std::erase_if(animations, [this](const std::shared_ptr<VLXAnimation>& member) {
        return !member || contains(member.get(), this);
    });
    m_animations = std::move(animations);
}

std::shared_ptr<VLXAnimation> VLXAnimationGroup::copy() const {
    return VLXMakeShared<VLXAnimationGroup>(*this);
}

void VLXAnimationGroup::prepareForLayer(const VLXLayer& current) {
    const NestingScope scope;
    if (scope.tooDeep()) {
        return;
    }
    for (const auto& member : m_animations) {
        member->prepareForLayer(current);
    }
}

double VLXAnimationGroup::durationOfMember(const VLXAnimation& member) const {
    return member.duration() == 0.0 ? effectiveDuration() : member.effectiveDuration();
}

void VLXAnimationGroup::applyAtProgress(VLXLayer& presentation, const VLXLayer& model,
                                        double progress) const {
    const NestingScope scope;
    if (scope.tooDeep()) {
        return;
    }
    const double groupDuration = effectiveDuration();
    // The group's span clips its members: its time never runs past its own end.
    double groupTime = std::clamp(progress, 0.0, 1.0) * groupDuration;
    if (!(groupTime == groupTime)) {
        groupTime = 0.0;  // an endless group at progress 1
    }
    for (const auto& member : m_animations) {
        const double memberBegin = std::isfinite(member->beginTime()) ? member->beginTime() : 0.0;
        const auto memberProgress = resolveProgress(
            groupTime - memberBegin, durationOfMember(*member),
            combinedFill(member->fillMode(), fillMode()), member->timingFunction().get());
        if (memberProgress) {
            member->applyAtProgress(presentation, model, *memberProgress);
        }
    }
}

std::string VLXAnimationGroup::description() const {
    return VLXStringWithFormat("<%s: %p> animations: %zu, duration: %g", className().c_str(),
                               static_cast<const void*>(this), m_animations.size(), duration());
}
