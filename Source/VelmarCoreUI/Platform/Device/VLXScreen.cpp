#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Primitives/Private/VLXNumberPrinting.h>

#include <cmath>
#include <sstream>

std::shared_ptr<VLXScreen> VLXScreen::create() {
    return makeInitialized<VLXScreen>();
}

std::shared_ptr<VLXScreen> VLXScreen::mainScreen() {
    static const std::shared_ptr<VLXScreen> screen = create();
    return screen;
}

void VLXScreen::setScale(double scale) {
    if (std::isfinite(scale) && scale > 0) {
        m_scale = scale;
    }
}

std::string VLXScreen::description() const {
    std::ostringstream text;
    text << "<VLXScreen: " << static_cast<const void*>(this) << "; bounds = " << m_bounds
         << "; scale = ";
    vlx::detail::printNumber(text, m_scale);
    text << '>';
    return text.str();
}
