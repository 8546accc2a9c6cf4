#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <string>
#include <typeinfo>

/// The readable C++ name of a type ("VLXColorStop", "MyApp::Reading"): demangled, without the
/// wrapper that VLXMakeShared constructs through. Computed once per type.
VLX_EXPORT std::string VLXReadableTypeName(const std::type_info& type);
