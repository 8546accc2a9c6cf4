// vlx-bench-layer-tree-table: the per-frame work of layer trees against plain loops doing the same
// arithmetic on plain structs. Cases: setting positions with actions disabled, hit testing among
// many siblings, presentation copies of animated layers, a layout pass over a clean tree, and
// building and tearing down a deep tree. Prints
// "case <name> ours_ms <x> baseline_ms <y> ratio <r>" per case.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>
#include <VelmarCoreUI/Platform/Layers/VLXBasicAnimation.h>
#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>
#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

#include "TableCase.h"

namespace {

volatile double g_sink;

// The plain side: a rectangle with position, anchor and a 2-D transform.
struct PlainLayer {
    VLXRect bounds;
    VLXPoint position;
    VLXPoint anchor{0.5, 0.5};
    VLXAffineTransform transform = VLXAffineTransformIdentity;
    double opacity = 1;
    std::vector<PlainLayer*> children;
};

// The plain hit test: inverse transform about the anchor, then the bounds.
bool plainContains(const PlainLayer& l, VLXPoint p) {
    const VLXAffineTransform inverse = VLXAffineTransformInvert(l.transform);
    const VLXPoint d =
        VLXPointApplyAffineTransform({p.x - l.position.x, p.y - l.position.y}, inverse);
    const VLXPoint local{d.x + l.bounds.origin.x + l.anchor.x * l.bounds.size.width,
                         d.y + l.bounds.origin.y + l.anchor.y * l.bounds.size.height};
    return VLXRectContainsPoint(l.bounds, local);
}

}  // namespace

