#pragma once

#include <memory>
#include <string>

#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXCompositor;
class VLXEvent;
class VLXImage;
class VLXScreen;
class VLXTouchDispatch;

/// The root of a view tree and its link to the host: it holds the screen it shows on and the
/// safe-area insets, and one call per host frame runs the run loop's turn and returns what was
/// drawn.
///
/// A window is its own `window()`. Its layer tree is laid out, displayed and committed by the run
/// loop's phases like any other; `renderFrame()` adds the composite. `sendEvent` delivers touch
/// input to the views and gesture recognisers of the window.
class VLX_EXPORT VLXWindow : public VLXView {
public:
    /// A window filling the main screen's bounds.
    static std::shared_ptr<VLXWindow> create();
    static std::shared_ptr<VLXWindow> createWithFrame(const VLXRect& frame);
    ~VLXWindow() override;

    /// The main screen unless set; null restores it.
    const std::shared_ptr<VLXScreen>& screen() const { return m_screen; }
    void setScreen(std::shared_ptr<VLXScreen> screen);
    /// Insets of the area not covered by the host's own chrome; zero by default. Non-finite or
    /// negative values are stored as zero. A change marks the window for layout.
    VLXEdgeInsets safeAreaInsets() const { return m_safeAreaInsets; }
    void setSafeAreaInsets(const VLXEdgeInsets& insets);

    /// One host frame: runs one turn of the main run loop at the clock's reading (posted blocks,
    /// timers, layout, display, commit, animation tick, callbacks), then composites the window's
    /// layer tree at the screen's scale. The image of the bounds size; the previous image object
    /// itself when nothing changed; nil for an empty or unusable size. Called from inside a turn
    /// it only composites.
    std::shared_ptr<VLXImage> renderFrame();
    /// The same frame as a one-page SVG or PDF document ("" for an unusable size).
    std::string renderSVG();
    std::string renderPDF();
    /// Lays out and displays what is marked, then renders the window into a new image at the
    /// screen's scale without running timers or callbacks (always a fresh image).
    std::shared_ptr<VLXImage> snapshot();
    /// The compositor `renderFrame` uses (its counters show reused frames).
    VLXCompositor& compositor() const { return *m_compositor; }

    /// Delivers one event of touch input. A touch that begins is hit-tested once, at its
    /// location; it then goes, for its whole life, to the enabled recognisers of the view hit,
    /// of that view's ancestors and of the window (deepest first), and after them to the view's
    /// touch methods, as the recognisers' `cancelsTouchesInView`, `delaysTouchesBegan` and
    /// `delaysTouchesEnded` allow. Touches that hit nothing, touches of another window, moves
    /// of touches that never began and repeated ends are ignored.
    void sendEvent(const VLXEvent& event);

protected:
    VLXWindow();
    void initWithFrame(const VLXRect& frame) override;

private:
    std::shared_ptr<VLXScreen> m_screen;
    std::shared_ptr<VLXCompositor> m_compositor;
    std::unique_ptr<VLXTouchDispatch> m_dispatch;  // made by the first event
    VLXEdgeInsets m_safeAreaInsets{};
    double m_appliedScale = 0;  // the screen scale the tree's contents scales were set for
};
