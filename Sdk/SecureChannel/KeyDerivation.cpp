#include "Sdk/SecureChannel/KeyDerivation.h"

#include "Crypt/ConcatKDF.h"

namespace korvane {

SecretBytes deriveContentKey(ByteView z, std::string_view partyVInfo) {
    constexpr std::uint32_t kKeyBits = 256;
    return concatKDF(Hash::SHA256, z, kKeyBits, {}, {}, asBytes(partyVInfo), bigEndianData(kKeyBits));
}

} // namespace korvane