int main() {
    VLXClock::setManual(1000);
    VLXRunLoop::main().runOnce();

    // 1. A million position changes with actions disabled.
    {
        auto layer = VLXLayer::create();
        PlainLayer plain;
        VLXTransaction::begin();
        VLXTransaction::setDisableActions(true);
        auto ours = [&] {
            for (int i = 0; i < 1000000; ++i) {
                layer->setPosition({static_cast<double>(i), 1});
            }
            g_sink = layer->position().x;
        };
        auto baseline = [&] {
            for (int i = 0; i < 1000000; ++i) {
                plain.position = {static_cast<double>(i), 1};
                g_sink = plain.position.x;
            }
        };
        table::printCase("set_position_1m_no_actions", table::bestMilliseconds(ours, 5),
                         table::bestMilliseconds(baseline, 5));
        VLXTransaction::commit();
    }

    // 2. Hit tests among 2 000 turned siblings (front-most first).
    {
        VLXTransaction::begin();
        VLXTransaction::setDisableActions(true);
        auto root = VLXLayer::create();
        root->setFrame({{0, 0}, {1000, 1000}});
        std::vector<PlainLayer> plain(2000);
        for (int i = 0; i < 2000; ++i) {
            auto s = VLXLayer::create();
            const double x = (i * 37) % 950, y = (i * 91) % 950;
            s->setFrame({{x, y}, {20, 20}});
            s->setAffineTransform(VLXAffineTransformMakeRotation(0.01 * i));
            root->addSublayer(s);
            PlainLayer& p = plain[static_cast<std::size_t>(i)];
            p.bounds = s->bounds();
            p.position = s->position();
            p.transform = s->affineTransform();
        }
        VLXTransaction::commit();
        auto ours = [&] {
            double hits = 0;
            for (int k = 0; k < 200; ++k) {
                const VLXPoint p{(k * 53) % 1000 + 0.5, (k * 29) % 1000 + 0.5};
                hits += root->hitTest(p) != root ? 1 : 0;
            }
            g_sink = hits;
        };
        auto baseline = [&] {
            double hits = 0;
            for (int k = 0; k < 200; ++k) {
                const VLXPoint p{(k * 53) % 1000 + 0.5, (k * 29) % 1000 + 0.5};
                for (auto it = plain.rbegin(); it != plain.rend(); ++it) {
                    if (plainContains(*it, p)) {
                        hits += 1;
                        break;
                    }
                }
            }
            g_sink = hits;
        };
        table::printCase("hit_test_200_points_2000_siblings", table::bestMilliseconds(ours, 20),
                         table::bestMilliseconds(baseline, 20));
    }

    // 3. Presentation copies of 1 000 layers with a position and an opacity animation each.
    {
        std::vector<std::shared_ptr<VLXLayer>> layers;
        std::vector<PlainLayer> plain(1000);
        for (int i = 0; i < 1000; ++i) {
            layers.push_back(VLXLayer::create());
        }
        VLXRunLoop::main().runOnce();  // committed
        for (auto& l : layers) {
            auto move = VLXBasicAnimation::animationWithKeyPath("position");
            move->setFromValue(VLXValue::valueWithPoint({0, 0}));
            move->setToValue(VLXValue::valueWithPoint({100, 50}));
            move->setDuration(1000);
            l->addAnimation(move, std::string("move"));
            auto fade = VLXBasicAnimation::animationWithKeyPath("opacity");
            fade->setFromValue(VLXValue(1.0));
            fade->setToValue(VLXValue(0.0));
            fade->setDuration(1000);
            l->addAnimation(fade, std::string("fade"));
        }
        VLXRunLoop::main().runOnce();
        double t = 0;
        auto ours = [&] {
            VLXClock::advance(0.016);
            double sum = 0;
            for (auto& l : layers) {
                auto p = l->presentationLayer();
                sum += p->position().x + p->opacity();
            }
            g_sink = sum;
        };
        auto baseline = [&] {
            t += 0.016;
            double sum = 0;
            const double f = t / 1000;
            for (PlainLayer& p : plain) {
                // The copy the presentation makes, and the two interpolations.
                PlainLayer copy = p;
                copy.position = {100 * f, 50 * f};
                copy.opacity = 1 - f;
                sum += copy.position.x + copy.opacity;
            }
            g_sink = sum;
        };
        table::printCase("presentation_1000_animated_layers", table::bestMilliseconds(ours, 50),
                         table::bestMilliseconds(baseline, 50));
    }

    // 4. Layout and display passes over a clean tree of 10 000 layers (nothing marked).
    {
        VLXTransaction::begin();
        VLXTransaction::setDisableActions(true);
        auto root = VLXLayer::create();
        std::vector<std::unique_ptr<PlainLayer>> plain;
        plain.push_back(std::make_unique<PlainLayer>());
        for (int i = 0; i < 100; ++i) {
            auto group = VLXLayer::create();
            root->addSublayer(group);
            auto plainGroup = std::make_unique<PlainLayer>();
            plain.front()->children.push_back(plainGroup.get());
            for (int j = 0; j < 99; ++j) {
                group->addSublayer(VLXLayer::create());
                auto leaf = std::make_unique<PlainLayer>();
                plainGroup->children.push_back(leaf.get());
                plain.push_back(std::move(leaf));
            }
            plain.push_back(std::move(plainGroup));
        }
        VLXTransaction::commit();
        root->layoutIfNeeded();
        root->displayTreeIfNeeded();
        auto ours = [&] {
            for (int k = 0; k < 100; ++k) {
                root->layoutIfNeeded();
                root->displayTreeIfNeeded();
            }
        };
        // The simple way: visit every node looking for marks.
        auto baseline = [&] {
            double marked = 0;
            std::vector<PlainLayer*> stack;
            for (int k = 0; k < 100; ++k) {
                stack.push_back(plain.front().get());
                while (!stack.empty()) {
                    PlainLayer* l = stack.back();
                    stack.pop_back();
                    marked += l->opacity < 0 ? 1 : 0;
                    stack.insert(stack.end(), l->children.begin(), l->children.end());
                }
            }
            g_sink = marked;
        };
        table::printCase("clean_layout_display_10000_layers_x100",
                         table::bestMilliseconds(ours, 10), table::bestMilliseconds(baseline, 10));
    }

    // 5. Building and tearing down a 10 000-level chain.
    {
        auto ours = [] {
            VLXTransaction::begin();
            VLXTransaction::setDisableActions(true);
            auto root = VLXLayer::create();
            VLXLayer* parent = root.get();
            for (int i = 0; i < 10000; ++i) {
                auto child = VLXLayer::create();
                parent->addSublayer(child);
                parent = child.get();
            }
            VLXTransaction::commit();
        };
        auto baseline = [] {
            std::vector<std::unique_ptr<PlainLayer>> chain;
            PlainLayer* parent = nullptr;
            for (int i = 0; i < 10001; ++i) {
                chain.push_back(std::make_unique<PlainLayer>());
                if (parent) {
                    parent->children.push_back(chain.back().get());
                }
                parent = chain.back().get();
            }
        };
        table::printCase("build_teardown_10000_levels", table::bestMilliseconds(ours, 10),
                         table::bestMilliseconds(baseline, 10));
    }
    VLXRunLoop::main().runOnce();
    return 0;
}
