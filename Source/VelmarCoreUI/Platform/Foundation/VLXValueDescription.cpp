#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

#include <ostream>
#include <type_traits>

#include <VelmarCoreUI/Platform/Foundation/Private/VLXNumberText.h>
#include <VelmarCoreUI/Platform/Foundation/Private/VLXValueStorage.h>
#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>

using vlx::detail::formatShortest;
using vlx::detail::isDigit;
using vlx::detail::kBoxInfo;

namespace {

bool needsQuotes(std::string_view text) {
    if (text.empty()) {
        return true;
    }
    for (char c : text) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || isDigit(c);
        if (!plain) {
            return true;
        }
    }
    return false;
}

void appendQuotedIfNeeded(std::string& out, std::string_view text) {
    if (!needsQuotes(text)) {
        out.append(text);
        return;
    }
    out.push_back('"');
    for (char c : text) {
        switch (c) {
            case '"':
                out.append("\\\"");
                break;
            case '\\':
                out.append("\\\\");
                break;
            case '\n':
                out.append("\\n");
                break;
            case '\r':
                out.append("\\r");
                break;
            case '\t':
                out.append("\\t");
                break;
            default:
                out.push_back(c);
        }
    }
    out.push_back('"');
}

// Deep descriptions are cut off so that objects that (directly or not) contain themselves do
// not recurse without end.
constexpr int kMaxDescriptionDepth = 64;
thread_local int t_descriptionDepth = 0;

struct DescriptionDepthGuard {
    DescriptionDepthGuard() { ++t_descriptionDepth; }
    ~DescriptionDepthGuard() { --t_descriptionDepth; }
    DescriptionDepthGuard(const DescriptionDepthGuard&) = delete;
    DescriptionDepthGuard& operator=(const DescriptionDepthGuard&) = delete;
};

void appendIndent(std::string& out, int level) {
    out.append(static_cast<std::size_t>(level) * 4, ' ');
}

void appendCollectionDescription(std::string& out, const VLXValue& value, int level);

// An element of a collection: nested collections carry their own leading indent, strings and
// dates are quoted where needed, everything else is its plain description.
void appendElementDescription(std::string& out, const VLXValue& value, int level) {
    if (value.isArray() || value.isDictionary()) {
        appendCollectionDescription(out, value, level);
    } else if (value.isString()) {
        appendQuotedIfNeeded(out, value.stringValue());
    } else if (value.isDate()) {
        appendQuotedIfNeeded(out, value.description());
    } else {
        out.append(value.description());
    }
}

void appendCollectionDescription(std::string& out, const VLXValue& value, int level) {
    appendIndent(out, level);
    if (level >= VLXValue::kMaxJSONDepth) {
        out.append(value.isArray() ? "(...)" : "{...}");
        return;
    }
    if (value.isArray()) {
        out.append("(\n");
        const auto& array = value.arrayValue();
        for (std::size_t i = 0; i < array.size(); ++i) {
            appendIndent(out, level + 1);
            appendElementDescription(out, array[i], level + 1);
            out.append(i + 1 < array.size() ? ",\n" : "\n");
        }
        appendIndent(out, level);
        out.push_back(')');
        return;
    }
    out.append("{\n");
    for (const auto& [key, element] : value.dictionaryValue()) {
        appendIndent(out, level + 1);
        appendQuotedIfNeeded(out, key);
        out.append(" = ");
        appendElementDescription(out, element, level + 1);
        out.append(";\n");
    }
    appendIndent(out, level);
    out.push_back('}');
}

}  // namespace

std::string VLXValue::description() const {
    if (t_descriptionDepth >= kMaxDescriptionDepth) {
        return "...";
    }
    DescriptionDepthGuard guard;
    switch (kind()) {
        case Kind::Nil:
            return "(null)";
        case Kind::Null:
            return "<null>";
        case Kind::Number:
        case Kind::String:
            return stringValue();
        case Kind::Date:
            return std::get<VLXDate>(m_storage).description();
        case Kind::Array:
        case Kind::Dictionary: {
            std::string out;
            appendCollectionDescription(out, *this, 0);
            return out;
        }
        case Kind::Boxed: {
            const Box& box = *boxStorage();
            const auto n = [](double v) { return formatShortest(v, false); };
            std::string body = std::visit(
                [&](const auto& v) -> std::string {
                    using T = std::decay_t<decltype(v)>;
                    if constexpr (std::is_same_v<T, VLXPoint>) {
                        return "{" + n(v.x) + ", " + n(v.y) + "}";
                    } else if constexpr (std::is_same_v<T, VLXSize>) {
                        return "{" + n(v.width) + ", " + n(v.height) + "}";
                    } else if constexpr (std::is_same_v<T, VLXRect>) {
                        return "{{" + n(v.origin.x) + ", " + n(v.origin.y) + "}, {" +
                               n(v.size.width) + ", " + n(v.size.height) + "}}";
                    } else if constexpr (std::is_same_v<T, VLXAffineTransform>) {
                        return "{{" + n(v.a) + ", " + n(v.b) + "}, {" + n(v.c) + ", " + n(v.d) +
                               "}, {" + n(v.tx) + ", " + n(v.ty) + "}}";
                    } else if constexpr (std::is_same_v<T, VLXTransform3D>) {
                        const double m[16] = {v.m11, v.m12, v.m13, v.m14, v.m21, v.m22,
                                              v.m23, v.m24, v.m31, v.m32, v.m33, v.m34,
                                              v.m41, v.m42, v.m43, v.m44};
                        std::string text = "{";
                        for (int row = 0; row < 4; ++row) {
                            text += row == 0 ? "{" : ", {";
                            for (int column = 0; column < 4; ++column) {
                                text += (column == 0 ? "" : ", ") + n(m[row * 4 + column]);
                            }
                            text += "}";
                        }
                        return text + "}";
                    } else {
                        return "{" + std::to_string(v.location) + ", " + std::to_string(v.length) +
                               "}";
                    }
                },
                box.data);
            return std::string(kBoxInfo[box.data.index()].descriptionPrefix) + ": " + body;
        }
        case Kind::Color:
            return colorValue()->description();
        case Kind::Object:
            return std::get<std::shared_ptr<VLXObject>>(m_storage)->description();
    }
    return {};
}

std::ostream& operator<<(std::ostream& os, const VLXValue& value) {
    return os << value.description();
}
