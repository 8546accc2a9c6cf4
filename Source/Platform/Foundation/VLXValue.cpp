#include "Platform/Foundation/VLXValue.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <climits>
#include <cmath>
#include <limits>
#include <ostream>
#include <utility>

#include <nlohmann/json.hpp>

#include "Platform/Foundation/VLXKeyValueObject.h"
#include "Platform/Foundation/VLXObject.h"
#include "Platform/Foundation/VLXStringFormat.h"

struct VLXValue::Box {
    // Alternatives in the order of kBoxInfo below.
    std::variant<VLXPoint, VLXSize, VLXRect, VLXAffineTransform, VLXTransform3D, VLXRange> data;
};

namespace {

struct BoxInfo {
    const char* encoding;
    const char* descriptionPrefix;
};

constexpr BoxInfo kBoxInfo[] = {
    {"{CGPoint=dd}", "NSPoint"},
    {"{CGSize=dd}", "NSSize"},
    {"{CGRect={CGPoint=dd}{CGSize=dd}}", "NSRect"},
    {"{CGAffineTransform=dddddd}", "CGAffineTransform"},
    {"{CATransform3D=dddddddddddddddd}", "CATransform3D"},
    {"{_NSRange=QQ}", "NSRange"},
};

enum class NumberClass { Signed, Unsigned, Floating };

NumberClass numberClass(char encoding) {
    switch (encoding) {
        case 'c':
        case 'i':
        case 's':
        case 'l':
        case 'q':
            return NumberClass::Signed;
        case 'C':
        case 'I':
        case 'S':
        case 'L':
        case 'Q':
            return NumberClass::Unsigned;
        default:
            return NumberClass::Floating;
    }
}

const char* encodingText(char encoding) {
    switch (encoding) {
        case 'c':
            return "c";
        case 'i':
            return "i";
        case 's':
            return "s";
        case 'l':
            return "l";
        case 'q':
            return "q";
        case 'C':
            return "C";
        case 'I':
            return "I";
        case 'S':
            return "S";
        case 'L':
            return "L";
        case 'Q':
            return "Q";
        case 'f':
            return "f";
        default:
            return "d";
    }
}

// Truncation toward zero, saturated to [lo, hi]; NaN gives 0. Comparing in double is exact for
// every bound used here (they are powers of two or small), so the final cast is always in range.
VLXInteger saturatedInteger(double value, VLXInteger lo, VLXInteger hi) {
    if (std::isnan(value)) {
        return 0;
    }
    const double t = std::trunc(value);
    if (t <= static_cast<double>(lo)) {
        return lo;
    }
    if (t >= static_cast<double>(hi)) {
        return hi;
    }
    return static_cast<VLXInteger>(t);
}

VLXUInteger saturatedUnsigned(double value, VLXUInteger hi) {
    if (std::isnan(value)) {
        return 0;
    }
    const double t = std::trunc(value);
    if (t <= 0) {
        return 0;
    }
    if (t >= static_cast<double>(hi)) {
        return hi;
    }
    return static_cast<VLXUInteger>(t);
}

// double -> float with IEEE overflow made explicit: beyond the largest float (after rounding)
// the result is an infinity instead of an out-of-range conversion.
float toFloat(double value) {
    const double limit = static_cast<double>(FLT_MAX) + std::ldexp(1.0, 103);
    if (std::fabs(value) >= limit) {
        return value > 0 ? std::numeric_limits<float>::infinity()
                         : -std::numeric_limits<float>::infinity();
    }
    if (std::fabs(value) > static_cast<double>(FLT_MAX)) {
        return value > 0 ? FLT_MAX : -FLT_MAX;
    }
    return static_cast<float>(value);
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t skipBlanks(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && isBlank(text[i])) {
        ++i;
    }
    return i;
}

// For a decimal text that from_chars found out of range: true when it is too large (overflow),
// false when too small (underflow). Compares the decimal exponent of the first significant digit.
bool decimalTextOverflows(std::string_view text) {
    std::size_t i = 0;
    long long position = 0;  // decimal exponent of the first significant digit
    bool found = false;
    long long integerDigits = 0;
    while (i < text.size() && isDigit(text[i])) {
        if (found || text[i] != '0') {
            found = true;
            ++integerDigits;
        }
        ++i;
    }
    if (found) {
        position = integerDigits - 1;
    } else if (i < text.size() && text[i] == '.') {
        ++i;
        long long zeros = 0;
        while (i < text.size() && text[i] == '0') {
            ++zeros;
            ++i;
        }
        position = -zeros - 1;
    }
    while (i < text.size() && (isDigit(text[i]) || text[i] == '.')) {
        ++i;
    }
    long long exponent = 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        bool negative = false;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
            negative = text[i] == '-';
            ++i;
        }
        for (; i < text.size() && isDigit(text[i]); ++i) {
            if (exponent < 1'000'000'000) {
                exponent = exponent * 10 + (text[i] - '0');
            }
        }
        if (negative) {
            exponent = -exponent;
        }
    }
    return position + exponent > 0;
}

