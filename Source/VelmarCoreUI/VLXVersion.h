#pragma once

/// The library's version as a number (major.minor) and as text ("0.1.0").
extern const double VelmarCoreUIVersionNumber;
extern const char* const VelmarCoreUIVersionString;
