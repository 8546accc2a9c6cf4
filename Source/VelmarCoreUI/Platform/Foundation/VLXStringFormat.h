#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <string>

/// printf-style formatting into a std::string. C's formats are part of the toolkit's
/// behaviour ("%.0f" rounds half to even, "%02lx" pads), so they are used as they are.
VLX_EXPORT std::string VLXStringWithFormat(const char* format, ...)
    __attribute__((format(printf, 1, 2)));