// The platform's reading of numbers in text: blanks, sign, digits with an optional point, an
// optional exponent; the rest is ignored and no digit at all reads as 0.
template <class F>
F parseDecimal(std::string_view text) {
    std::size_t i = skipBlanks(text);
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    const std::size_t start = i;
    std::size_t digits = 0;
    while (i < text.size() && isDigit(text[i])) {
        ++i;
        ++digits;
    }
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && isDigit(text[i])) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0) {
        return 0;
    }
    std::size_t end = i;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) {
            ++j;
        }
        if (j < text.size() && isDigit(text[j])) {
            while (j < text.size() && isDigit(text[j])) {
                ++j;
            }
            end = j;
        }
    }
    const std::string_view number = text.substr(start, end - start);
    F value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value,
                                        std::chars_format::general);
    if (result.ec == std::errc::result_out_of_range) {
        value = decimalTextOverflows(number) ? std::numeric_limits<F>::infinity() : F(0);
    } else if (result.ec != std::errc()) {
        value = 0;
    }
    return negative ? -value : value;
}

// Sign and decimal digits only, saturated to the 64-bit range.
VLXInteger parseInteger(std::string_view text) {
    std::size_t i = skipBlanks(text);
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    const VLXUInteger limit = negative ? VLXUInteger(INT64_MAX) + 1 : VLXUInteger(INT64_MAX);
    VLXUInteger magnitude = 0;
    for (; i < text.size() && isDigit(text[i]); ++i) {
        const auto digit = static_cast<VLXUInteger>(text[i] - '0');
        if (magnitude > (limit - digit) / 10) {
            magnitude = limit;
        } else {
            magnitude = magnitude * 10 + digit;
        }
    }
    if (negative) {
        return magnitude == VLXUInteger(INT64_MAX) + 1 ? INT64_MIN
                                                       : -static_cast<VLXInteger>(magnitude);
    }
    return static_cast<VLXInteger>(magnitude);
}

// Shortest round-trip digits, laid out as "%g" would with 17 significant digits: plain notation
// for decimal exponents -4 … 16, exponent notation (at least two exponent digits) otherwise.
std::string formatShortest(double value, bool asFloat) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-inf" : "inf";
    }
    char buffer[64];
    const auto result = asFloat ? std::to_chars(buffer, buffer + sizeof buffer, toFloat(value),
                                                std::chars_format::scientific)
                                : std::to_chars(buffer, buffer + sizeof buffer, value,
                                                std::chars_format::scientific);
    const std::string_view text(buffer, static_cast<std::size_t>(result.ptr - buffer));
    std::size_t i = 0;
    std::string out;
    if (i < text.size() && text[i] == '-') {
        out.push_back('-');
        ++i;
    }
    std::string digits;
    for (; i < text.size() && text[i] != 'e'; ++i) {
        if (text[i] != '.') {
            digits.push_back(text[i]);
        }
    }
    int exponent = 0;
    if (i < text.size()) {
        std::from_chars(text.data() + i + (text[i + 1] == '+' ? 2 : 1), text.data() + text.size(),
                        exponent);
    }
    if (exponent < -4 || exponent >= 17) {
        out.push_back(digits[0]);
        if (digits.size() > 1) {
            out.push_back('.');
            out.append(digits, 1);
        }
        out.append(VLXStringWithFormat("e%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent)));
        return out;
    }
    if (exponent < 0) {
        out.append("0.");
        out.append(static_cast<std::size_t>(-exponent - 1), '0');
        out.append(digits);
        return out;
    }
    const auto integerDigits = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= integerDigits) {
        out.append(digits);
        out.append(integerDigits - digits.size(), '0');
    } else {
        out.append(digits, 0, integerDigits);
        out.push_back('.');
        out.append(digits, integerDigits);
    }
    return out;
}

