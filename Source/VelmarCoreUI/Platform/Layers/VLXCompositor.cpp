#include <VelmarCoreUI/Platform/Layers/VLXCompositor.h>

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsContext.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Layers/VLXGradientLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXShapeLayer.h>
#include <VelmarCoreUI/Platform/Primitives/VLXTransform3D.h>

namespace {

// Each cairo group is a surface the size of the clip: deeper nesting than this draws like a
// document (alpha folded in, masks as clips) rather than exhausting memory.
constexpr int kMaximumGroupDepth = 32;

// Control distance of a quarter-circle cubic.
constexpr double kKappa = 0.5522847498307936;

double finiteOr(double value, double fallback) {
    return std::isfinite(value) ? value : fallback;
}

// Appends a rectangle with circular corners (radius clamped to half the shorter side) to the
// context's current path, without building a path object.
void addRoundedRect(VLXGraphicsContext& context, const VLXRect& rect, double radius) {
    const double r = std::min({finiteOr(radius, 0), rect.size.width / 2, rect.size.height / 2});
    if (!(r > 0)) {
        context.addRect(rect);
        return;
    }
    const double x0 = rect.minX(), y0 = rect.minY(), x1 = rect.maxX(), y1 = rect.maxY();
    const double k = r * kKappa;
    context.moveToPoint({x0 + r, y0});
    context.addLineToPoint({x1 - r, y0});
    context.addCurveToPoint({x1 - r + k, y0}, {x1, y0 + r - k}, {x1, y0 + r});
    context.addLineToPoint({x1, y1 - r});
    context.addCurveToPoint({x1, y1 - r + k}, {x1 - r + k, y1}, {x1 - r, y1});
    context.addLineToPoint({x0 + r, y1});
    context.addCurveToPoint({x0 + r - k, y1}, {x0, y1 - r + k}, {x0, y1 - r});
    context.addLineToPoint({x0, y0 + r});
    context.addCurveToPoint({x0, y0 + r - k}, {x0 + r - k, y0}, {x0 + r, y0});
    context.closePath();
}

bool isVisibleColor(const std::optional<VLXColor>& color) {
    return color && !(color->numberOfComponents() > 0 && color->alpha() <= 0);
}

}  // namespace

struct VLXCompositor::Walker {
    enum class Stage { Content, AwaitingMask, Done };

    struct Frame {
        const VLXLayer* model = nullptr;
        const VLXLayer* layer = nullptr;         // what is drawn: presentation or model
        std::shared_ptr<VLXLayer> presentation;  // keeps the presentation copy alive
        double opacity = 1;                      // this layer's own, clamped
        double outerAlpha = 1;                   // alpha inherited from outside
        double alpha = 1;                        // alpha for this layer's own drawing
        bool opacityGroup = false;
        bool maskGroup = false;
        cairo_pattern_t* content = nullptr;
        std::shared_ptr<VLXLayer> mask;
        std::size_t childBegin = 0, childEnd = 0, next = 0;
        Stage stage = Stage::Content;
    };

    std::vector<Frame> stack;
    // Sublayers still to draw, held strongly: a display on the way may change the tree.
    std::vector<std::shared_ptr<VLXLayer>> order;
    // Reused by the z ordering (std::stable_sort would allocate a buffer every frame).
    std::vector<std::pair<double, std::size_t>> zKeys;
    std::vector<std::shared_ptr<VLXLayer>> zScratch;
    bool busy = false;

    // Orders order[begin…] by zPosition, equal ones keeping their order.
    void sortByZPosition(std::size_t begin) {
        const std::size_t count = order.size() - begin;
        zKeys.clear();
        for (std::size_t i = 0; i < count; ++i) {
            const double z = order[begin + i]->zPosition();
            zKeys.emplace_back(std::isnan(z) ? 0 : z, i);  // the index breaks ties: stable
        }
        std::sort(zKeys.begin(), zKeys.end());
        zScratch.clear();
        for (const auto& key : zKeys) {
            zScratch.push_back(std::move(order[begin + key.second]));
        }
        std::move(zScratch.begin(), zScratch.end(),
                  order.begin() + static_cast<std::ptrdiff_t>(begin));
        zScratch.clear();
    }

    VLXGraphicsContext* context = nullptr;
    cairo_t* cr = nullptr;
    bool bitmap = true;
    int groupDepth = 0;

