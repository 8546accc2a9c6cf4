#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include <VelmarCoreUI/Platform/Foundation/Private/VLXNumberText.h>
#include <VelmarCoreUI/Platform/Foundation/Private/VLXValueStorage.h>
#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>

using vlx::detail::formatShortest;
using vlx::detail::kBoxInfo;
using vlx::detail::NumberClass;
using vlx::detail::numberClass;

namespace {

using Json = nlohmann::json;

const char* colorModelName(VLXColorSpaceModel model) {
    switch (model) {
        case VLXColorSpaceModel::Monochrome:
            return "monochrome";
        case VLXColorSpaceModel::RGB:
            return "rgb";
        default:
            return "other";
    }
}

Json jsonNumbers(std::initializer_list<double> numbers) {
    Json array = Json::array();
    for (double number : numbers) {
        array.push_back(number);
    }
    return array;
}

// How many levels of JSON containers a value adds where it stands: arrays, dictionaries and
// boxes one, colours two ({"components": [...]}), objects what their encoded value adds.
int ownLevels(const VLXValue& value) {
    switch (value.kind()) {
        case VLXValue::Kind::Array:
        case VLXValue::Kind::Dictionary:
        case VLXValue::Kind::Boxed:
            return 1;
        case VLXValue::Kind::Color:
            return 2;
        default:
            return 0;
    }
}

// Writes values as the reader reads them back: a container that would stand deeper than the
// reader accepts stops the whole write (`tooDeep`), so no text is written that reads back
// differently. `depth` counts the containers around `value`; `hops` the objects passed
// without a container in between (an object encoding to an object, endlessly).
struct JSONWriter {
    bool tooDeep = false;

    Json write(const VLXValue& value, int depth, int hops = 0) {
        if (tooDeep || depth + ownLevels(value) > VLXValue::kMaxJSONDepth ||
            hops > VLXValue::kMaxJSONDepth) {
            tooDeep = true;
            return nullptr;
        }
        switch (value.kind()) {
            case VLXValue::Kind::Nil:
            case VLXValue::Kind::Null:
                return nullptr;
            case VLXValue::Kind::Number:
                return number(value);
            case VLXValue::Kind::String:
                return value.stringValue();
            case VLXValue::Kind::Date:
                return value.doubleValue();
            case VLXValue::Kind::Array: {
                Json array = Json::array();
                for (const auto& element : value.arrayValue()) {
                    array.push_back(write(element, depth + 1));
                }
                return array;
            }
            case VLXValue::Kind::Dictionary: {
                Json object = Json::object();
                for (const auto& [key, element] : value.dictionaryValue()) {
                    object[key] = write(element, depth + 1);
                }
                return object;
            }
            case VLXValue::Kind::Boxed:
                return box(value);
            case VLXValue::Kind::Color: {
                const VLXColor color = *value.colorValue();
                Json components = Json::array();
                for (double component : color.components()) {
                    components.push_back(component);
                }
                Json object = Json::object();
                object["model"] = colorModelName(color.colorSpaceModel());
                object["components"] = std::move(components);
                return object;
            }
            case VLXValue::Kind::Object: {
                const auto object = value.objectValue();
                const VLXValue encoded = object->encodedValue();
                if (encoded.isNil()) {
                    return object->description();
                }
                return write(encoded, depth, hops + 1);
            }
        }
        return nullptr;
    }

    static Json number(const VLXValue& value) {
        const char encoding = value.objCType()[0];
        switch (numberClass(encoding)) {
            case NumberClass::Signed: {
                const VLXInteger integer = value.integerValue();
                if (encoding == 'c' && (integer == 0 || integer == 1)) {
                    return integer == 1;
                }
                return integer;
            }
            case NumberClass::Unsigned:
                return value.unsignedIntegerValue();
            case NumberClass::Floating:
                if (encoding == 'f') {
                    // The float's own shortest text, so 0.1f is written as 0.1.
                    const std::string text = formatShortest(value.doubleValue(), true);
                    double widened = 0;
                    std::from_chars(text.data(), text.data() + text.size(), widened);
                    return widened;
                }
                return value.doubleValue();
        }
        return nullptr;
    }

