#include <VelmarCoreUI/Views/VLXEdgeSwipeGestureRecognizer.h>

#include <cmath>
#include <numbers>

#include <VelmarCoreUI/Platform/Input/VLXTouch.h>
#include <VelmarCoreUI/Platform/Views/VLXView.h>

namespace {
double expectedAngle(VLXUInteger side) {
    switch (side) {
        case VLXEdgeSwipeSideRight:
            return std::numbers::pi;
        case VLXEdgeSwipeSideTop:
            return std::numbers::pi / 2;
        case VLXEdgeSwipeSideBottom:
            return 3 * std::numbers::pi / 2;
        default:
            return 0;
    }
}
}  // namespace

VLXEdgeSwipeGestureRecognizer::VLXEdgeSwipeGestureRecognizer() = default;

VLXEdgeSwipeGestureRecognizer::~VLXEdgeSwipeGestureRecognizer() = default;

std::shared_ptr<VLXEdgeSwipeGestureRecognizer> VLXEdgeSwipeGestureRecognizer::create() {
    return makeInitialized<VLXEdgeSwipeGestureRecognizer>();
}

std::shared_ptr<VLXEdgeSwipeGestureRecognizer> VLXEdgeSwipeGestureRecognizer::create(
    Action action) {
    auto recognizer = create();
    recognizer->addAction(std::move(action));
    return recognizer;
}

void VLXEdgeSwipeGestureRecognizer::init() {
    VLXPanGestureRecognizer::init();
    m_minimumDistance = 5.0;
    m_margin = 20.0;
    m_side = VLXEdgeSwipeSideLeft;
}

bool VLXEdgeSwipeGestureRecognizer::isAngleCloseEnough(double angle) const {
    const double expected = expectedAngle(m_side);
    if (m_side != VLXEdgeSwipeSideLeft && angle < 0) {
        angle += 2 * std::numbers::pi;
    }
    const double quarter = std::numbers::pi / 4;
    return expected - quarter < angle && angle < expected + quarter;
}

VLXPoint VLXEdgeSwipeGestureRecognizer::convertToView(VLXPoint point, const VLXView* view) const {
    const VLXView* own = this->view();
    return own ? own->convertPointToView(point, view) : point;
}

VLXPoint VLXEdgeSwipeGestureRecognizer::translationInView(const VLXView* view) const {
    const VLXPoint current = convertToView(m_currentPoint, view);
    const VLXPoint start = convertToView(m_startPoint, view);
    return {current.x - start.x, current.y - start.y};
}

VLXPoint VLXEdgeSwipeGestureRecognizer::velocityInView(const VLXView* view) const {
    const double dt = m_currentPointTime - m_previousPointTime;
    if (dt == 0) {
        return {};
    }
    const VLXPoint current = convertToView(m_currentPoint, view);
    const VLXPoint previous = convertToView(m_previousPoint, view);
    return {(current.x - previous.x) / dt, (current.y - previous.y) / dt};
}

void VLXEdgeSwipeGestureRecognizer::touchesBegan(const VLXTouchSet& touches, const VLXEvent&) {
    if (touches.size() != 1 || !touches.front()) {
        setState(VLXGestureRecognizerState::Failed);
        return;
    }
    const VLXTouch& touch = *touches.front();
    const VLXView* own = view();
    const VLXPoint location = touch.locationInView(own);
    const VLXSize size = own ? own->frame().size : VLXSize{};
    bool outside = false;
    switch (m_side) {
        case VLXEdgeSwipeSideLeft:
            outside = location.x > m_margin;
            break;
        case VLXEdgeSwipeSideRight:
            outside = size.width - m_margin > location.x;
            break;
        case VLXEdgeSwipeSideTop:
            outside = location.y > m_margin;
            break;
        case VLXEdgeSwipeSideBottom:
            outside = size.height - m_margin > location.y;
            break;
        default:
            break;
    }
    if (outside) {
        setState(VLXGestureRecognizerState::Failed);
        return;
    }
    m_startPoint = location;
    m_currentPoint = location;
    m_currentPointTime = touch.timestamp();
}

void VLXEdgeSwipeGestureRecognizer::touchesMoved(const VLXTouchSet& touches, const VLXEvent&) {
    if (state() == VLXGestureRecognizerState::Failed || touches.empty() || !touches.front()) {
        return;
    }
    const VLXTouch& touch = *touches.front();
    m_previousPoint = m_currentPoint;
    m_previousPointTime = m_currentPointTime;
    m_currentPoint = touch.locationInView(view());
    m_currentPointTime = touch.timestamp();

    const VLXGestureRecognizerState current = state();
    if (current == VLXGestureRecognizerState::Possible) {
        const double dx = m_currentPoint.x - m_startPoint.x;
        const double dy = m_currentPoint.y - m_startPoint.y;
        if (std::sqrt(dx * dx + dy * dy) > m_minimumDistance) {
            setState(isAngleCloseEnough(std::atan2(dy, dx)) ? VLXGestureRecognizerState::Began
                                                            : VLXGestureRecognizerState::Failed);
        }
    } else if (current == VLXGestureRecognizerState::Began) {
        setState(VLXGestureRecognizerState::Changed);
    }
}

void VLXEdgeSwipeGestureRecognizer::touchesEnded(const VLXTouchSet&, const VLXEvent&) {
    const VLXGestureRecognizerState current = state();
    if (current == VLXGestureRecognizerState::Possible) {
        setState(VLXGestureRecognizerState::Failed);
    } else if (current == VLXGestureRecognizerState::Began ||
               current == VLXGestureRecognizerState::Changed) {
        setState(VLXGestureRecognizerState::Ended);
    }
}

void VLXEdgeSwipeGestureRecognizer::touchesCancelled(const VLXTouchSet&, const VLXEvent&) {
    m_startPoint = {};
    setState(VLXGestureRecognizerState::Failed);
}
