#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXDate.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRange.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>
#include <VelmarCoreUI/Platform/Primitives/VLXAffineTransform.h>
#include <VelmarCoreUI/Platform/Primitives/VLXColor.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Platform/Primitives/VLXTransform3D.h>

class VLXObject;

/// The one dynamic value of the platform layer: what the host hands over as "any object".
///
/// Kinds: nil (no value at all), null (the explicit null object), number (keeping its type
/// encoding), string, date, array, dictionary, boxed geometry (point, size, rect, affine
/// transform, 3-D transform, range), colour, or a reference object (`VLXObject`).
///
/// Values are immutable and cheap to copy: strings, arrays and dictionaries share their storage.
/// Reading a value of the wrong kind never fails: it gives the kind's neutral result (0, an
/// empty string or array, nil), as messaging the platform's objects does.
class VLX_EXPORT VLXValue {
public:
    enum class Kind { Nil, Null, Number, String, Date, Array, Dictionary, Boxed, Color, Object };

    using Array = std::vector<VLXValue>;
    /// Keys sorted, so archives and descriptions come out the same on every run.
    using Dictionary = std::map<std::string, VLXValue, std::less<>>;

    // --- creation --------------------------------------------------------------------------
    VLXValue();                          ///< nil
    VLXValue(std::nullptr_t);            ///< nil
    VLXValue(bool value);                ///< number "c", as a boxed BOOL
    VLXValue(int value);                 ///< number "i"
    VLXValue(long value);                ///< number "q" (LP64)
    VLXValue(long long value);           ///< number "q"
    VLXValue(unsigned int value);        ///< number "I"
    VLXValue(unsigned long value);       ///< number "Q"
    VLXValue(unsigned long long value);  ///< number "Q"
    VLXValue(float value);               ///< number "f"
    VLXValue(double value);              ///< number "d"
    VLXValue(const char* string);        ///< string (nil for a null pointer)
    VLXValue(std::string string);
    VLXValue(std::string_view string);
    VLXValue(VLXDate date);
    VLXValue(Array array);
    VLXValue(Dictionary dictionary);
    VLXValue(VLXColor color);
    VLXValue(std::shared_ptr<VLXObject> object);  ///< nil for a null pointer
    template <class T>
    requires std::is_base_of_v<VLXObject, T> VLXValue(std::shared_ptr<T> object)
        : VLXValue(std::shared_ptr<VLXObject>(std::move(object))) {}
    VLXValue(std::optional<std::string> string);  ///< nil when empty
    VLXValue(std::optional<VLXColor> color);      ///< nil when empty
    VLXValue(std::optional<VLXDate> date);        ///< nil when empty

    static VLXValue null();
    /// A number with an explicit type encoding: one of "c", "i", "s", "l", "q", "C", "I", "S",
    /// "L", "Q", "f", "d" ("l" and "L" are 32-bit, as in the platform's encodings); any other
    /// character means "d". Integer encodings keep the integer part of `value`, saturated to
    /// the encoding's range (NaN gives 0); "f" rounds to float (±inf beyond its range).
    static VLXValue number(double value, char encoding);
    static VLXValue numberWithInteger(VLXInteger value);           ///< "q"
    static VLXValue numberWithUnsignedInteger(VLXUInteger value);  ///< "Q"

    // Boxed geometry, with the platform's type encodings.
    static VLXValue valueWithPoint(VLXPoint point);  ///< "{CGPoint=dd}"
    static VLXValue valueWithSize(VLXSize size);     ///< "{CGSize=dd}"
    static VLXValue valueWithRect(VLXRect rect);     ///< "{CGRect={CGPoint=dd}{CGSize=dd}}"
    static VLXValue valueWithAffineTransform(
        VLXAffineTransform t);                               ///< "{CGAffineTransform=dddddd}"
    static VLXValue valueWithTransform3D(VLXTransform3D t);  ///< "{CATransform3D=dddddddddddddddd}"
    static VLXValue valueWithRange(VLXRange range);          ///< "{_NSRange=QQ}"