    void run(const VLXLayer& root, VLXGraphicsContext& target) {
        context = &target;
        cr = target.cairoContext();
        bitmap = target.kind() == VLXGraphicsContextKind::Bitmap;
        if (cr == nullptr || !target.isValid()) {
            return;
        }
        busy = true;
        target.saveGState();
        enter(root, 1);
        while (!stack.empty()) {
            const std::size_t top = stack.size() - 1;
            if (stack[top].next < stack[top].childEnd) {
                const std::shared_ptr<VLXLayer> child = order[stack[top].next++];
                enter(*child, stack[top].alpha);
                continue;
            }
            if (stack[top].stage == Stage::Content) {
                finishContent(top);
                continue;
            }
            if (stack[top].stage == Stage::AwaitingMask) {
                applyMask(stack[top]);
            }
            leave(stack[top]);
            order.resize(stack[top].childBegin);
            stack.pop_back();
        }
        target.restoreGState();
        order.clear();
        groupDepth = 0;
        busy = false;
    }

    void enter(const VLXLayer& model, double outerAlpha) {
        if (model.needsDisplay()) {
            // The run loop displays before compositing; hosts that render directly get the
            // same result.
            const_cast<VLXLayer&>(model).displayIfNeeded();
        }
        std::shared_ptr<VLXLayer> presentation;
        const VLXLayer* layer = &model;
        if (model.hasAnimations()) {
            presentation = model.presentationLayer();
            if (presentation) {
                layer = presentation.get();
                if (model.presentationNeedsRedraw()) {
                    presentation->display();
                }
            }
        }
        if (layer->isHidden()) {
            return;
        }
        const double opacity = std::clamp(finiteOr(layer->opacity(), 1), 0.0, 1.0);
        if (opacity <= 0 || outerAlpha <= 0) {
            return;
        }
        Frame frame;
        frame.model = &model;
        frame.layer = layer;
        frame.presentation = std::move(presentation);
        frame.opacity = opacity;
        frame.outerAlpha = outerAlpha;

        context->saveGState();
        const VLXRect bounds = VLXRectStandardize(layer->bounds());
        const VLXPoint position = layer->position();
        const VLXPoint anchor = layer->anchorPoint();
        context->translateCTM(position.x, position.y);
        context->concatCTM(VLXTransform3DGetAffineTransform(layer->transform()));
        context->translateCTM(-anchor.x * bounds.size.width - bounds.origin.x,
                              -anchor.y * bounds.size.height - bounds.origin.y);

        const auto* shape = dynamic_cast<const VLXShapeLayer*>(layer);
        const auto* gradient = shape ? nullptr : dynamic_cast<const VLXGradientLayer*>(layer);
        const bool hasBackground = isVisibleColor(layer->backgroundColor());
        const bool hasBorder = layer->borderWidth() > 0 && isVisibleColor(layer->borderColor());
        const auto& contents = layer->contents();
        int things = (hasBackground ? 1 : 0) + (hasBorder ? 1 : 0) + (contents ? 1 : 0) +
                     (gradient ? 1 : 0) + (shape ? 2 : 0) +
                     static_cast<int>(std::min<std::size_t>(model.sublayers().size(), 2));
        const VLXLayer* mask = model.mask().get();
        const bool groups = bitmap && groupDepth + 2 <= kMaximumGroupDepth;
        frame.maskGroup = mask != nullptr && groups;
        frame.opacityGroup = groups && opacity < 1 && (things > 1 || frame.maskGroup);
        groupDepth += (frame.maskGroup ? 1 : 0) + (frame.opacityGroup ? 1 : 0);
        if (frame.opacityGroup) {
            cairo_push_group(cr);
            frame.alpha = 1;
        } else {
            frame.alpha = outerAlpha * opacity;
        }
        if (mask != nullptr && !frame.maskGroup) {
            context->clipToRect(mask->frame());
        }
        if (frame.maskGroup) {
            cairo_push_group(cr);
        }
        context->setAlpha(frame.alpha);

        if (hasBackground) {
            context->setFillColor(*layer->backgroundColor());
            addRoundedRect(*context, bounds, layer->cornerRadius());
            context->fillPath();
        }
        if (layer->masksToBounds()) {
            addRoundedRect(*context, bounds, layer->cornerRadius());
            context->clip();
        }
        if (contents) {
            context->drawImage(*contents, bounds);
        }
        if (gradient) {
            gradient->drawGradient(*context);
        } else if (shape) {
            shape->drawShape(*context);
        }

        frame.childBegin = order.size();
        const auto& sublayers = model.sublayers();
        bool ordered = true;
        for (const auto& sublayer : sublayers) {
            order.push_back(sublayer);
            ordered = ordered && sublayer->zPosition() == 0;
        }
        frame.childEnd = order.size();
        frame.next = frame.childBegin;
        if (!ordered) {
            sortByZPosition(frame.childBegin);
        }
        stack.push_back(std::move(frame));
    }