const VLXKeyValueObject* keyValueObject(const std::shared_ptr<VLXObject>& object) {
    return object ? object->keyValueObject() : nullptr;
}

// --- description ------------------------------------------------------------------------------

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

// --- JSON -------------------------------------------------------------------------------------

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

Json toJson(const VLXValue& value, int depth) {
    if (depth > VLXValue::kMaxJSONDepth) {
        return nullptr;
    }
    switch (value.kind()) {
        case VLXValue::Kind::Nil:
        case VLXValue::Kind::Null:
            return nullptr;
        case VLXValue::Kind::Number: {
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
        case VLXValue::Kind::String:
            return value.stringValue();
        case VLXValue::Kind::Date:
            return value.doubleValue();
        case VLXValue::Kind::Array: {
            Json array = Json::array();
            for (const auto& element : value.arrayValue()) {
                array.push_back(toJson(element, depth + 1));
            }
            return array;
        }
        case VLXValue::Kind::Dictionary: {
            Json object = Json::object();
            for (const auto& [key, element] : value.dictionaryValue()) {
                object[key] = toJson(element, depth + 1);
            }
            return object;
        }
        case VLXValue::Kind::Boxed: {
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
            return toJson(encoded, depth + 1);
        }
    }
    return nullptr;
}

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

const VLXValue::Array& emptyArray() {
    static const VLXValue::Array empty;
    return empty;
}

const VLXValue::Dictionary& emptyDictionary() {
    static const VLXValue::Dictionary empty;
    return empty;
}

}  // namespace

// --- creation ---------------------------------------------------------------------------------

VLXValue::VLXValue() = default;
VLXValue::VLXValue(std::nullptr_t) {}
VLXValue::VLXValue(bool value) : VLXValue(std::in_place, Number{{value ? 1 : 0}, 'c'}) {}
VLXValue::VLXValue(int value) : VLXValue(std::in_place, Number{{value}, 'i'}) {}
VLXValue::VLXValue(long value) : VLXValue(std::in_place, Number{{value}, 'q'}) {}
VLXValue::VLXValue(long long value) : VLXValue(std::in_place, Number{{value}, 'q'}) {}
VLXValue::VLXValue(unsigned int value) {
    Number number{};
    number.u = value;
    number.encoding = 'I';
    m_storage = number;
}
VLXValue::VLXValue(unsigned long value) : VLXValue(numberWithUnsignedInteger(value)) {}
VLXValue::VLXValue(unsigned long long value) : VLXValue(numberWithUnsignedInteger(value)) {}
VLXValue::VLXValue(float value) {
    Number number{};
    number.d = static_cast<double>(value);
    number.encoding = 'f';
    m_storage = number;
}
VLXValue::VLXValue(double value) {
    Number number{};
    number.d = value;
    number.encoding = 'd';
    m_storage = number;
}
VLXValue::VLXValue(const char* string) {
    if (string != nullptr) {
        m_storage = std::make_shared<const std::string>(string);
    }
}
VLXValue::VLXValue(std::string string)
    : VLXValue(std::in_place, std::make_shared<const std::string>(std::move(string))) {}
VLXValue::VLXValue(std::string_view string)
    : VLXValue(std::in_place, std::make_shared<const std::string>(string)) {}
VLXValue::VLXValue(VLXDate date) : VLXValue(std::in_place, date) {}
VLXValue::VLXValue(Array array)
    : VLXValue(std::in_place, std::make_shared<const Array>(std::move(array))) {}
