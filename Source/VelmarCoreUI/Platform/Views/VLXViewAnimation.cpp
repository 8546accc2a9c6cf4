// View animation blocks: the view, as its layer's delegate, turns changes made inside a block
// into basic animations; stand-alone layers changed there animate through the transaction.

#include <VelmarCoreUI/Platform/Views/VLXView.h>

#include <cmath>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXMediaTimingFunction.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

namespace {

// Counts nothing itself: the block's transaction completion waits for every animation added in
// the block; this only remembers whether one of them was cut short.
class BlockState final : public VLXAnimationDelegate {
public:
    bool finished = true;
    void animationDidStop(VLXAnimation&, bool done) override {
        if (!done) {
            finished = false;
        }
    }
};

struct BlockContext {
    bool animates = false;
    double duration = 0;
    double delay = 0;
    std::shared_ptr<VLXMediaTimingFunction> curve;
    std::shared_ptr<BlockState> state;
};

std::vector<BlockContext>& contexts() {
    static auto* stack = new std::vector<BlockContext>();  // lives as long as the run loop
    return *stack;
}

// A zero duration after a delay still needs an animation to hold the old value until then; it
// ends at the first frame after the delay.
constexpr double kInstantDuration = 1e-9;

std::shared_ptr<VLXMediaTimingFunction> curveFor(VLXViewAnimationOptions options) {
    switch ((options >> 16) & 0xF) {
        case 1:
            return VLXMediaTimingFunction::functionWithName(VLXMediaTimingFunctionName::EaseIn);
        case 2:
            return VLXMediaTimingFunction::functionWithName(VLXMediaTimingFunctionName::EaseOut);
        case 3:
            return VLXMediaTimingFunction::functionWithName(VLXMediaTimingFunctionName::Linear);
        default:
            return VLXMediaTimingFunction::functionWithName(
                VLXMediaTimingFunctionName::EaseInEaseOut);
    }
}

bool isViewKey(std::string_view key) {
    return key == "opacity" || key == "position" || key == "bounds" || key == "backgroundColor" ||
           key == "transform";
}

// Runs `body` inside `context` and two transactions: the outer one carries the completion (so a
// completion set by the block itself cannot replace it), the inner one the settings that
// stand-alone layers read.
template <class Settings>
void runBlock(BlockContext context, const std::function<void()>& body,
              const std::function<void()>& completion, Settings settings) {
    VLXTransaction::begin();
    if (completion) {
        VLXTransaction::setCompletionBlock(completion);
    }
    VLXTransaction::begin();
    settings();
    contexts().push_back(std::move(context));
    auto close = [] {
        contexts().pop_back();
        VLXTransaction::commit();
        VLXTransaction::commit();
    };
    try {
        if (body) {
            body();
        }
    } catch (...) {
        close();
        throw;
    }
    close();
}

}  // namespace

void VLXView::animate(double duration, double delay, VLXViewAnimationOptions options,
                      const std::function<void()>& animations, Completion completion) {
    BlockContext context;
    const bool timed = std::isfinite(duration) && duration > 0;
    context.delay = std::isfinite(delay) && delay > 0 ? delay : 0;
    context.animates = timed || context.delay > 0;
    context.duration = timed ? duration : kInstantDuration;
    context.curve = curveFor(options);
    context.state = std::make_shared<BlockState>();
    std::function<void()> done;
    if (completion) {
        done = [state = context.state, completion = std::move(completion)] {
            completion(state->finished);
        };
    }
    const bool animates = context.animates;
    const double layerDuration = context.duration;
    auto curve = context.curve;
    runBlock(std::move(context), animations, done, [&] {
        if (animates) {
            // Stand-alone layers take the block's duration and curve (not its delay).
            VLXTransaction::setDisableActions(false);
            VLXTransaction::setAnimationDuration(layerDuration);
            VLXTransaction::setAnimationTimingFunction(curve);
        } else {
            VLXTransaction::setDisableActions(true);
        }
    });
}

void VLXView::animate(double duration, const std::function<void()>& animations,
                      Completion completion) {
    animate(duration, 0, VLXViewAnimationOptionNone, animations, std::move(completion));
}

bool VLXView::isAnimating() {
    const auto& stack = contexts();
    return !stack.empty() && stack.back().animates;
}

void VLXView::performWithoutAnimation(const std::function<void()>& block) {
    runBlock(BlockContext{}, block, {}, [] { VLXTransaction::setDisableActions(true); });
}

VLXLayerActionAnswer VLXView::actionForLayer(VLXLayer& layer, std::string_view key) {
    if (&layer != m_layer.get()) {
        return std::nullopt;
    }
    const auto& stack = contexts();
    if (stack.empty() || !stack.back().animates || !isViewKey(key)) {
        return noAction();
    }
    const BlockContext& context = stack.back();
    auto animation = VLXBasicAnimation::animationWithKeyPath(std::string(key));
    // Asked before the new value is stored: from what is on screen now (an animation running
    // on the key included) to the model value, read at each frame.
    std::shared_ptr<VLXLayer> presentation = layer.presentationLayer();
    animation->setFromValue(presentation ? presentation->valueForKey(key) : layer.valueForKey(key));
    animation->setDuration(context.duration);
    animation->setTimingFunction(context.curve);
    if (context.delay > 0) {
        animation->setBeginTime(VLXClock::now() + context.delay);
        animation->setFillMode(VLXFillMode::Backwards);
    }
    animation->setDelegate(context.state);
    return animation;
}
