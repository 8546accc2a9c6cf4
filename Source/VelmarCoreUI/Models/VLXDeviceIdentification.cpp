#include <VelmarCoreUI/Models/VLXDeviceIdentification.h>

#include <initializer_list>
#include <string_view>
#include <unordered_map>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>

namespace {

using NameTable = std::unordered_map<std::string_view, std::string_view>;
using PlatformTable = std::unordered_map<std::string_view, VLXDevicePlatform>;

// Identifiers are unique, so a hash lookup answers what a scan in this order would.
const NameTable& modelNames() {
    static const NameTable table{
        {"iPhone1,1", "iPhone 1G"},
        {"iPhone1,2", "iPhone 3G"},
        {"iPhone2,1", "iPhone 3GS"},
        {"iPhone3,1", "iPhone 4 (GSM)"},
        {"iPhone3,2", "iPhone 4 (GSM Rev A)"},
        {"iPhone3,3", "iPhone 4 (CDMA)"},
        {"iPhone4,1", "iPhone 4S"},
        {"iPhone5,1", "iPhone 5 (GSM)"},
        {"iPhone5,2", "iPhone 5 (Global)"},
        {"iPhone6,1", "iPhone 5s (GSM)"},
        {"iPhone6,2", "iPhone 5s (Global)"},
        {"iPhone5,3", "iPhone 5c (GSM)"},
        {"iPhone5,4", "iPhone 5c (Global)"},
        {"iPhone7,2", "iPhone 6"},
        {"iPhone7,1", "iPhone 6 Plus"},
        {"iPhone8,1", "iPhone 6s"},
        {"iPhone8,2", "iPhone 6s Plus"},
        {"iPad1,1", "iPad 1G"},
        {"iPad2,1", "iPad 2 (WiFi)"},
        {"iPad2,2", "iPad 2 (GSM)"},
        {"iPad2,3", "iPad 2 (CDMA)"},
        {"iPad2,4", "iPad 2 (Rev A)"},
        {"iPad3,1", "iPad 3 (WiFi)"},
        {"iPad3,2", "iPad 3 (GSM)"},
        {"iPad3,3", "iPad 3 (Global)"},
        {"iPad3,4", "iPad 4 (WiFi)"},
        {"iPad3,5", "iPad 4 (GSM)"},
        {"iPad3,6", "iPad 4 (Global)"},
        // "iPad4,3" has no name of its own and is reported by its identifier.
        {"iPad4,1", "iPad Air (WiFi)"},
        {"iPad4,2", "iPad Air (Cellular)"},
        {"iPad5,3", "iPad Air 2 (WiFi)"},
        {"iPad5,4", "iPad Air 2 (Cellular)"},
        {"iPad6,7", "iPad Pro (WiFi)"},
        {"iPad6,8", "iPad Pro (Cellular)"},
        {"iPad2,5", "iPad mini 1G (WiFi)"},
        {"iPad2,6", "iPad mini 1G (GSM)"},
        {"iPad2,7", "iPad mini 1G (Global)"},
        {"iPad4,4", "iPad mini 2 (WiFi)"},
        {"iPad4,5", "iPad mini 2 (Cellular)"},
        {"iPad4,6", "iPad Mini"},
        {"iPad4,7", "iPad Mini 3 (WiFi)"},
        {"iPad4,8", "iPad Mini 3 (Cellular)"},
        {"iPad4,9", "iPad Mini 3 (Cellular)"},
        {"iPad5,1", "iPad Mini 4 (WiFi)"},
        {"iPad5,2", "iPad Mini 4 (Cellular)"},
        {"iPod1,1", "iPod touch 1G"},
        {"iPod2,1", "iPod touch 2G"},
        {"iPod3,1", "iPod touch 3G"},
        {"iPod4,1", "iPod touch 4G"},
        {"iPod5,1", "iPod touch 5G"},
    };
    return table;
}

const PlatformTable& platforms() {
    static const PlatformTable table = [] {
        struct Row {
            VLXDevicePlatform platform;
            std::initializer_list<std::string_view> identifiers;
        };
        const Row rows[] = {
            {VLXDevicePlatformiPhone1G, {"iPhone1,1"}},
            {VLXDevicePlatformiPhone3G, {"iPhone1,2"}},
            {VLXDevicePlatformiPhone3GS, {"iPhone2,1"}},
            {VLXDevicePlatformiPhone4, {"iPhone3,1", "iPhone3,2", "iPhone3,3"}},
            {VLXDevicePlatformiPhone4S, {"iPhone4,1"}},
            {VLXDevicePlatformiPhone5, {"iPhone5,1", "iPhone5,2"}},
            {VLXDevicePlatformiPhone5s, {"iPhone6,1", "iPhone6,2"}},
            {VLXDevicePlatformiPhone5c, {"iPhone5,3", "iPhone5,4"}},
            {VLXDevicePlatformiPhone6, {"iPhone7,2"}},
            {VLXDevicePlatformiPhone6Plus, {"iPhone7,1"}},
            {VLXDevicePlatformiPhone6s, {"iPhone8,1"}},
            {VLXDevicePlatformiPhone6sPlus, {"iPhone8,2"}},
            {VLXDevicePlatformiPad1G, {"iPad1,1"}},
            {VLXDevicePlatformiPad2, {"iPad2,1", "iPad2,2", "iPad2,3", "iPad2,4"}},
            {VLXDevicePlatformiPad3, {"iPad3,1", "iPad3,2", "iPad3,3"}},
            {VLXDevicePlatformiPad4, {"iPad3,4", "iPad3,5", "iPad3,6"}},
            {VLXDevicePlatformiPadAir, {"iPad4,1", "iPad4,2", "iPad4,3"}},
            {VLXDevicePlatformiPadAir2, {"iPad5,3", "iPad5,4"}},
            {VLXDevicePlatformiPadPro, {"iPad6,7", "iPad6,8"}},
            {VLXDevicePlatformiPadMini1G, {"iPad2,5", "iPad2,6", "iPad2,7"}},
            {VLXDevicePlatformiPadMini2, {"iPad4,4", "iPad4,5", "iPad4,6"}},
            {VLXDevicePlatformiPadMini3, {"iPad4,7", "iPad4,8", "iPad4,9"}},
            {VLXDevicePlatformiPadMini4, {"iPad5,1", "iPad5,2"}},
            {VLXDevicePlatformiPodTouch1G, {"iPod1,1"}},
            {VLXDevicePlatformiPodTouch2G, {"iPod2,1"}},
            {VLXDevicePlatformiPodTouch3G, {"iPod3,1"}},
            {VLXDevicePlatformiPodTouch4G, {"iPod4,1"}},
            {VLXDevicePlatformiPodTouch5G, {"iPod5,1"}},
            {VLXDevicePlatformAppleWatch, {"Watch1,1", "Watch1,2"}},
            {VLXDevicePlatformSimulator, {"86", "x86_64"}},
        };
        PlatformTable result;
        for (const Row& row : rows) {
            for (std::string_view identifier : row.identifiers) {
                result.emplace(identifier, row.platform);
            }
        }
        return result;
    }();
    return table;
}

bool isSimulatorIdentifier(std::string_view identifier) {
    return identifier.ends_with("86") || identifier == "x86_64";
}

}  // namespace