    /// JSON text to values: objects become dictionaries, arrays arrays, numbers "q" (integral
    /// text; "Q" above the signed range) or "d", true/false "c", null the null value (a
    /// repeated key keeps its last value). Malformed text, numbers beyond the double range
    /// ("1e400") and nesting deeper than `kMaxJSONDepth` give nil.
    static VLXValue fromJSON(std::string_view json);
    /// Values to JSON text, compact. Dates are written as seconds since 1970, colours as
    /// {"model": "monochrome" | "rgb" | "other", "components": [...]}, boxed geometry as arrays
    /// of numbers (rect: x, y, width, height; transforms: their fields in declaration order;
    /// range: location, length), objects as their `encodedValue()` or else their description,
    /// "c" numbers 0 and 1 as false and true, floats by their shortest float text. Nil, NaN and
    /// infinities are written as null, invalid UTF-8 as U+FFFD. A value that `fromJSON` could
    /// not read back because it nests deeper than `kMaxJSONDepth` (`jsonDepth()`) is refused
    /// whole: the result is "" (which reads back as nil), never text that reads back different.
    std::string toJSON() const;
    static constexpr int kMaxJSONDepth = 512;
    /// Levels of JSON containers in `toJSON`'s text: 0 for scalars, 1 for an array of scalars;
    /// boxes add one level, colours two ({"components": [...]}), objects what their
    /// `encodedValue()` adds. Counted up to `kMaxJSONDepth` + 1, which also stands for anything
    /// deeper (and for objects whose encoded values contain themselves).
    int jsonDepth() const;

    // --- inspection ------------------------------------------------------------------------
    Kind kind() const { return static_cast<Kind>(m_storage.index()); }
    bool isNil() const { return kind() == Kind::Nil; }
    bool isNull() const { return kind() == Kind::Null; }
    bool isNumber() const { return kind() == Kind::Number; }
    bool isString() const { return kind() == Kind::String; }
    bool isDate() const { return kind() == Kind::Date; }
    bool isArray() const { return kind() == Kind::Array; }
    bool isDictionary() const { return kind() == Kind::Dictionary; }
    bool isBoxed() const { return kind() == Kind::Boxed; }
    bool isColor() const { return kind() == Kind::Color; }
    bool isObject() const { return kind() == Kind::Object; }

    /// The type encoding of a number or boxed value ("d", "{CGPoint=dd}" …); "@" for every other
    /// non-nil value, "" for nil.
    const char* objCType() const;
    /// The class name the host would see: "NSNull", "NSNumber", "NSString", "NSDate",
    /// "NSArray", "NSDictionary", "NSValue", "UIColor", the object's own class name; "nil" for
    /// nil.
    std::string className() const;

    // --- reading ---------------------------------------------------------------------------
    /// Numbers give their value; dates their seconds since 1970; other kinds 0. Strings are read
    /// as the platform reads them: leading ASCII blanks and newlines skipped, an optional sign,
    /// digits with an optional decimal point, an optional exponent; trailing text ignored; 0
    /// when no digit is found. Hexadecimal, "inf" and "nan" text are not numbers here (0).
    /// Magnitudes beyond the type overflow to ±inf and tiny ones underflow to 0, as strtod does.
    double doubleValue() const;
    float floatValue() const;
    /// Integer readings. Integer numbers convert as C++ does (two's-complement wrap-around when
    /// narrowing); floating numbers are truncated and saturated, NaN gives 0. Strings read an
    /// optional sign and decimal digits only ("3.9" is 3) and saturate.
    int intValue() const;
    VLXInteger integerValue() const;
    VLXUInteger unsignedIntegerValue() const;
    /// Numbers: non-zero; strings: the first non-blank character is Y, y, T, t or a digit 1–9.
    bool boolValue() const;
    /// Strings themselves; numbers as the platform prints them ("3", "0.5", "1e+20": the shortest
    /// text that reads back the same value, in exponent form from 1e17 up and below 1e-4;
    /// "nan", "inf", "-inf"); "" for other kinds.
    std::string stringValue() const;
    std::optional<VLXDate> dateValue() const;
    std::optional<VLXColor> colorValue() const;
    /// The array's elements; empty for any other kind.
    const Array& arrayValue() const;
    /// The dictionary's entries; empty for any other kind.
    const Dictionary& dictionaryValue() const;
    std::shared_ptr<VLXObject> objectValue() const;
    /// The object cast to T, or null when it is not one.
    template <class T>
    std::shared_ptr<T> objectAs() const {
        return std::dynamic_pointer_cast<T>(objectValue());
    }