VLXValue::VLXValue(Dictionary dictionary)
    : VLXValue(std::in_place, std::make_shared<const Dictionary>(std::move(dictionary))) {}
VLXValue::VLXValue(VLXColor color)
    : VLXValue(std::in_place, std::make_shared<const VLXColor>(color)) {}
VLXValue::VLXValue(std::shared_ptr<VLXObject> object) {
    if (object) {
        m_storage = std::move(object);
    }
}
VLXValue::VLXValue(std::optional<std::string> string) {
    if (string) {
        m_storage = std::make_shared<const std::string>(std::move(*string));
    }
}
VLXValue::VLXValue(std::optional<VLXColor> color) {
    if (color) {
        m_storage = std::make_shared<const VLXColor>(*color);
    }
}
VLXValue::VLXValue(std::optional<VLXDate> date) {
    if (date) {
        m_storage = *date;
    }
}

VLXValue VLXValue::null() {
    return VLXValue(std::in_place, NullTag{});
}

VLXValue VLXValue::number(double value, char encoding) {
    Number number{};
    number.encoding = encodingText(encoding)[0];
    switch (number.encoding) {
        case 'c':
            number.s = saturatedInteger(value, SCHAR_MIN, SCHAR_MAX);
            break;
        case 's':
            number.s = saturatedInteger(value, SHRT_MIN, SHRT_MAX);
            break;
        case 'i':
        case 'l':
            number.s = saturatedInteger(value, INT32_MIN, INT32_MAX);
            break;
        case 'q':
            number.s = saturatedInteger(value, INT64_MIN, INT64_MAX);
            break;
        case 'C':
            number.u = saturatedUnsigned(value, UCHAR_MAX);
            break;
        case 'S':
            number.u = saturatedUnsigned(value, USHRT_MAX);
            break;
        case 'I':
        case 'L':
            number.u = saturatedUnsigned(value, UINT32_MAX);
            break;
        case 'Q':
            number.u = saturatedUnsigned(value, UINT64_MAX);
            break;
        case 'f':
            number.d = static_cast<double>(toFloat(value));
            break;
        default:
            number.d = value;
            break;
    }
    return VLXValue(std::in_place, number);
}

VLXValue VLXValue::numberWithInteger(VLXInteger value) {
    return VLXValue(std::in_place, Number{{value}, 'q'});
}

VLXValue VLXValue::numberWithUnsignedInteger(VLXUInteger value) {
    Number number{};
    number.u = value;
    number.encoding = 'Q';
    return VLXValue(std::in_place, number);
}

VLXValue VLXValue::boxed(Box box) {
    return VLXValue(std::in_place, std::make_shared<const Box>(std::move(box)));
}

VLXValue VLXValue::valueWithPoint(VLXPoint point) {
    return boxed(Box{point});
}
VLXValue VLXValue::valueWithSize(VLXSize size) {
    return boxed(Box{size});
}
VLXValue VLXValue::valueWithRect(VLXRect rect) {
    return boxed(Box{rect});
}
VLXValue VLXValue::valueWithAffineTransform(VLXAffineTransform t) {
    return boxed(Box{t});
}
VLXValue VLXValue::valueWithTransform3D(VLXTransform3D t) {
    return boxed(Box{t});
}
VLXValue VLXValue::valueWithRange(VLXRange range) {
    return boxed(Box{range});
}

// --- JSON -------------------------------------------------------------------------------------

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
        return toJson(*this, 0).dump(-1, ' ', false, Json::error_handler_t::replace);
    } catch (...) {
        return "null";
    }
}

// --- inspection -------------------------------------------------------------------------------

const std::string* VLXValue::stringStorage() const {
    const auto* string = std::get_if<std::shared_ptr<const std::string>>(&m_storage);
    return string != nullptr ? string->get() : nullptr;
}

const VLXValue::Box* VLXValue::boxStorage() const {
    const auto* box = std::get_if<std::shared_ptr<const Box>>(&m_storage);
    return box != nullptr ? box->get() : nullptr;
}

const char* VLXValue::objCType() const {
    if (const Number* number = numberStorage()) {
        return encodingText(number->encoding);
    }
    if (const Box* box = boxStorage()) {
        return kBoxInfo[box->data.index()].encoding;
    }
    return isNil() ? "" : "@";
}

