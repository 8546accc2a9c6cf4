#pragma once

#include <memory>
#include <string>
#include <vector>

#include <VelmarCoreUI/Platform/Layers/VLXAnimation.h>
#include <VelmarCoreUI/VLXExport.h>

/// Several animations run together in the group's time.
///
/// * Members keep their key paths, begin times (offsets inside the group), durations, fill
///   modes and timing functions; their delegates and `removedOnCompletion` are ignored (the
///   group's own are used).
/// * A member whose `duration()` is 0 lasts the whole group (the group's effective duration),
///   rather than the stand-alone 0.25 s default.
/// * The group's duration clips its members: nothing of a member beyond the group's end is
///   seen. The group's timing function paces the group's time before the members see it.
/// * Members fill with their own fill mode combined with the group's, so a group that fills
///   backwards shows every member's start before a delayed start.
/// * Members apply in order; a later member animating the same key path wins.
/// Copying a group copies its members.
///
/// Groups nest: a group may be a member of another, down to `kMaximumNesting` levels (deeper
/// members are neither applied nor copied). A group never holds itself: `setAnimations` drops
/// members that are the group or contain it.
class VLX_EXPORT VLXAnimationGroup : public VLXAnimation {
public:
    static constexpr int kMaximumNesting = 64;

    static std::shared_ptr<VLXAnimationGroup> create();

    const std::vector<std::shared_ptr<VLXAnimation>>& animations() const { return m_animations; }
    /// Null entries, and entries that are or contain this group, are dropped.
    void setAnimations(std::vector<std::shared_ptr<VLXAnimation>> animations);

    std::shared_ptr<VLXAnimation> copy() const override;
    void prepareForLayer(const VLXLayer& current) override;
    /// Applies every member at group time progress × effectiveDuration().
    void applyAtProgress(VLXLayer& presentation, const VLXLayer& model,
                         double progress) const override;

    /// The duration a member runs for inside this group (see the class comment).
    double durationOfMember(const VLXAnimation& member) const;

    std::string description() const override;

protected:
    VLXAnimationGroup() = default;
    VLXAnimationGroup(const VLXAnimationGroup& other);

private:
    std::vector<std::shared_ptr<VLXAnimation>> m_animations;
};
