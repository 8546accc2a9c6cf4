#include <VelmarCoreUI/Platform/Layers/VLXAnimationGroup.h>

#include <algorithm>
#include <cmath>

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

}  // namespace

VLXAnimationGroup::VLXAnimationGroup(const VLXAnimationGroup& other) : VLXAnimation(other) {
    m_animations.reserve(other.m_animations.size());
    for (const auto& member : other.m_animations) {
        m_animations.push_back(member->copy());
    }
}

std::shared_ptr<VLXAnimationGroup> VLXAnimationGroup::create() {
    return makeInitialized<VLXAnimationGroup>();
}

void VLXAnimationGroup::setAnimations(std::vector<std::shared_ptr<VLXAnimation>> animations) {
    std::erase(animations, nullptr);
    m_animations = std::move(animations);
}

std::shared_ptr<VLXAnimation> VLXAnimationGroup::copy() const {
    return VLXMakeShared<VLXAnimationGroup>(*this);
}

void VLXAnimationGroup::prepareForLayer(const VLXLayer& current) {
    for (const auto& member : m_animations) {
        member->prepareForLayer(current);
    }
}

double VLXAnimationGroup::durationOfMember(const VLXAnimation& member) const {
    return member.duration() == 0.0 ? effectiveDuration() : member.effectiveDuration();
}

void VLXAnimationGroup::applyAtProgress(VLXLayer& presentation, const VLXLayer& model,
                                        double progress) const {
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