std::string vlx_modelIdentifier(const VLXDevice& device) {
    return device.getSysInfoByName("hw.machine");
}

std::string vlx_modelName(const VLXDevice& device) {
    const std::string identifier = vlx_modelIdentifier(device);
    const NameTable& names = modelNames();
    if (auto found = names.find(identifier); found != names.end()) {
        return std::string(found->second);
    }
    if (isSimulatorIdentifier(identifier)) {
        const double width = VLXScreen::mainScreen()->bounds().width();
        return width < 768.0 ? "iPhone Simulator" : "iPad Simulator";
    }
    return identifier;
}

VLXDevicePlatform vlx_devicePlatform(const VLXDevice& device) {
    const std::string identifier = vlx_modelIdentifier(device);
    const PlatformTable& table = platforms();
    if (auto found = table.find(identifier); found != table.end()) {
        return found->second;
    }
    return VLXDevicePlatformUnknown;
}

VLXDeviceFamily vlx_deviceFamily(const VLXDevice& device) {
    const std::string identifier = vlx_modelIdentifier(device);
    const std::string_view id = identifier;
    if (id.starts_with("iPhone")) {
        return VLXDeviceFamilyiPhone;
    }
    if (id.starts_with("iPod")) {
        return VLXDeviceFamilyiPod;
    }
    if (id.starts_with("iPad")) {
        return VLXDeviceFamilyiPad;
    }
    if (id.starts_with("Watch")) {
        return VLXDeviceFamilyWatch;
    }
    if (id.starts_with("AppleTV")) {
        return VLXDeviceFamilyAppleTV;
    }
    return VLXDeviceFamilyUnknown;
}

bool vlx_isMoreRecentThanPlatform(const VLXDevice& device, VLXDevicePlatform platform) {
    return vlx_devicePlatform(device) > platform;
}
