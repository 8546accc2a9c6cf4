#pragma once

#include <VelmarCoreUI/VLXExport.h>

/// The library's version as a number (major.minor) and as text ("0.1.0").
VLX_EXPORT extern const double VelmarCoreUIVersionNumber;
VLX_EXPORT extern const char* const VelmarCoreUIVersionString;
