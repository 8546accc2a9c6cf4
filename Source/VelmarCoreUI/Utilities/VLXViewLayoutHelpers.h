#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <memory>
#include <vector>

#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

class VLXImage;
class VLXLayoutConstraint;
class VLXView;

using VLXLayoutConstraints = std::vector<std::shared_ptr<VLXLayoutConstraint>>;

// Constraint builders. They only make constraints: none is activated and
// `translatesAutoresizingMaskIntoConstraints` is left alone. Each gives all its constraints or,
// when one cannot be made (a nil `other`, a view that does not live in a shared_ptr, a
// non-finite constant), none.

/// Two constraints: the view's centre x = other's centre x, centre y = other's centre y.
VLX_EXPORT VLXLayoutConstraints vlx_constraintsByCenteringInView(const VLXView& view,
                                                                 const VLXView* other);
/// The edges of `other` with no inset.
VLX_EXPORT VLXLayoutConstraints vlx_constraintsByPinningToEdgesOfView(const VLXView& view,
                                                                      const VLXView* other);
/// The edges of `other` with `inset` on all four.
VLX_EXPORT VLXLayoutConstraints vlx_constraintsByPinningToEdgesOfView(const VLXView& view,
                                                                      const VLXView* other,
                                                                      double inset);
/// Four constraints, top, left, bottom, right: each edge = other's edge + that inset. The insets
/// are added on every edge, so a positive bottom or right inset puts that edge outside `other`.
VLX_EXPORT VLXLayoutConstraints vlx_constraintsByPinningToEdgesOfView(const VLXView& view,
                                                                      const VLXView* other,
                                                                      VLXEdgeInsets insets);
/// Two constraints: width = size.width, height = size.height.
VLX_EXPORT VLXLayoutConstraints vlx_constraintsBySettingDimensionsToSize(const VLXView& view,
                                                                         VLXSize size);

/// A new image of the view: its subtree laid out and displayed, then composited into a
/// transparent image context of the bounds' size at the main screen's scale, with the bounds at
/// the image's origin (the view's own position and transform are undone; alpha and hidden
/// apply as on screen). Nil for empty, negative, non-finite or too large bounds; a view whose
/// transform cannot be undone gives a transparent image.
VLX_EXPORT std::shared_ptr<VLXImage> vlx_screenshot(VLXView& view);

/// Does nothing: a place for a breakpoint.
VLX_EXPORT void vlx_debug(const VLXView& view);
