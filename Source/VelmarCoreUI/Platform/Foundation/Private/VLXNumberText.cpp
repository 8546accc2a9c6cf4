#include <VelmarCoreUI/Platform/Foundation/Private/VLXNumberText.h>

#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

namespace vlx::detail {

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

namespace {

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

}  // namespace

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

template float parseDecimal<float>(std::string_view);
template double parseDecimal<double>(std::string_view);

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

}  // namespace vlx::detail
