#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>

// How the platform turns text into numbers and numbers into text. `VLXValue` reads and prints
// through these; other modules that must read or print numbers exactly as a value would can
// use them directly.
namespace vlx::detail {

/// ASCII space, tab, newline, vertical tab, form feed or carriage return.
bool isBlank(char c);
/// ASCII '0'–'9' only (no locale).
bool isDigit(char c);
/// Index of the first character of `text` that is not blank (`text.size()` when there is none).
std::size_t skipBlanks(std::string_view text);

/// Truncation toward zero, saturated to [lo, hi]; NaN gives 0.
VLXInteger saturatedInteger(double value, VLXInteger lo, VLXInteger hi);
/// Truncation toward zero, saturated to [0, hi]; NaN gives 0.
VLXUInteger saturatedUnsigned(double value, VLXUInteger hi);
/// double to float, rounding to nearest; beyond the float range (after rounding) ±inf, never
/// an out-of-range conversion. NaN stays NaN.
float toFloat(double value);

/// Reads a number from text as the platform does: leading blanks skipped, an optional sign,
/// digits with an optional decimal point, an optional exponent; the rest is ignored. No digit
/// at all reads as 0, as do hexadecimal, "inf" and "nan" text. Too large gives ±inf, too small
/// ±0. Defined for `F` = float (read at float precision, no double rounding) and double.
template <class F>
F parseDecimal(std::string_view text);
extern template float parseDecimal<float>(std::string_view);
extern template double parseDecimal<double>(std::string_view);

/// Reads an integer from text: leading blanks, an optional sign and decimal digits only ("3.9"
/// is 3), saturated to the 64-bit range; 0 when no digit is found.
VLXInteger parseInteger(std::string_view text);

/// Prints a number as the platform does: the shortest text that reads back the same value
/// (of the float, when `asFloat`), in plain notation for decimal exponents -4 … 16 and
/// exponent notation with at least two exponent digits otherwise ("1e+20", "1e-05"); "nan",
/// "inf" and "-inf" for the special values.
std::string formatShortest(double value, bool asFloat);

}  // namespace vlx::detail
