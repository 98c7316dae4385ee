#include "Platform/UUID.h"

#include "Platform/Failure.h"
#include "Platform/Security/CommonCrypto.h"

#include <array>

namespace korvane {

std::string makeUUIDString() {
    std::array<std::uint8_t, 16> octets{};
    if (SecRandomCopyBytes(octets) != 0) fatalError("There are no random bytes for a UUID.");
    octets[6] = static_cast<std::uint8_t>((octets[6] & 0x0FU) | 0x40U);
    octets[8] = static_cast<std::uint8_t>((octets[8] & 0x3FU) | 0x80U);

    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t index = 0; index < octets.size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10) text += '-';
        text += kDigits[octets[index] >> 4U];
        text += kDigits[octets[index] & 0x0FU];
    }
    return text;
}

} // namespace korvane
