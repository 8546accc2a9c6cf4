#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

#include <cstdarg>
#include <cstdio>

std::string VLXStringWithFormat(const char* format, ...) {
    if (format == nullptr) {
        return {};
    }
    char small[256];
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    const int length = std::vsnprintf(small, sizeof small, format, args);
    va_end(args);
    if (length < 0) {
        va_end(copy);
        return {};
    }
    if (static_cast<size_t>(length) < sizeof small) {
        va_end(copy);
        return std::string(small, static_cast<size_t>(length));
    }
    std::string result(static_cast<size_t>(length), '\0');
    std::vsnprintf(result.data(), result.size() + 1, format, copy);
    va_end(copy);
    return result;
}