    static Json box(const VLXValue& value) {
        const std::string_view encoding = value.objCType();
        if (encoding == kBoxInfo[0].encoding) {
            const VLXPoint p = value.pointValue();
            return jsonNumbers({p.x, p.y});
        }
        if (encoding == kBoxInfo[1].encoding) {
            const VLXSize s = value.sizeValue();
            return jsonNumbers({s.width, s.height});
        }
        if (encoding == kBoxInfo[2].encoding) {
            const VLXRect r = value.rectValue();
            return jsonNumbers({r.origin.x, r.origin.y, r.size.width, r.size.height});
        }
        if (encoding == kBoxInfo[3].encoding) {
            const VLXAffineTransform t = value.affineTransformValue();
            return jsonNumbers({t.a, t.b, t.c, t.d, t.tx, t.ty});
        }
        if (encoding == kBoxInfo[4].encoding) {
            const VLXTransform3D t = value.transform3DValue();
            return jsonNumbers({t.m11, t.m12, t.m13, t.m14, t.m21, t.m22, t.m23, t.m24, t.m31,
                                t.m32, t.m33, t.m34, t.m41, t.m42, t.m43, t.m44});
        }
        const VLXRange range = value.rangeValue();
        Json array = Json::array();
        array.push_back(range.location);
        array.push_back(range.length);
        return array;
    }
};

// The depth `write` would reach, counted no further than `cap` (which also ends cycles of
// objects).
int depthOf(const VLXValue& value, int depth, int cap, int hops = 0) {
    const int own = depth + ownLevels(value);
    if (own > cap || hops > cap) {
        return cap + 1;
    }
    int deepest = own;
    switch (value.kind()) {
        case VLXValue::Kind::Array:
            for (const auto& element : value.arrayValue()) {
                deepest = std::max(deepest, depthOf(element, own, cap));
                if (deepest > cap) {
                    break;
                }
            }
            break;
        case VLXValue::Kind::Dictionary:
            for (const auto& entry : value.dictionaryValue()) {
                deepest = std::max(deepest, depthOf(entry.second, own, cap));
                if (deepest > cap) {
                    break;
                }
            }
            break;
        case VLXValue::Kind::Object: {
            const VLXValue encoded = value.objectValue()->encodedValue();
            deepest = std::max(deepest, depthOf(encoded, depth, cap, hops + 1));
            break;
        }
        default:
            break;
    }
    return deepest;
}

}  // namespace

namespace {

// Builds values straight from the parser's events: no intermediate document, and the nesting
// limit is enforced before anything deep is built.
class JSONBuilder {
public:
    bool null() { return add(VLXValue::null()); }
    bool boolean(bool value) { return add(VLXValue(value)); }
    bool number_integer(Json::number_integer_t value) {
        return add(VLXValue::numberWithInteger(value));
    }
    bool number_unsigned(Json::number_unsigned_t value) {
        if (value <= static_cast<Json::number_unsigned_t>(INT64_MAX)) {
            return add(VLXValue::numberWithInteger(static_cast<VLXInteger>(value)));
        }
        return add(VLXValue::numberWithUnsignedInteger(value));
    }
    bool number_float(Json::number_float_t value, const Json::string_t&) {
        return add(VLXValue(value));
    }
    bool string(Json::string_t& value) { return add(VLXValue(std::move(value))); }
    bool binary(Json::binary_t&) { return false; }
    bool start_object(std::size_t) { return push(true); }
    bool key(Json::string_t& key) {
        m_stack.back().key = std::move(key);
        return true;
    }
    bool end_object() {
        VLXValue::Dictionary dictionary = std::move(m_stack.back().dictionary);
        m_stack.pop_back();
        return add(VLXValue(std::move(dictionary)));
    }
    bool start_array(std::size_t) { return push(false); }
    bool end_array() {
        VLXValue::Array array = std::move(m_stack.back().array);
        m_stack.pop_back();
        return add(VLXValue(std::move(array)));
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) {
        return false;
    }

    VLXValue& result() { return m_result; }

private:
    struct Frame {
        bool isObject = false;
        VLXValue::Array array;
        VLXValue::Dictionary dictionary;
        std::string key;
    };

    bool push(bool isObject) {
        if (m_stack.size() >= static_cast<std::size_t>(VLXValue::kMaxJSONDepth)) {
            return false;
        }
        m_stack.emplace_back().isObject = isObject;
        return true;
    }

    bool add(VLXValue value) {
        if (m_stack.empty()) {
            m_result = std::move(value);
            return true;
        }
        Frame& frame = m_stack.back();
        if (frame.isObject) {
            frame.dictionary.insert_or_assign(std::move(frame.key), std::move(value));
        } else {
            frame.array.push_back(std::move(value));
        }
        return true;
    }

    std::vector<Frame> m_stack;
    VLXValue m_result;
};

}  // namespace

VLXValue VLXValue::fromJSON(std::string_view json) {
    JSONBuilder builder;
    try {
        if (!Json::sax_parse(json.data(), json.data() + json.size(), &builder)) {
            return VLXValue();
        }
    } catch (...) {
        return VLXValue();
    }
    return std::move(builder.result());
}

std::string VLXValue::toJSON() const {
    try {
        JSONWriter writer;
        Json json = writer.write(*this, 0);
        if (writer.tooDeep) {
            return {};
        }
        return json.dump(-1, ' ', false, Json::error_handler_t::replace);
    } catch (...) {
        return "null";
    }
}

int VLXValue::jsonDepth() const {
    return depthOf(*this, 0, kMaxJSONDepth);
}
