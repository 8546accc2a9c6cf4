// layerTreeAsText: the readable dump of a layer subtree for tests and bug reports.

#include <VelmarCoreUI/Platform/Layers/VLXLayer.h>

#include <algorithm>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>

namespace {

constexpr int kMaximumIndent = 64;

std::string rectText(const VLXRect& r) {
    return VLXStringWithFormat("{{%g, %g}, {%g, %g}}", r.origin.x, r.origin.y, r.size.width,
                               r.size.height);
}

std::string colorText(const std::optional<VLXColor>& color) {
    return color ? color->description() : std::string("nil");
}

std::string transformText(const VLXTransform3D& t) {
    if (VLXTransform3DIsAffine(t)) {
        return VLXStringWithFormat("[%g, %g, %g, %g, %g, %g]", t.m11, t.m12, t.m21, t.m22, t.m41,
                                   t.m42);
    }
    const double* m = &t.m11;
    std::string text = "[";
    for (int i = 0; i < 16; ++i) {
        text += VLXStringWithFormat(i == 0 ? "%g" : (i % 4 == 0 ? "; %g" : ", %g"), m[i]);
    }
    return text + "]";
}

}  // namespace

void VLXLayer::appendTreeTextAttributes(std::string&) const {}

std::string VLXLayer::layerTreeAsText() const {
    struct Item {
        const VLXLayer* layer;
        int depth;
        bool isMask;
    };
    std::string text;
    std::vector<Item> stack{{this, 0, false}};
    while (!stack.empty()) {
        const Item item = stack.back();
        stack.pop_back();
        const VLXLayer& l = *item.layer;
        // Indentation stops growing at kMaximumIndent levels (a 10 000-level dump would
        // otherwise be quadratic); deeper lines name their depth.
        std::string line(static_cast<std::size_t>(std::min(item.depth, kMaximumIndent)) * 2, ' ');
        if (item.depth > kMaximumIndent) {
            line += VLXStringWithFormat("[%d] ", item.depth);
        }
        if (item.isMask) {
            line += "mask: ";
        }
        line += l.className();
        if (l.m_name) {
            line += " \"" + *l.m_name + "\"";
        }
        line += " frame=" + rectText(l.frame());
        line += " bounds=" + rectText(l.m_bounds);
        line += VLXStringWithFormat(" position={%g, %g}", l.m_position.x, l.m_position.y);
        if (l.m_anchorPoint.x != 0.5 || l.m_anchorPoint.y != 0.5) {
            line +=
                VLXStringWithFormat(" anchorPoint={%g, %g}", l.m_anchorPoint.x, l.m_anchorPoint.y);
        }
        if (l.m_zPosition != 0) {
            line += VLXStringWithFormat(" zPosition=%g", l.m_zPosition);
        }
        if (l.m_opacity != 1) {
            line += VLXStringWithFormat(" opacity=%g", l.m_opacity);
        }
        if (l.m_hidden) {
            line += " hidden";
        }
        if (l.m_backgroundColor) {
            line += " backgroundColor=" + colorText(l.m_backgroundColor);
        }
        if (l.m_cornerRadius != 0) {
            line += VLXStringWithFormat(" cornerRadius=%g", l.m_cornerRadius);
        }
        if (l.m_borderWidth != 0) {
            line += VLXStringWithFormat(" borderWidth=%g borderColor=", l.m_borderWidth) +
                    colorText(l.m_borderColor);
        }
        if (l.m_masksToBounds) {
            line += " masksToBounds";
        }
        if (l.m_contents) {
            const VLXSize s = l.m_contents->size();
            line += VLXStringWithFormat(" contents={%g, %g}@%gx", s.width, s.height,
                                        l.m_contents->scale());
        }
        if (!VLXTransform3DIsIdentity(l.m_transform)) {
            line += " transform=" + transformText(l.m_transform);
        }
        for (const auto& [key, value] : l.m_store) {
            line += " " + key + "=" + value.description();
        }
        const auto keys = l.animationKeys();
        if (!keys.empty()) {
            line += " animations=[";
            for (std::size_t i = 0; i < keys.size(); ++i) {
                line += (i ? ", " : "") + keys[i];
            }
            line += "]";
        }
        l.appendTreeTextAttributes(line);
        if (!l.m_sublayers.empty()) {
            line += VLXStringWithFormat(" sublayers=%zu", l.m_sublayers.size());
        }
        text += line;
        text += '\n';
        for (auto it = l.m_sublayers.rbegin(); it != l.m_sublayers.rend(); ++it) {
            stack.push_back({it->get(), item.depth + 1, false});
        }
        if (l.m_mask) {
            stack.push_back({l.m_mask.get(), item.depth + 1, true});
        }
    }
    return text;
}