    // After the sublayers: the border, then either the mask walk or the end of the layer.
    void finishContent(std::size_t index) {
        Frame& frame = stack[index];
        const VLXLayer& layer = *frame.layer;
        const double width = layer.borderWidth();
        if (width > 0 && std::isfinite(width) && isVisibleColor(layer.borderColor())) {
            // The border lies inside the bounds, above everything else and never clipped away by
            // the layer's own masking.
            const VLXRect bounds = VLXRectStandardize(layer.bounds());
            const double inset = std::min({width, bounds.size.width, bounds.size.height}) / 2;
            context->setStrokeColor(*layer.borderColor());
            context->setLineWidth(std::min({width, bounds.size.width, bounds.size.height}));
            context->setLineDash(0, {});
            addRoundedRect(*context, VLXRectInset(bounds, inset, inset),
                           layer.cornerRadius() - inset);
            context->strokePath();
        }
        if (!frame.maskGroup) {
            frame.stage = Stage::Done;
            return;
        }
        frame.content = cairo_pop_group(cr);
        cairo_push_group(cr);
        frame.stage = Stage::AwaitingMask;
        // Held by the frame: a display during the mask's walk may change the owner's mask.
        frame.mask = frame.model->mask();
        if (const std::shared_ptr<VLXLayer> mask = frame.mask) {
            // May push a frame: `frame` is not used after this.
            enter(*mask, 1);
        }
    }

    void applyMask(Frame& frame) {
        cairo_pattern_t* maskPattern = cairo_pop_group(cr);
        cairo_set_source(cr, frame.content);
        cairo_mask(cr, maskPattern);
        cairo_pattern_destroy(maskPattern);
        cairo_pattern_destroy(frame.content);
        frame.content = nullptr;
        --groupDepth;
    }

    void leave(Frame& frame) {
        if (frame.opacityGroup) {
            cairo_pop_group_to_source(cr);
            cairo_paint_with_alpha(cr, frame.outerAlpha * frame.opacity);
            --groupDepth;
        }
        context->restoreGState();
    }
};

std::shared_ptr<VLXCompositor> VLXCompositor::create() {
    return makeInitialized<VLXCompositor>();
}

VLXCompositor::VLXCompositor() : m_walker(std::make_unique<Walker>()) {}

VLXCompositor::~VLXCompositor() = default;

void VLXCompositor::render(const VLXLayer& root, VLXGraphicsContext& context) {
    thread_local Walker walker;
    if (walker.busy) {
        // Called from a layer's drawing during a walk: a walker of its own.
        Walker nested;
        nested.run(root, context);
        return;
    }
    walker.run(root, context);
}

void VLXCompositor::renderInto(const VLXLayer& root, VLXGraphicsContext& context) {
    if (m_walker->busy) {
        Walker nested;
        nested.run(root, context);
        return;
    }
    m_walker->run(root, context);
}

namespace {

std::string renderDocument(const VLXLayer& root,
                           const std::shared_ptr<VLXGraphicsContext>& context) {
    if (!context) {
        return {};
    }
    VLXCompositor::render(root, *context);
    return context->documentData();
}

}  // namespace

std::string VLXCompositor::renderSVG(const VLXLayer& root, VLXSize size) {
    return renderDocument(root, VLXGraphicsContext::createSVG(size));
}

std::string VLXCompositor::renderPDF(const VLXLayer& root, VLXSize size) {
    return renderDocument(root, VLXGraphicsContext::createPDF(size));
}

void VLXCompositor::invalidate() {
    m_lastImage.reset();
}

std::shared_ptr<VLXImage> VLXCompositor::renderFrame(const VLXLayer& root, VLXSize size,
                                                     double scale) {
    if (m_walker->busy) {
        return nullptr;  // asked from a drawing inside this compositor's own walk
    }
    const double now = VLXClock::now();
    const bool animating = VLXLayer::animatedLayerCount() > 0;
    const bool sameRoot = m_lastRoot == &root && !m_lastRootLifetime.expired();
    if (m_lastImage && sameRoot && size == m_lastSize && scale == m_lastScale &&
        VLXLayer::globalChangeCount() == m_lastChangeCount && (!animating || now == m_lastTime)) {
        ++m_framesReused;
        return m_lastImage;
    }
    if (!m_context || !(m_context->size() == size) || m_context->scale() != scale ||
        !m_context->isValid()) {
        m_context = VLXGraphicsContext::createBitmap(size, scale);
        if (!m_context) {
            m_lastImage.reset();
            return nullptr;
        }
    } else {
        m_context->clearRect(VLXRect{{0, 0}, size});
    }
    renderInto(root, *m_context);
    m_lastImage = m_context->makeImage();
    m_lastRoot = &root;
    m_lastRootLifetime = root.weak_from_this();
    m_lastSize = size;
    m_lastScale = scale;
    m_lastTime = now;
    // Read after the walk: displays made on the way count as part of this frame.
    m_lastChangeCount = VLXLayer::globalChangeCount();
    ++m_framesRendered;
    return m_lastImage;
}
