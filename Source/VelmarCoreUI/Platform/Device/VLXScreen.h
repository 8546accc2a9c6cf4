#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <memory>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>

/// A display: its bounds in points and how many pixels make a point.
///
/// There is no physical display behind it; the host (or a test) sets the values it renders for.
/// `mainScreen()` is one process-wide screen that starts as a 390 × 844 point portrait phone
/// at scale 3, so that code asking for "the screen" gets a realistic answer headless.
class VLX_EXPORT VLXScreen : public VLXObject {
public:
    static std::shared_ptr<VLXScreen> create();
    /// The process-wide screen (created on first use, kept for the life of the process).
    static std::shared_ptr<VLXScreen> mainScreen();

    /// The screen's area in points; the origin is normally (0, 0).
    VLXRect bounds() const { return m_bounds; }
    void setBounds(const VLXRect& bounds) { m_bounds = bounds; }

    /// Pixels per point (1, 2 or 3 on real devices). Values that are not finite and positive
    /// are ignored, so image code can always divide by it.
    double scale() const { return m_scale; }
    void setScale(double scale);
    /// Pixels per point of the physical panel; without display zoom the same as `scale()`.
    double nativeScale() const { return m_scale; }

    /// "<VLXScreen: 0x…; bounds = {{0, 0}, {390, 844}}; scale = 3>".
    std::string description() const override;

protected:
    VLXScreen() = default;

private:
    VLXRect m_bounds = VLXRectMake(0, 0, 390, 844);
    double m_scale = 3;
};
