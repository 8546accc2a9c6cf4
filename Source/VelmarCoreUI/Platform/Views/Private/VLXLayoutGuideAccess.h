#pragma once

#include <memory>

#include <VelmarCoreUI/Platform/Views/VLXLayoutGuide.h>

class VLXView;

namespace vlx::detail {

/// Makes the derived guides of views and view controllers.
struct LayoutGuideAccess {
    /// The bounds inset by the view's safe-area insets.
    static std::shared_ptr<VLXLayoutGuide> makeSafeAreaGuide(const VLXView& owner);
    /// The strip of the bounds above the safe area (the legacy top guide).
    static std::shared_ptr<VLXLayoutGuide> makeTopLayoutGuide(const VLXView& owner);
    /// The strip of the bounds below the safe area (the legacy bottom guide).
    static std::shared_ptr<VLXLayoutGuide> makeBottomLayoutGuide(const VLXView& owner);

private:
    static std::shared_ptr<VLXLayoutGuide> make(const VLXView& owner, VLXLayoutGuide::Role role,
                                                const char* identifier);
};

/// `view` itself as a shared pointer (nil when it does not live in one, or while it dies).
std::shared_ptr<VLXView> sharedView(const VLXView& view);

}  // namespace vlx::detail
