#pragma once

// Shared helpers of the animation tests: the layer tests' manual clock and layers committed
// without actions.
#include <VelmarCoreUI/Animation/VLXTransactionHelpers.h>
#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Layers/VLXAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

#include <limits>
#include <memory>
#include <string>

#include "Layers/LayerTestSupport.h"

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInf = std::numeric_limits<double>::infinity();

/// A committed stand-alone 10 × 10 layer, set up without actions.
inline std::shared_ptr<VLXLayer> committedLayer(double opacity = 1, VLXPoint position = {5, 5}) {
    auto layer = VLXLayer::create();
    vlx_transactionByDisablingActions([&] {
        layer->setBounds({{0, 0}, {10, 10}});
        layer->setOpacity(opacity);
        layer->setPosition(position);
    });
    VLXRunLoop::main().runOnce();
    return layer;
}

/// Adds without implicit animations and commits at the current clock reading.
inline void addCommitted(VLXLayer& layer, const std::shared_ptr<VLXAnimation>& a, const char* key) {
    vlx_transactionByDisablingActions([&] { layer.addAnimation(a, std::string(key)); });
    VLXRunLoop::main().runOnce();
}
