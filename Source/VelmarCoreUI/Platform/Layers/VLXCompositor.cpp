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

// A key that changes whenever `generation` or anything mixed in before it changes.
std::uint64_t mixKey(std::uint64_t key, std::uint64_t value) {
    std::uint64_t z = key ^ (value + 0x9e3779b97f4a7c15ULL + (key << 6) + (key >> 2));
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
    return z ^ (z >> 31);
}

}  // namespace

// A rectangle of device pixels, half open; empty when x0 >= x1 or y0 >= y1.
struct VLXCompositor::DamageBox {
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;

    bool isEmpty() const { return !(x0 < x1 && y0 < y1); }
    bool intersects(const DamageBox& other) const {
        return !isEmpty() && !other.isEmpty() && x0 < other.x1 && other.x0 < x1 && y0 < other.y1 &&
               other.y0 < y1;
    }
    void unite(const DamageBox& other) {
        if (other.isEmpty()) {
            return;
        }
        if (isEmpty()) {
            *this = other;
            return;
        }
        x0 = std::min(x0, other.x0);
        y0 = std::min(y0, other.y0);
        x1 = std::max(x1, other.x1);
        y1 = std::max(y1, other.y1);
    }
    bool operator==(const DamageBox&) const = default;
};

// What one layer contributed to a frame: a key that changes with the layer and every ancestor
// (their generations), and the device box it can paint in.
struct VLXCompositor::LayerRecord {
    const VLXLayer* model = nullptr;
    std::uint64_t key = 0;
    DamageBox box;

    // Records are kept sorted by layer, so two frames compare in one merge.
    static bool byModel(const LayerRecord& a, const LayerRecord& b) {
        return std::less<const VLXLayer*>()(a.model, b.model);
    }
};

struct VLXCompositor::Walker {
    enum class Stage { Content, AwaitingMask, Done };

    struct Frame {
        std::uint64_t key = 0;  // this layer's and its ancestors' generations
        bool paints = true;     // false: outside the damage, or measuring
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

    // Damage tracking (renderFrame only). A measuring walk paints nothing and only records;
    // a damaged walk paints just the layers whose box meets `damage`.
    std::vector<LayerRecord>* records = nullptr;
    const DamageBox* damage = nullptr;
    bool measuring = false;
    double deviceScale = 1;

    // The device pixels a layer can paint: its bounds (and a shape's outline with the reach of
    // its stroke) through the CTM, grown by two pixels for antialiasing; everything when that
    // cannot be told.
    DamageBox deviceBox(const VLXRect& bounds, const VLXShapeLayer* shape) const {
        VLXRect area = bounds;
        if (shape) {
            if (const auto path = shape->pathObject()) {
                const double reach = std::max(finiteOr(shape->lineWidth(), 0), 0.0) *
                                     std::max(finiteOr(shape->miterLimit(), 1), 1.0);
                area = VLXRectUnion(area, VLXRectInset(path->path().boundingBox(), -reach, -reach));
            }
        }
        const VLXAffineTransform ctm = context->CTM();
        DamageBox box{HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
        for (const VLXPoint corner :
             {VLXPoint{area.minX(), area.minY()}, VLXPoint{area.maxX(), area.minY()},
              VLXPoint{area.minX(), area.maxY()}, VLXPoint{area.maxX(), area.maxY()}}) {
            const VLXPoint p = VLXPointApplyAffineTransform(corner, ctm);
            const double x = p.x * deviceScale, y = p.y * deviceScale;
            if (!std::isfinite(x) || !std::isfinite(y)) {
                return DamageBox{-HUGE_VAL, -HUGE_VAL, HUGE_VAL, HUGE_VAL};
            }
            box.x0 = std::min(box.x0, x);
            box.y0 = std::min(box.y0, y);
            box.x1 = std::max(box.x1, x);
            box.y1 = std::max(box.y1, y);
        }
        constexpr double kMargin = 2;
        return DamageBox{std::floor(box.x0) - kMargin, std::floor(box.y0) - kMargin,
                         std::ceil(box.x1) + kMargin, std::ceil(box.y1) + kMargin};
    }

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
        frame.key = mixKey(stack.empty() ? 0 : stack.back().key,
                           mixKey(reinterpret_cast<std::uintptr_t>(&model), model.generation()));
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
        if (records != nullptr || damage != nullptr) {
            const DamageBox box = deviceBox(bounds, shape);
            if (records != nullptr) {
                records->push_back(LayerRecord{&model, frame.key, box});
            }
            frame.paints = damage == nullptr || box.intersects(*damage);
        }
        if (measuring) {
            frame.paints = false;
            pushSublayers(model, frame);
            return;
        }
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

        if (hasBackground && frame.paints) {
            context->setFillColor(*layer->backgroundColor());
            addRoundedRect(*context, bounds, layer->cornerRadius());
            context->fillPath();
        }
        if (layer->masksToBounds()) {
            addRoundedRect(*context, bounds, layer->cornerRadius());
            context->clip();
        }
        if (frame.paints) {
            if (contents) {
                context->drawImage(*contents, bounds);
            }
            if (gradient) {
                gradient->drawGradient(*context);
            } else if (shape) {
                shape->drawShape(*context);
            }
        }
        pushSublayers(model, frame);
    }

