#include "Sdk/DeviceData/DeviceIdentity.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace korvane {

namespace {

/// Up to four machine identifiers with one name; what is left of the four is empty.
struct ModelRow {
    std::string_view name;
    std::array<std::string_view, 4> identifiers;
};

constexpr std::array kModels{
    ModelRow{"iPod touch (5th generation)", {"iPod5,1"}},
    ModelRow{"iPod touch (6th generation)", {"iPod7,1"}},
    ModelRow{"iPod touch (7th generation)", {"iPod9,1"}},
    ModelRow{"iPhone 4", {"iPhone3,1", "iPhone3,2", "iPhone3,3"}},
    ModelRow{"iPhone 4s", {"iPhone4,1"}},
    ModelRow{"iPhone 5", {"iPhone5,1", "iPhone5,2"}},
    ModelRow{"iPhone 5c", {"iPhone5,3", "iPhone5,4"}},
    ModelRow{"iPhone 5s", {"iPhone6,1", "iPhone6,2"}},
    ModelRow{"iPhone 6", {"iPhone7,2"}},
    ModelRow{"iPhone 6 Plus", {"iPhone7,1"}},
    ModelRow{"iPhone 6s", {"iPhone8,1"}},
    ModelRow{"iPhone 6s Plus", {"iPhone8,2"}},
    ModelRow{"iPhone SE", {"iPhone8,4"}},
    ModelRow{"iPhone 7", {"iPhone9,1", "iPhone9,3"}},
    ModelRow{"iPhone 7 Plus", {"iPhone9,2", "iPhone9,4"}},
    ModelRow{"iPhone 8", {"iPhone10,1", "iPhone10,4"}},
    ModelRow{"iPhone 8 Plus", {"iPhone10,2", "iPhone10,5"}},
    ModelRow{"iPhone X", {"iPhone10,3", "iPhone10,6"}},
    ModelRow{"iPhone XS", {"iPhone11,2"}},
    ModelRow{"iPhone XS Max", {"iPhone11,4", "iPhone11,6"}},
    ModelRow{"iPhone XR", {"iPhone11,8"}},
    ModelRow{"iPhone 11", {"iPhone12,1"}},
    ModelRow{"iPhone 11 Pro", {"iPhone12,3"}},
    ModelRow{"iPhone 11 Pro Max", {"iPhone12,5"}},
    ModelRow{"iPhone SE (2nd generation)", {"iPhone12,8"}},
    ModelRow{"iPhone 12 mini", {"iPhone13,1"}},
    ModelRow{"iPhone 12", {"iPhone13,2"}},
    ModelRow{"iPhone 12 Pro", {"iPhone13,3"}},
    ModelRow{"iPhone 12 Pro Max", {"iPhone13,4"}},
    ModelRow{"iPad 2", {"iPad2,1", "iPad2,2", "iPad2,3", "iPad2,4"}},
    ModelRow{"iPad (3rd generation)", {"iPad3,1", "iPad3,2", "iPad3,3"}},
    ModelRow{"iPad (4th generation)", {"iPad3,4", "iPad3,5", "iPad3,6"}},
    ModelRow{"iPad (5th generation)", {"iPad6,11", "iPad6,12"}},
    ModelRow{"iPad (6th generation)", {"iPad7,5", "iPad7,6"}},
    ModelRow{"iPad (7th generation)", {"iPad7,11", "iPad7,12"}},
    ModelRow{"iPad (8th generation)", {"iPad11,6", "iPad11,7"}},
    ModelRow{"iPad Air", {"iPad4,1", "iPad4,2", "iPad4,3"}},
    ModelRow{"iPad Air 2", {"iPad5,3", "iPad5,4"}},
    ModelRow{"iPad Air (3rd generation)", {"iPad11,3", "iPad11,4"}},
    ModelRow{"iPad Air (4th generation)", {"iPad13,1", "iPad13,2"}},
    ModelRow{"iPad mini", {"iPad2,5", "iPad2,6", "iPad2,7"}},
    ModelRow{"iPad mini 2", {"iPad4,4", "iPad4,5", "iPad4,6"}},
    ModelRow{"iPad mini 3", {"iPad4,7", "iPad4,8", "iPad4,9"}},
    ModelRow{"iPad mini 4", {"iPad5,1", "iPad5,2"}},
    ModelRow{"iPad mini (5th generation)", {"iPad11,1", "iPad11,2"}},
    ModelRow{"iPad Pro (9.7-inch)", {"iPad6,3", "iPad6,4"}},
    ModelRow{"iPad Pro (10.5-inch)", {"iPad7,3", "iPad7,4"}},
    ModelRow{"iPad Pro (11-inch) (1st generation)", {"iPad8,1", "iPad8,2", "iPad8,3", "iPad8,4"}},
    ModelRow{"iPad Pro (11-inch) (2nd generation)", {"iPad8,9", "iPad8,10"}},
    ModelRow{"iPad Pro (12.9-inch) (1st generation)", {"iPad6,7", "iPad6,8"}},
    ModelRow{"iPad Pro (12.9-inch) (2nd generation)", {"iPad7,1", "iPad7,2"}},
    ModelRow{"iPad Pro (12.9-inch) (3rd generation)", {"iPad8,5", "iPad8,6", "iPad8,7", "iPad8,8"}},
    ModelRow{"iPad Pro (12.9-inch) (4th generation)", {"iPad8,11", "iPad8,12"}},
    ModelRow{"Apple TV", {"AppleTV5,3"}},
    ModelRow{"Apple TV 4K", {"AppleTV6,2"}},
    ModelRow{"HomePod", {"AudioAccessory1,1"}},
    ModelRow{"HomePod mini", {"AudioAccessory5,1"}},
};

std::string mapToDevice(std::string_view identifier) {
    const auto hasIdentifier = [identifier](const ModelRow& row) {
        return std::find(row.identifiers.begin(), row.identifiers.end(), identifier) != row.identifiers.end();
    };
    const auto row = std::find_if(kModels.begin(), kModels.end(), hasIdentifier);
    const bool isKnown = !identifier.empty() && row != kModels.end();
    return std::string(isKnown ? row->name : identifier);
}

/// The non-zero octets of the field, each as the character of its number.
std::string identifierOf(std::string_view machine) {
    std::string identifier;
    for (const char octet : machine) {
        const auto code = static_cast<unsigned char>(octet);
        if (code == 0) continue;
        if (code < 0x80) {
            identifier += octet;
        } else {
            identifier += static_cast<char>(0xC0U | (code >> 6U));
            identifier += static_cast<char>(0x80U | (code & 0x3FU));
        }
    }
    return identifier;
}

bool isSimulator(std::string_view identifier) {
    return identifier == "i386" || identifier == "x86_64" || identifier == "arm64";
}

} // namespace

std::string computeModelName(const NSProcessInfo& process) {
    const std::string identifier = identifierOf(process.machine());
    if (!isSimulator(identifier)) return mapToDevice(identifier);
    // A variable that itself names a simulator stands for itself: a simulator in a simulator has no end.
    return "Simulator " +
           mapToDevice(process.environmentVariable("SIMULATOR_MODEL_IDENTIFIER").value_or("iOS"));
}

const std::string& modelName(const NSProcessInfo& process) {
    static const std::string name = computeModelName(process);
    return name;
}

} // namespace korvane
