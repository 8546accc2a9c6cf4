#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <memory>

class VLXLayoutAnchor;
class VLXViewController;

/// Where content may begin at the top: on system 11.0 or later the top anchor of the view's
/// safe-area guide, before that the bottom anchor of the legacy top layout guide. Loads the
/// view. Nil only when asked from inside the controller's own `loadView`.
VLX_EXPORT std::shared_ptr<VLXLayoutAnchor> vlx_topSafeAreaLayoutGuideWithFallback(
    VLXViewController& viewController);
/// Where content must end at the bottom: the safe-area guide's bottom anchor on 11.0 or later,
/// before that the legacy bottom layout guide's top anchor.
VLX_EXPORT std::shared_ptr<VLXLayoutAnchor> vlx_bottomSafeAreaLayoutGuideWithFallback(
    VLXViewController& viewController);

/// True when the controller's presenter presents this very controller; else when its navigation
/// controller's presenter presents that navigation controller; else when its tab bar
/// controller was presented by a tab bar controller. False otherwise.
VLX_EXPORT bool vlx_isModal(const VLXViewController& viewController);