std::string VLXValue::className() const {
    switch (kind()) {
        case Kind::Nil:
            return "nil";
        case Kind::Null:
            return "NSNull";
        case Kind::Number:
            return "NSNumber";
        case Kind::String:
            return "NSString";
        case Kind::Date:
            return "NSDate";
        case Kind::Array:
            return "NSArray";
        case Kind::Dictionary:
            return "NSDictionary";
        case Kind::Boxed:
            return "NSValue";
        case Kind::Color:
            return "UIColor";
        case Kind::Object:
            return std::get<std::shared_ptr<VLXObject>>(m_storage)->className();
    }
    return "nil";
}

// --- reading ----------------------------------------------------------------------------------

double VLXValue::doubleValue() const {
    if (const Number* number = numberStorage()) {
        switch (numberClass(number->encoding)) {
            case NumberClass::Signed:
                return static_cast<double>(number->s);
            case NumberClass::Unsigned:
                return static_cast<double>(number->u);
            case NumberClass::Floating:
                return number->d;
        }
    }
    if (const std::string* string = stringStorage()) {
        return parseDecimal<double>(*string);
    }
    if (const auto* date = std::get_if<VLXDate>(&m_storage)) {
        return date->timeIntervalSince1970();
    }
    return 0;
}

float VLXValue::floatValue() const {
    if (const std::string* string = stringStorage()) {
        // Read straight at float precision: no double rounding on the way.
        return parseDecimal<float>(*string);
    }
    return toFloat(doubleValue());
}

int VLXValue::intValue() const {
    if (const Number* number = numberStorage()) {
        switch (numberClass(number->encoding)) {
            case NumberClass::Signed:
                return static_cast<int>(number->s);
            case NumberClass::Unsigned:
                return static_cast<int>(number->u);
            case NumberClass::Floating:
                return static_cast<int>(saturatedInteger(number->d, INT_MIN, INT_MAX));
        }
    }
    if (const std::string* string = stringStorage()) {
        const VLXInteger value = parseInteger(*string);
        return static_cast<int>(std::clamp<VLXInteger>(value, INT_MIN, INT_MAX));
    }
    return static_cast<int>(saturatedInteger(doubleValue(), INT_MIN, INT_MAX));
}

VLXInteger VLXValue::integerValue() const {
    if (const Number* number = numberStorage()) {
        switch (numberClass(number->encoding)) {
            case NumberClass::Signed:
                return number->s;
            case NumberClass::Unsigned:
                return static_cast<VLXInteger>(number->u);
            case NumberClass::Floating:
                return saturatedInteger(number->d, INT64_MIN, INT64_MAX);
        }
    }
    if (const std::string* string = stringStorage()) {
        return parseInteger(*string);
    }
    return saturatedInteger(doubleValue(), INT64_MIN, INT64_MAX);
}

VLXUInteger VLXValue::unsignedIntegerValue() const {
    if (const Number* number = numberStorage()) {
        switch (numberClass(number->encoding)) {
            case NumberClass::Signed:
                return static_cast<VLXUInteger>(number->s);
            case NumberClass::Unsigned:
                return number->u;
            case NumberClass::Floating:
                if (number->d < 0) {
                    return static_cast<VLXUInteger>(
                        saturatedInteger(number->d, INT64_MIN, INT64_MAX));
                }
                return saturatedUnsigned(number->d, UINT64_MAX);
        }
    }
    return static_cast<VLXUInteger>(integerValue());
}

bool VLXValue::boolValue() const {
    if (const Number* number = numberStorage()) {
        switch (numberClass(number->encoding)) {
            case NumberClass::Signed:
                return number->s != 0;
            case NumberClass::Unsigned:
                return number->u != 0;
            case NumberClass::Floating:
                return number->d != 0;
        }
    }
    if (const std::string* string = stringStorage()) {
        const std::string_view text = *string;
        std::size_t i = skipBlanks(text);
        if (i < text.size() &&
            (text[i] == 'Y' || text[i] == 'y' || text[i] == 'T' || text[i] == 't')) {
            return true;
        }
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
            ++i;
        }
        while (i < text.size() && text[i] == '0') {
            ++i;
        }
        return i < text.size() && text[i] >= '1' && text[i] <= '9';
    }
    return false;
}