    // Queues the sublayers (by zPosition) and pushes the layer's frame.
    void pushSublayers(const VLXLayer& model, Frame& frame) {
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
        if (frame.paints && width > 0 && std::isfinite(width) &&
            isVisibleColor(layer.borderColor())) {
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
            if (measuring) {
                // The mask is measured too: a change of it changes what the owner shows.
                frame.mask = frame.model->mask();
                if (const std::shared_ptr<VLXLayer> mask = frame.mask) {
                    enter(*mask, 1);  // may push a frame: `frame` is not used after this
                }
            }
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
    const bool sameFrame = m_lastImage && sameRoot && size == m_lastSize && scale == m_lastScale;
    if (sameFrame && VLXLayer::globalChangeCount() == m_lastChangeCount &&
        (!animating || now == m_lastTime)) {
        ++m_framesReused;
        return m_lastImage;
    }
    Walker& walker = *m_walker;
    // Still layers change only through their generations, so a frame like the last one redraws
    // just the pixels of the layers whose key or box moved. Animations change what is drawn
    // without generations: while they run, every frame is drawn whole.
    DamageBox damage;
    bool partial = false;
    if (sameFrame && !animating && m_context && m_context->isValid()) {
        m_newRecords.clear();
        walker.records = &m_newRecords;
        walker.measuring = true;
        walker.deviceScale = scale;
        walker.run(root, *m_context);
        walker.measuring = false;
        walker.records = nullptr;
        damage = damageBetween(m_records, m_newRecords, size, scale);
        if (damage.isEmpty()) {  // changes nobody can see
            m_records.swap(m_newRecords);
            m_lastTime = now;
            m_lastChangeCount = VLXLayer::globalChangeCount();
            ++m_framesReused;
            return m_lastImage;
        }
        const double area = (damage.x1 - damage.x0) * (damage.y1 - damage.y0);
        partial = area <= 0.5 * std::ceil(size.width * scale) * std::ceil(size.height * scale);
    }
    if (!m_context || !(m_context->size() == size) || m_context->scale() != scale ||
        !m_context->isValid()) {
        m_context = VLXGraphicsContext::createBitmap(size, scale);
        if (!m_context) {
            m_lastImage.reset();
            m_records.clear();
            return nullptr;
        }
        partial = false;
    }
    if (partial) {
        const VLXRect region{{damage.x0 / scale, damage.y0 / scale},
                             {(damage.x1 - damage.x0) / scale, (damage.y1 - damage.y0) / scale}};
        m_context->saveGState();
        m_context->clipToRect(region);
        m_context->clearRect(region);
        walker.damage = &damage;
        renderInto(root, *m_context);
        walker.damage = nullptr;
        m_context->restoreGState();
        m_records.swap(m_newRecords);
        ++m_framesPartlyRendered;
    } else {
        m_context->clearRect(VLXRect{{0, 0}, size});
        m_newRecords.clear();
        walker.records = &m_newRecords;
        walker.deviceScale = scale;
        renderInto(root, *m_context);
        walker.records = nullptr;
        std::sort(m_newRecords.begin(), m_newRecords.end(), LayerRecord::byModel);
        m_records.swap(m_newRecords);
    }
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

// The device pixels (within the frame) of every layer that appeared, disappeared, moved or
// changed between two frames' records; `current` is sorted here.
VLXCompositor::DamageBox VLXCompositor::damageBetween(const std::vector<LayerRecord>& previous,
                                                      std::vector<LayerRecord>& current,
                                                      VLXSize size, double scale) {
    const auto byModel = LayerRecord::byModel;
    std::sort(current.begin(), current.end(), byModel);
    DamageBox damage;
    auto old = previous.begin();
    auto now = current.begin();
    while (old != previous.end() || now != current.end()) {
        if (now == current.end() || (old != previous.end() && byModel(*old, *now))) {
            damage.unite((old++)->box);
        } else if (old == previous.end() || byModel(*now, *old)) {
            damage.unite((now++)->box);
        } else {
            if (old->key != now->key || !(old->box == now->box)) {
                damage.unite(old->box);
                damage.unite(now->box);
            }
            ++old;
            ++now;
        }
    }
    damage.x0 = std::max(damage.x0, 0.0);
    damage.y0 = std::max(damage.y0, 0.0);
    damage.x1 = std::min(damage.x1, std::ceil(size.width * scale));
    damage.y1 = std::min(damage.y1, std::ceil(size.height * scale));
    return damage;
}
