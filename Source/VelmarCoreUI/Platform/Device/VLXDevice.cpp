#include <VelmarCoreUI/Platform/Device/VLXDevice.h>

#include <sys/utsname.h>

#include <cstring>
#include <utility>

namespace {

VLXDevice::ModelIdentifierSource& currentSource() {
    static VLXDevice::ModelIdentifierSource source;
    return source;
}

// One uname() call per question: the values do not change while the process runs, but the
// call is cheap and keeps the object free of cached state.
struct SystemNames {
    std::string sysname;
    std::string release;
    std::string machine;
    bool valid = false;
};

SystemNames readSystemNames() {
    SystemNames names;
    struct utsname info {};
    if (uname(&info) == 0) {
        names.sysname = info.sysname;
        names.release = info.release;
        names.machine = info.machine;
        names.valid = true;
    }
    return names;
}

}  // namespace

std::shared_ptr<VLXDevice> VLXDevice::create() {
    return makeInitialized<VLXDevice>();
}

std::shared_ptr<VLXDevice> VLXDevice::currentDevice() {
    static const std::shared_ptr<VLXDevice> device = create();
    return device;
}

void VLXDevice::setModelIdentifierSource(ModelIdentifierSource source) {
    currentSource() = std::move(source);
}

VLXDevice::ModelIdentifierSource VLXDevice::modelIdentifierSource() {
    return currentSource();
}

std::string VLXDevice::getSysInfoByName(const char* name) const {
    if (name == nullptr || std::strcmp(name, "hw.machine") != 0) {
        return {};
    }
    // Copy before calling, so a source that replaces itself cannot destroy the running function.
    const ModelIdentifierSource source = currentSource();
    if (source) {
        return source();
    }
    return readSystemNames().machine;
}

std::string VLXDevice::systemName() const {
    SystemNames names = readSystemNames();
    return names.valid ? names.sysname : std::string("Unknown");
}

std::string VLXDevice::systemVersion() const {
    return readSystemNames().release;
}

std::string VLXDevice::model() const {
    return "Linux device";
}

VLXScopedModelIdentifier::VLXScopedModelIdentifier(std::string identifier)
    : m_previous(VLXDevice::modelIdentifierSource()) {
    VLXDevice::setModelIdentifierSource(
        [identifier = std::move(identifier)] { return identifier; });
}

VLXScopedModelIdentifier::~VLXScopedModelIdentifier() {
    VLXDevice::setModelIdentifierSource(std::move(m_previous));
}
