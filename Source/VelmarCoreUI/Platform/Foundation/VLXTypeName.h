#pragma once

#include <string>
#include <typeinfo>

namespace vlx::detail {

/// The readable C++ name of a type ("VLXColorStop", "MyApp::Reading"): demangled, without the
/// wrapper that VLXMakeShared constructs through. Computed once per type.
std::string readableTypeName(const std::type_info& type);

}  // namespace vlx::detail
