#include <VelmarCoreUI/Platform/Foundation/VLXTypeName.h>

#include <cxxabi.h>

#include <cstdlib>
#include <mutex>
#include <string_view>
#include <typeindex>
#include <unordered_map>

namespace {

std::string demangledName(const std::type_info& type) {
    int status = 0;
    char* demangled = abi::__cxa_demangle(type.name(), nullptr, nullptr, &status);
    std::string name = (status == 0 && demangled != nullptr) ? demangled : type.name();
    std::free(demangled);
    constexpr std::string_view wrapper = "vlx::detail::Constructible<";
    if (name.starts_with(wrapper) && name.ends_with('>')) {
        name = name.substr(wrapper.size(), name.size() - wrapper.size() - 1);
    }
    return name;
}

}  // namespace

std::string VLXReadableTypeName(const std::type_info& type) {
    static std::mutex mutex;
    static std::unordered_map<std::type_index, std::string> names;
    std::lock_guard lock(mutex);
    auto it = names.find(type);
    if (it == names.end()) {
        it = names.emplace(type, demangledName(type)).first;
    }
    return it->second;
}
