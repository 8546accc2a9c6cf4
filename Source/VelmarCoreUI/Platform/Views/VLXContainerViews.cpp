#include <VelmarCoreUI/Platform/Views/Private/VLXContainerViews.h>

#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/Platform/Views/VLXViewController.h>

namespace vlx::detail {

void showChildView(VLXViewController& container, VLXViewController* child,
                   std::weak_ptr<VLXView>& shown) {
    const auto& containerView = container.viewIfLoaded();
    if (!containerView) {
        return;
    }
    std::shared_ptr<VLXView> next = child ? child->view() : nullptr;
    auto previous = shown.lock();
    if (previous && previous != next && previous->superview() == containerView.get()) {
        previous->removeFromSuperview();
    }
    shown.reset();
    if (next && next != containerView) {
        if (containerView->addSubview(next)) {
            next->setFrame(containerView->bounds());
            shown = next;
        }
    }
}

}  // namespace vlx::detail
