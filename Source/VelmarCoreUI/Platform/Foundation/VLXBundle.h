#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>

/// A folder of resources (images, data files) looked up by name and type.
///
/// There is no application package on the host, so the main bundle is a plain folder: the one
/// named by the environment variable `VLX_RESOURCE_PATH` when it is set and not empty, else the
/// folder "Resources" beside the running executable. Lookups never leave the folder.
class VLX_EXPORT VLXBundle : public VLXObject {
public:
    /// The application's resource bundle. The folder is resolved again on every call (reading
    /// the environment costs next to nothing), so a host or a test may point
    /// `VLX_RESOURCE_PATH` elsewhere at any time. Consecutive calls return the same object as
    /// long as the folder stays the same. Never nil: when the executable's location cannot be
    /// read, the resource path is empty and every lookup gives nil.
    static std::shared_ptr<VLXBundle> mainBundle();
    /// A bundle over `path`; nil when `path` is not an existing directory.
    static std::shared_ptr<VLXBundle> bundleWithPath(const std::filesystem::path& path);

    /// The resource folder (it need not exist for the main bundle).
    const std::filesystem::path& resourcePath() const { return m_resourcePath; }

    /// The path of the file "<name>.<type>" in the resource folder, or "<name>" when `type` is
    /// empty. Nil when that is not an existing regular file (symbolic links to one count), when
    /// `name` is empty, or when `name` or `type` contain "/", ".." or a NUL character — so a
    /// lookup cannot reach outside the folder.
    std::optional<std::string> pathForResource(std::string_view name, std::string_view type) const;

    /// "<VLXBundle: 0x…; path = /…/Resources>".
    std::string description() const override;

protected:
    explicit VLXBundle(std::filesystem::path resourcePath);

private:
    std::filesystem::path m_resourcePath;
};