std::string VLXValue::stringValue() const {
    if (const std::string* string = stringStorage()) {
        return *string;
    }
    if (const Number* number = numberStorage()) {
        switch (numberClass(number->encoding)) {
            case NumberClass::Signed:
                return std::to_string(number->s);
            case NumberClass::Unsigned:
                return std::to_string(number->u);
            case NumberClass::Floating:
                return formatShortest(number->d, number->encoding == 'f');
        }
    }
    return {};
}

std::optional<VLXDate> VLXValue::dateValue() const {
    if (const auto* date = std::get_if<VLXDate>(&m_storage)) {
        return *date;
    }
    return std::nullopt;
}

std::optional<VLXColor> VLXValue::colorValue() const {
    if (const auto* color = std::get_if<std::shared_ptr<const VLXColor>>(&m_storage)) {
        return **color;
    }
    return std::nullopt;
}

const VLXValue::Array& VLXValue::arrayValue() const {
    if (const auto* array = std::get_if<std::shared_ptr<const Array>>(&m_storage)) {
        return **array;
    }
    return emptyArray();
}

const VLXValue::Dictionary& VLXValue::dictionaryValue() const {
    if (const auto* dictionary = std::get_if<std::shared_ptr<const Dictionary>>(&m_storage)) {
        return **dictionary;
    }
    return emptyDictionary();
}

std::shared_ptr<VLXObject> VLXValue::objectValue() const {
    if (const auto* object = std::get_if<std::shared_ptr<VLXObject>>(&m_storage)) {
        return *object;
    }
    return nullptr;
}

template <class T>
T VLXValue::boxedAs() const {
    if (const Box* box = boxStorage()) {
        if (const T* value = std::get_if<T>(&box->data)) {
            return *value;
        }
    }
    return T{};
}

VLXPoint VLXValue::pointValue() const {
    return boxedAs<VLXPoint>();
}
VLXSize VLXValue::sizeValue() const {
    return boxedAs<VLXSize>();
}
VLXRect VLXValue::rectValue() const {
    return boxedAs<VLXRect>();
}
VLXAffineTransform VLXValue::affineTransformValue() const {
    return boxedAs<VLXAffineTransform>();
}
VLXTransform3D VLXValue::transform3DValue() const {
    return boxedAs<VLXTransform3D>();
}
VLXRange VLXValue::rangeValue() const {
    return boxedAs<VLXRange>();
}

std::size_t VLXValue::count() const {
    return arrayValue().size();
}

VLXValue VLXValue::objectAtIndex(std::size_t index) const {
    const Array& array = arrayValue();
    return index < array.size() ? array[index] : VLXValue();
}

// --- key-value lookup -------------------------------------------------------------------------

bool VLXValue::respondsTo(std::string_view name) const {
    if (const auto* dictionary = std::get_if<std::shared_ptr<const Dictionary>>(&m_storage)) {
        return (*dictionary)->find(name) != (*dictionary)->end();
    }
    if (const auto* object = std::get_if<std::shared_ptr<VLXObject>>(&m_storage)) {
        const VLXKeyValueObject* keyValue = keyValueObject(*object);
        return keyValue != nullptr && keyValue->respondsToKey(name);
    }
    return false;
}

VLXValue VLXValue::valueForKey(std::string_view key) const {
    switch (kind()) {
        case Kind::Dictionary: {
            const Dictionary& dictionary = dictionaryValue();
            const auto it = dictionary.find(key);
            return it != dictionary.end() ? it->second : VLXValue();
        }
        case Kind::Object: {
            const VLXKeyValueObject* keyValue =
                keyValueObject(std::get<std::shared_ptr<VLXObject>>(m_storage));
            return keyValue != nullptr ? keyValue->valueForKey(key) : VLXValue();
        }
        case Kind::Array: {
            Array result;
            result.reserve(count());
            for (const auto& element : arrayValue()) {
                VLXValue value = element.valueForKey(key);
                result.push_back(value.isNil() ? null() : std::move(value));
            }
            return VLXValue(std::move(result));
        }
        default:
            return VLXValue();
    }
}

