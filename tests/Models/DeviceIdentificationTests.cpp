#include <gtest/gtest.h>

#include <string>

#include <VelmarCoreUI/Models/VLXDeviceIdentification.h>
#include <VelmarCoreUI/Platform/Device/VLXScreen.h>

namespace {

// Sets the main screen's bounds for one test and puts the old ones back.
class ScopedScreenBounds {
public:
    explicit ScopedScreenBounds(VLXRect bounds) : m_saved(VLXScreen::mainScreen()->bounds()) {
        VLXScreen::mainScreen()->setBounds(bounds);
    }
    ~ScopedScreenBounds() { VLXScreen::mainScreen()->setBounds(m_saved); }

private:
    VLXRect m_saved;
};

struct Expected {
    const char* identifier;
    const char* name;
    VLXUInteger platform;
    VLXUInteger family;
};

// Written out from the published model list, one or more per generation, not from the code's
// own tables.
const Expected kModels[] = {
    {"iPhone1,1", "iPhone 1G", 1, 1},
    {"iPhone1,2", "iPhone 3G", 2, 1},
    {"iPhone2,1", "iPhone 3GS", 3, 1},
    {"iPhone3,2", "iPhone 4 (GSM Rev A)", 4, 1},
    {"iPhone4,1", "iPhone 4S", 5, 1},
    {"iPhone5,2", "iPhone 5 (Global)", 6, 1},
    {"iPhone6,1", "iPhone 5s (GSM)", 7, 1},
    {"iPhone5,3", "iPhone 5c (GSM)", 8, 1},
    {"iPhone7,2", "iPhone 6", 9, 1},
    {"iPhone7,1", "iPhone 6 Plus", 10, 1},
    {"iPhone8,1", "iPhone 6s", 11, 1},
    {"iPhone8,2", "iPhone 6s Plus", 12, 1},
    {"iPad1,1", "iPad 1G", 13, 3},
    {"iPad2,4", "iPad 2 (Rev A)", 14, 3},
    {"iPad3,3", "iPad 3 (Global)", 15, 3},
    {"iPad3,4", "iPad 4 (WiFi)", 16, 3},
    {"iPad4,2", "iPad Air (Cellular)", 17, 3},
    {"iPad4,3", "iPad4,3", 17, 3},
    {"iPad5,4", "iPad Air 2 (Cellular)", 18, 3},
    {"iPad6,7", "iPad Pro (WiFi)", 19, 3},
    {"iPad2,7", "iPad mini 1G (Global)", 20, 3},
    {"iPad4,6", "iPad Mini", 21, 3},
    {"iPad4,8", "iPad Mini 3 (Cellular)", 22, 3},
    {"iPad4,9", "iPad Mini 3 (Cellular)", 22, 3},
    {"iPad5,1", "iPad Mini 4 (WiFi)", 23, 3},
    {"iPod1,1", "iPod touch 1G", 24, 2},
    {"iPod3,1", "iPod touch 3G", 26, 2},
    {"iPod5,1", "iPod touch 5G", 28, 2},
    {"Watch1,2", "Watch1,2", 29, 5},
    {"AppleTV5,3", "AppleTV5,3", 0, 4},
    {"iPhone99,1", "iPhone99,1", 0, 1},
    {"", "", 0, 0},
};

}  // namespace

TEST(DeviceIdentification, KnownModels) {
    const VLXDevice& device = *VLXDevice::currentDevice();
    for (const Expected& model : kModels) {
        VLXScopedModelIdentifier pose(model.identifier);
        SCOPED_TRACE(model.identifier);
        EXPECT_EQ(vlx_modelIdentifier(device), model.identifier);
        EXPECT_EQ(vlx_modelName(device), model.name);
        EXPECT_EQ(vlx_devicePlatform(device), model.platform);
        EXPECT_EQ(vlx_deviceFamily(device), model.family);
    }
}

TEST(DeviceIdentification, SimulatorsFollowTheScreenWidth) {
    const VLXDevice& device = *VLXDevice::currentDevice();
    {
        VLXScopedModelIdentifier pose("x86_64");
        ScopedScreenBounds wide(VLXRectMake(0, 0, 1024, 768));
        EXPECT_EQ(vlx_modelName(device), "iPad Simulator");
        EXPECT_EQ(vlx_devicePlatform(device), VLXDevicePlatformSimulator);
        EXPECT_EQ(vlx_deviceFamily(device), VLXDeviceFamilyUnknown);
        VLXScreen::mainScreen()->setBounds(VLXRectMake(0, 0, 767.5, 1024));
        EXPECT_EQ(vlx_modelName(device), "iPhone Simulator");
        VLXScreen::mainScreen()->setBounds(VLXRectMake(0, 0, 768, 1024));
        EXPECT_EQ(vlx_modelName(device), "iPad Simulator");
    }
    {
        // A 32-bit simulator is named as one but has no platform value.
        VLXScopedModelIdentifier pose("i386");
        ScopedScreenBounds phone(VLXRectMake(0, 0, 320, 480));
        EXPECT_EQ(vlx_modelName(device), "iPhone Simulator");
        EXPECT_EQ(vlx_devicePlatform(device), VLXDevicePlatformUnknown);
        EXPECT_EQ(vlx_deviceFamily(device), VLXDeviceFamilyUnknown);
    }
    VLXScopedModelIdentifier pose("86");
    EXPECT_EQ(vlx_devicePlatform(device), VLXDevicePlatformSimulator);
}

TEST(DeviceIdentification, RecencyAndSourceRestoration) {
    const VLXDevice& device = *VLXDevice::currentDevice();
    const std::string real = vlx_modelIdentifier(device);
    EXPECT_FALSE(real.empty());  // uname() always names the machine
    {
        VLXScopedModelIdentifier outer("iPhone5,3");
        EXPECT_TRUE(vlx_isMoreRecentThanPlatform(device, VLXDevicePlatformiPhone5s));
        EXPECT_FALSE(vlx_isMoreRecentThanPlatform(device, VLXDevicePlatformiPhone5c));
        {
            VLXScopedModelIdentifier inner("Nothing1,1");
            EXPECT_FALSE(vlx_isMoreRecentThanPlatform(device, VLXDevicePlatformUnknown));
        }
        EXPECT_EQ(vlx_modelIdentifier(device), "iPhone5,3");
    }
    EXPECT_EQ(vlx_modelIdentifier(device), real);
    EXPECT_EQ(device.getSysInfoByName("hw.model"), "");
    EXPECT_EQ(device.getSysInfoByName(nullptr), "");
}
