#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/ECPrivateKey.h"
#include "Platform/JSON.h"
#include "Sdk/SecureChannel/KeysContainer.h"
#include "tests/support/TestPki.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvane {

inline constexpr const char* kReferenceNumber = "3DS_LOA_SDK_QXRV_020200_00417";

/// The key that both sides derive, put together from its inputs once more.
[[nodiscard]] SecretBytes peerKey(const ECPrivateKey& own, const ECPublicKey& theirs,
                                  const std::string& partyVInfo);

/// Certificates for the chain check; device data is not what the test is about.
[[nodiscard]] TransactionCerts certsWithRoot(const TestIdentity& root);

/// The other side of the channel.
struct PlayedAcs {
    TestIdentity root = selfSigned(authority("Root"));
    TestIdentity leaf = root.issue({});
    ECPrivateKey ephemeral = ECPrivateKey::generateWithoutParametersWith(ECCurveType::P256);

    /// A payload that answers the library's key.
    [[nodiscard]] JSON payload() const;

    /// Signed by the leaf, with its certificate alone as "x5c".
    [[nodiscard]] std::string signedContent(const JSON& payload) const {
        return signedBy(leaf, {leaf.base64()}, payload);
    }
    [[nodiscard]] std::string signedContent() const { return signedContent(payload()); }

    /// A message sealed under the session's key, as the body of an answer.
    [[nodiscard]] static std::string sealed(std::string_view text, const SecretBytes& key);

    /// Signed by `signer` under a header with this "x5c".
    [[nodiscard]] static std::string signedBy(const TestIdentity& signer, const std::vector<std::string>& x5c,
                                              const JSON& payload,
                                              SignatureAlgorithm algorithm = SignatureAlgorithm::ES256);
};

} // namespace korvane
