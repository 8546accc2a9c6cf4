#pragma once

// What the view files share about views: teardown of the subview list and the window-move
// notifications of a subtree.

#include <VelmarCoreUI/Platform/Views/VLXView.h>

struct VLXViewAccess {
    /// Clears the superview link of every subview; subviews owned by `view` alone are torn down
    /// iteratively (a 10 000-level tree must not recurse in destructors), those held elsewhere
    /// keep living, detached, with their layers taken out of `view`'s layer.
    static void releaseSubviews(VLXView& view);

    /// `willMoveToWindow(newWindow)` on every view of the subtree of `root`, parents first.
    static void willMoveToWindow(VLXView& root, VLXWindow* newWindow);
    /// Sets the contents scale of the subtree's layers for `newWindow` (its screen, or the main
    /// screen), then `didMoveToWindow()` on every view of it, parents first.
    static void didMoveToWindow(VLXView& root, VLXWindow* newWindow);
    /// The contents scale of every view of the subtree (drawing views redraw).
    static void applyContentsScale(VLXView& root, double scale);
    /// Called by `VLXWindow`'s initialiser.
    static void markAsWindow(VLXView& view) { view.m_isWindow = true; }
};