VLXValue VLXValue::valueForKeyPath(std::string_view keyPath) const {
    // A loop rather than recursion: the path's length is the caller's, not bounded by the data.
    const VLXValue* current = this;
    VLXValue step;
    while (true) {
        if (current->isArray()) {
            Array result;
            result.reserve(current->count());
            for (const auto& element : current->arrayValue()) {
                VLXValue value = element.valueForKeyPath(keyPath);
                result.push_back(value.isNil() ? null() : std::move(value));
            }
            return VLXValue(std::move(result));
        }
        const std::size_t dot = keyPath.find('.');
        if (dot == std::string_view::npos) {
            return current->valueForKey(keyPath);
        }
        step = current->valueForKey(keyPath.substr(0, dot));
        if (step.isNil()) {
            return step;
        }
        current = &step;
        keyPath.remove_prefix(dot + 1);
    }
}

// --- description and equality -----------------------------------------------------------------

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

namespace {
// Numbers compare by value across encodings; an integer and a double are equal only when the
// double holds exactly that integer.
bool doubleEqualsInteger(double d, const VLXValue& integer, bool isUnsigned) {
    if (std::isnan(d) || std::trunc(d) != d) {
        return false;
    }
    if (isUnsigned) {
        return d >= 0 && d < 18446744073709551616.0 &&
               static_cast<VLXUInteger>(d) == integer.unsignedIntegerValue();
    }
    return d >= -9223372036854775808.0 && d < 9223372036854775808.0 &&
           static_cast<VLXInteger>(d) == integer.integerValue();
}
}  // namespace

bool operator==(const VLXValue& a, const VLXValue& b) {
    if (a.m_storage.index() != b.m_storage.index()) {
        return false;
    }
    switch (a.kind()) {
        case VLXValue::Kind::Nil:
        case VLXValue::Kind::Null:
            return true;
        case VLXValue::Kind::Number: {
            const auto& x = *a.numberStorage();
            const auto& y = *b.numberStorage();
            const NumberClass cx = numberClass(x.encoding);
            const NumberClass cy = numberClass(y.encoding);
            if (cx == NumberClass::Floating && cy == NumberClass::Floating) {
                return x.d == y.d || (std::isnan(x.d) && std::isnan(y.d));
            }
            if (cx == NumberClass::Floating) {
                return doubleEqualsInteger(x.d, b, cy == NumberClass::Unsigned);
            }
            if (cy == NumberClass::Floating) {
                return doubleEqualsInteger(y.d, a, cx == NumberClass::Unsigned);
            }
            if (cx == cy) {
                return cx == NumberClass::Signed ? x.s == y.s : x.u == y.u;
            }
            const VLXInteger s = cx == NumberClass::Signed ? x.s : y.s;
            const VLXUInteger u = cx == NumberClass::Signed ? y.u : x.u;
            return s >= 0 && static_cast<VLXUInteger>(s) == u;
        }
        case VLXValue::Kind::String:
            return *a.stringStorage() == *b.stringStorage();
        case VLXValue::Kind::Date:
            return std::get<VLXDate>(a.m_storage) == std::get<VLXDate>(b.m_storage);
        case VLXValue::Kind::Array:
            return a.arrayValue() == b.arrayValue();
        case VLXValue::Kind::Dictionary:
            return a.dictionaryValue() == b.dictionaryValue();
        case VLXValue::Kind::Boxed:
            return a.boxStorage()->data == b.boxStorage()->data;
        case VLXValue::Kind::Color:
            return *a.colorValue() == *b.colorValue();
        case VLXValue::Kind::Object: {
            const auto& x = std::get<std::shared_ptr<VLXObject>>(a.m_storage);
            const auto& y = std::get<std::shared_ptr<VLXObject>>(b.m_storage);
            return x == y || x->isEqual(*y);
        }
    }
    return false;
}

std::ostream& operator<<(std::ostream& os, const VLXValue& value) {
    return os << value.description();
}
