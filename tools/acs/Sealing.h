#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/ECPrivateKey.h"
#include "Crypt/ECPublicKey.h"
#include "Platform/Bytes.h"
#include "Platform/Security/SecKey.h"
#include "Platform/Security/Secret.h"
#include "tools/acs/Pki.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvane::acs {

/// A certificate chain as the header "x5c" holds it: leaf first, without its root.
using Chain = std::vector<std::string>;

/// One of the ACS's keys for signing, with its certificates.
struct SigningIdentity {
    SecKey key;
    Chain chain;
    /// The same key, certified under a root that the directory server does not know.
    Chain foreignChain;
};

/// The keys of the three parties that the tool plays. Immutable. Any thread.
class KeyRing {
public:
    /// @throws UsageError for a file that is missing or holds something else.
    KeyRing(const Pki& pki, std::string directoryServerID);

    [[nodiscard]] const SigningIdentity& signingIdentity(SignatureAlgorithm algorithm) const;

    /// Opens device data that was sealed to one of the two certificates: RSA-OAEP-256 with its own content
    /// key, or "dir" with an agreed key, whose sender's half stands in "epk".
    /// @throws Failure for anything that does not open.
    [[nodiscard]] std::string openDeviceData(std::string_view compact) const;

private:
    std::string directoryServerID_;
    SecKey deviceDataRSA_;
    ECPrivateKey deviceDataEC_;
    SigningIdentity rsa_;
    SigningIdentity ec_;
};

/// The 32-byte key of two parties and the name that binds it.
/// @throws Failure for keys that do not agree.
[[nodiscard]] SecretBytes agreedKey(const ECPrivateKey& privateKey, const ECPublicKey& publicKey,
                                    std::string_view partyVInfo);

/// The compact JWE of a text under a shared key ("dir", A128CBC-HS256).
[[nodiscard]] std::string seal(std::string_view text, ByteView key, const std::string& kid);

/// The compact JWS of a text.
[[nodiscard]] std::string sign(std::string_view text, SignatureAlgorithm algorithm, const SecKey& key,
                               const Chain& chain);

} // namespace korvane::acs
