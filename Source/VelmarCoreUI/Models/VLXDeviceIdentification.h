#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <string>

#include <VelmarCoreUI/Platform/Device/VLXDevice.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTypes.h>

/// Hardware generations, ordered by age within each family (with the historical
/// irregularities kept: the 5c ranks above the 5s, the 6 below the 6 Plus). 0 is unknown.
enum VLXDevicePlatform : VLXUInteger {
    VLXDevicePlatformUnknown = 0,
    VLXDevicePlatformiPhone1G = 1,
    VLXDevicePlatformiPhone3G = 2,
    VLXDevicePlatformiPhone3GS = 3,
    VLXDevicePlatformiPhone4 = 4,
    VLXDevicePlatformiPhone4S = 5,
    VLXDevicePlatformiPhone5 = 6,
    VLXDevicePlatformiPhone5s = 7,
    VLXDevicePlatformiPhone5c = 8,
    VLXDevicePlatformiPhone6 = 9,
    VLXDevicePlatformiPhone6Plus = 10,
    VLXDevicePlatformiPhone6s = 11,
    VLXDevicePlatformiPhone6sPlus = 12,
    VLXDevicePlatformiPad1G = 13,
    VLXDevicePlatformiPad2 = 14,
    VLXDevicePlatformiPad3 = 15,
    VLXDevicePlatformiPad4 = 16,
    VLXDevicePlatformiPadAir = 17,
    VLXDevicePlatformiPadAir2 = 18,
    VLXDevicePlatformiPadPro = 19,
    VLXDevicePlatformiPadMini1G = 20,
    VLXDevicePlatformiPadMini2 = 21,
    VLXDevicePlatformiPadMini3 = 22,
    VLXDevicePlatformiPadMini4 = 23,
    VLXDevicePlatformiPodTouch1G = 24,
    VLXDevicePlatformiPodTouch2G = 25,
    VLXDevicePlatformiPodTouch3G = 26,
    VLXDevicePlatformiPodTouch4G = 27,
    VLXDevicePlatformiPodTouch5G = 28,
    VLXDevicePlatformAppleWatch = 29,
    VLXDevicePlatformSimulator = 30,
};

/// The product line, decided by the identifier's prefix.
enum VLXDeviceFamily : VLXUInteger {
    VLXDeviceFamilyUnknown = 0,
    VLXDeviceFamilyiPhone = 1,
    VLXDeviceFamilyiPod = 2,
    VLXDeviceFamilyiPad = 3,
    VLXDeviceFamilyAppleTV = 4,
    VLXDeviceFamilyWatch = 5,
};

/// The raw model identifier, `getSysInfoByName("hw.machine")` ("iPhone7,2"; on a simulator or
/// a desktop the processor name, such as "x86_64").
VLX_EXPORT std::string vlx_modelIdentifier(const VLXDevice& device);

/// The human-readable model name ("iPhone 6"). Identifiers without a name entry that end with
/// "86" or are "x86_64" are simulators: "iPhone Simulator" when the main screen is narrower
/// than 768 points, else "iPad Simulator" (a NaN width counts as wide). Any other identifier is
/// returned as it is ("iPad4,3" and the watches have no entry of their own).
VLX_EXPORT std::string vlx_modelName(const VLXDevice& device);

/// The generation of the identifier, or 0 when it is not listed. Only the literal identifiers
/// "86" and "x86_64" give the simulator value, so a 32-bit simulator ("i386") is unknown here
/// although `vlx_modelName` calls it a simulator.
VLX_EXPORT VLXDevicePlatform vlx_devicePlatform(const VLXDevice& device);

/// The family by prefix, tested in the order "iPhone", "iPod", "iPad", "Watch", "AppleTV";
/// anything else (simulators included) is unknown.
VLX_EXPORT VLXDeviceFamily vlx_deviceFamily(const VLXDevice& device);

/// True when the device's platform value is strictly greater than `platform`; an unknown
/// device is never more recent.
VLX_EXPORT bool vlx_isMoreRecentThanPlatform(const VLXDevice& device, VLXDevicePlatform platform);
