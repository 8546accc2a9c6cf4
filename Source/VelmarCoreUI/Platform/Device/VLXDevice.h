#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <functional>
#include <memory>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>

/// The machine the program runs on.
///
/// The hardware model identifier ("iPhone7,2", "x86_64" …) comes from a replaceable source so
/// that hosts can report the device they stand for and tests can pose as any model. The default
/// source is the kernel's machine name (`uname().machine`).
class VLX_EXPORT VLXDevice : public VLXObject {
public:
    using ModelIdentifierSource = std::function<std::string()>;

    static std::shared_ptr<VLXDevice> create();
    /// The process-wide device (created on first use, kept for the life of the process).
    static std::shared_ptr<VLXDevice> currentDevice();

    /// Replaces the model-identifier source for every device; an empty function restores the
    /// default (`uname().machine`).
    static void setModelIdentifierSource(ModelIdentifierSource source);
    /// The source set last, or an empty function when the default is in use.
    static ModelIdentifierSource modelIdentifierSource();

    /// A system information value by its kernel name. "hw.machine" gives the model identifier
    /// from the current source; every other name, and a null name, gives an empty string.
    std::string getSysInfoByName(const char* name) const;

    /// The operating system's name ("Linux"; `uname().sysname`, "Unknown" if that fails).
    std::string systemName() const;
    /// The kernel release (`uname().release`, "" if that fails).
    std::string systemVersion() const;
    /// The kind of device, for display: "Linux device".
    std::string model() const;

protected:
    VLXDevice() = default;
};

/// Poses as another device for as long as it lives: installs a source that answers
/// `identifier`, and restores the previous source when destroyed.
///
///     VLXScopedModelIdentifier pose("iPhone7,2");
///     EXPECT_EQ(vlx_modelName(*VLXDevice::currentDevice()), "iPhone 6");
class VLX_EXPORT VLXScopedModelIdentifier {
public:
    explicit VLXScopedModelIdentifier(std::string identifier);
    ~VLXScopedModelIdentifier();
    VLXScopedModelIdentifier(const VLXScopedModelIdentifier&) = delete;
    VLXScopedModelIdentifier& operator=(const VLXScopedModelIdentifier&) = delete;

private:
    VLXDevice::ModelIdentifierSource m_previous;
};