    // Boxed geometry; the zero value when the box holds another kind.
    VLXPoint pointValue() const;
    VLXSize sizeValue() const;
    VLXRect rectValue() const;
    VLXAffineTransform affineTransformValue() const;
    VLXTransform3D transform3DValue() const;
    VLXRange rangeValue() const;

    /// Elements of an array; 0 for other kinds.
    std::size_t count() const;
    /// Element of an array, or nil when out of range or not an array.
    VLXValue objectAtIndex(std::size_t index) const;

    // --- key-value lookup ------------------------------------------------------------------
    /// True when this value exposes a property of exactly this name (dots are part of the
    /// name): a dictionary's key, a record's field, a key-value object's property.
    bool respondsTo(std::string_view name) const;
    /// The property's value, or nil. Arrays answer with the array of their elements' values
    /// (nil results become null, as the platform does). Other kinds (numbers, strings, null,
    /// objects that are no `VLXKeyValueObject` …) answer nil.
    VLXValue valueForKey(std::string_view key) const;
    /// Follows "a.b.c" one key at a time; nil as soon as a step gives nil. An array applies the
    /// whole path to each element (nil results become null).
    VLXValue valueForKeyPath(std::string_view keyPath) const;

    /// "(\n    1,\n    2\n)"-style text of the platform for arrays and dictionaries (nested
    /// collections indented by four spaces a level; strings and dates inside them quoted unless
    /// they are plain ASCII letters and digits), the string itself for strings, numbers as
    /// `stringValue`, "<null>" for null, "(null)" for nil, "NSPoint: {1, 2}"-style for boxes.
    std::string description() const;

    /// Platform equality: numbers by value whatever their encoding (exactly, also between
    /// integers and doubles; NaN equals NaN), strings by text, dates by time, arrays and
    /// dictionaries element by element, boxes and colours field by field, objects through
    /// `VLXObject::isEqual`. Values of different kinds differ.
    friend bool operator==(const VLXValue& a, const VLXValue& b);

private:
    struct NullTag {};
    // Integer encodings keep their exact 64-bit value; "f" holds the float widened to double.
    struct Number {
        union {
            VLXInteger s;
            VLXUInteger u;
            double d;
        };
        char encoding;
    };
    struct Box;
    // Alternatives in the order of `Kind`, so the index is the kind. Scalars live inline (no
    // allocation for numbers and dates); everything else is shared, immutable storage.
    using Storage =
        std::variant<std::monostate, NullTag, Number, std::shared_ptr<const std::string>, VLXDate,
                     std::shared_ptr<const Array>, std::shared_ptr<const Dictionary>,
                     std::shared_ptr<const Box>, std::shared_ptr<const VLXColor>,
                     std::shared_ptr<VLXObject>>;

    VLXValue(std::in_place_t, Storage storage) : m_storage(std::move(storage)) {}
    static VLXValue boxed(Box box);
    const Number* numberStorage() const { return std::get_if<Number>(&m_storage); }
    const std::string* stringStorage() const;
    const Box* boxStorage() const;
    template <class T>
    T boxedAs() const;

    Storage m_storage;
};

VLX_EXPORT std::ostream& operator<<(std::ostream& os, const VLXValue& value);
