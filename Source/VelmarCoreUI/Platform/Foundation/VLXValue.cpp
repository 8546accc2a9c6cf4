#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <variant>

#include <VelmarCoreUI/Platform/Foundation/Private/VLXNumberText.h>
#include <VelmarCoreUI/Platform/Foundation/Private/VLXValueStorage.h>
#include <VelmarCoreUI/Platform/Foundation/VLXKeyValueObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>

using vlx::detail::formatShortest;
using vlx::detail::kBoxInfo;
using vlx::detail::NumberClass;
using vlx::detail::numberClass;
using vlx::detail::parseDecimal;
using vlx::detail::parseInteger;
using vlx::detail::saturatedInteger;
using vlx::detail::saturatedUnsigned;
using vlx::detail::skipBlanks;
using vlx::detail::toFloat;

namespace {

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

const VLXKeyValueObject* keyValueObject(const std::shared_ptr<VLXObject>& object) {
    return object ? object->keyValueObject() : nullptr;
}

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
    // Set in place: moving a freshly built storage here makes g++ 12 (with sanitizers) warn
    // about the union's other alternatives, though none of them is read.
    VLXValue value;
    value.m_storage.emplace<NullTag>();
    return value;
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

// --- equality ---------------------------------------------------------------------------------

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

// NaN equals NaN, so that every value equals itself; otherwise IEEE equality (-0 == 0).
bool sameDouble(double x, double y) {
    return x == y || (std::isnan(x) && std::isnan(y));
}

std::array<double, 2> fieldsOf(const VLXPoint& p) {
    return {p.x, p.y};
}
std::array<double, 2> fieldsOf(const VLXSize& s) {
    return {s.width, s.height};
}
std::array<double, 4> fieldsOf(const VLXRect& r) {
    return {r.origin.x, r.origin.y, r.size.width, r.size.height};
}
std::array<double, 6> fieldsOf(const VLXAffineTransform& t) {
    return {t.a, t.b, t.c, t.d, t.tx, t.ty};
}
std::array<double, 16> fieldsOf(const VLXTransform3D& t) {
    return {t.m11, t.m12, t.m13, t.m14, t.m21, t.m22, t.m23, t.m24,
            t.m31, t.m32, t.m33, t.m34, t.m41, t.m42, t.m43, t.m44};
}

template <class Box>
bool sameBox(const Box& a, const Box& b) {
    if (a.data.index() != b.data.index()) {
        return false;
    }
    return std::visit(
        [&](const auto& x) {
            using T = std::decay_t<decltype(x)>;
            const T& y = std::get<T>(b.data);
            if constexpr (std::is_same_v<T, VLXRange>) {
                return x == y;
            } else {
                const auto fx = fieldsOf(x);
                const auto fy = fieldsOf(y);
                return std::equal(fx.begin(), fx.end(), fy.begin(), sameDouble);
            }
        },
        a.data);
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
                return sameDouble(x.d, y.d);
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
            return sameDouble(std::get<VLXDate>(a.m_storage).timeIntervalSince1970(),
                              std::get<VLXDate>(b.m_storage).timeIntervalSince1970());
        case VLXValue::Kind::Array:
            return a.arrayValue() == b.arrayValue();
        case VLXValue::Kind::Dictionary:
            return a.dictionaryValue() == b.dictionaryValue();
        case VLXValue::Kind::Boxed:
            return sameBox(*a.boxStorage(), *b.boxStorage());
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
