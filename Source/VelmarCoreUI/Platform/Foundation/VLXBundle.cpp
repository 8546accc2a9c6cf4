#include <VelmarCoreUI/Platform/Foundation/VLXBundle.h>

#include <cstdlib>
#include <mutex>
#include <sstream>
#include <system_error>

namespace {

std::filesystem::path mainResourcePath() {
    const char* variable = std::getenv("VLX_RESOURCE_PATH");
    if (variable != nullptr && *variable != '\0') {
        return variable;
    }
    std::error_code error;
    const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error || executable.empty()) {
        return {};
    }
    return executable.parent_path() / "Resources";
}

// A component that could name another folder, or that the OS would cut short.
bool isUnsafeComponent(std::string_view text) {
    return text.find('/') != std::string_view::npos || text.find("..") != std::string_view::npos ||
           text.find('\0') != std::string_view::npos;
}

}  // namespace

VLXBundle::VLXBundle(std::filesystem::path resourcePath)
    : m_resourcePath(std::move(resourcePath)) {}

std::shared_ptr<VLXBundle> VLXBundle::mainBundle() {
    static std::mutex mutex;
    static std::shared_ptr<VLXBundle> bundle;
    std::filesystem::path path = mainResourcePath();
    std::lock_guard lock(mutex);
    if (!bundle || bundle->m_resourcePath != path) {
        bundle = makeInitialized<VLXBundle>(std::move(path));
    }
    return bundle;
}

std::shared_ptr<VLXBundle> VLXBundle::bundleWithPath(const std::filesystem::path& path) {
    std::error_code error;
    if (path.empty() || !std::filesystem::is_directory(path, error)) {
        return nullptr;
    }
    return makeInitialized<VLXBundle>(path);
}

std::optional<std::string> VLXBundle::pathForResource(std::string_view name,
                                                      std::string_view type) const {
    if (m_resourcePath.empty() || name.empty() || isUnsafeComponent(name) ||
        isUnsafeComponent(type)) {
        return std::nullopt;
    }
    std::string fileName(name);
    if (!type.empty()) {
        fileName += '.';
        fileName += type;
    }
    const std::filesystem::path path = m_resourcePath / fileName;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return std::nullopt;
    }
    return path.string();
}

std::string VLXBundle::description() const {
    std::ostringstream text;
    text << "<VLXBundle: " << static_cast<const void*>(this)
         << "; path = " << m_resourcePath.string() << '>';
    return text.str();
}
