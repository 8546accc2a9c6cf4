#pragma once

#include <memory>

class VLXView;
class VLXViewController;

namespace vlx::detail {

/// Shows `child`'s view (loading it) over the whole of `container`'s loaded view in place of the
/// view shown before (`shown`), or shows nothing for a null child. Nothing while the container's
/// view is not loaded.
void showChildView(VLXViewController& container, VLXViewController* child,
                   std::weak_ptr<VLXView>& shown);

}  // namespace vlx::detail
