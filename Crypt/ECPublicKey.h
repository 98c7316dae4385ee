#pragma once

#include "Crypt/JWK.h"
#include "Crypt/KeptSecKey.h"
#include "Crypt/SecKeyECPublicKey.h"

namespace korvane {

/// An EC public key (RFC 7518 section 6.2.1).
class ECPublicKey : public JWKOf<ECPublicKey> {
public:
    /// @param x, y  Base64URL texts of big-endian coordinates; they are not looked at.
    ECPublicKey(ECCurveType crv, std::string x, std::string y, const StringMap& additionalParameters = {});

    /// @throws JOSEError couldNotConstructJWK for a key that does not yield its numbers, invalidCurveType.
    template <ExpressibleAsECPublicKeyComponents Key>
    explicit ECPublicKey(const Key& publicKey, const StringMap& additionalParameters = {})
        : ECPublicKey(componentsFrom([&] { return ecPublicKeyComponents(publicKey); }),
                      additionalParameters) {
        if constexpr (std::same_as<Key, SecKey>) keep(publicKey);
    }

    [[nodiscard]] ECCurveType crv() const;
    [[nodiscard]] const std::string& x() const { return number(ECParameter::x); }
    [[nodiscard]] const std::string& y() const { return number(ECParameter::y); }

    /// A coordinate that is not of 32 or 66 bytes loses its first byte: senders are known that put a
    /// sign byte in front. The rule costs well-formed P-384 keys a byte; nothing here uses that
    /// curve through a JWK. A platform key is made once.
    /// @throws JOSEError xNotBase64URLUIntEncoded, yNotBase64URLUIntEncoded, or what the target's
    ///         `representing` throws.
    template <ExpressibleAsECPublicKeyComponents Key>
    [[nodiscard]] Key converted() const {
        const auto make = [this] { return representing(std::type_identity<Key>{}, components()); };
        if constexpr (std::same_as<Key, SecKey>)
            return kept_.get(make);
        else
            return make();
    }

private:
    friend JWKOf<ECPublicKey>;

    explicit ECPublicKey(const JSONField& object);
    ECPublicKey(const ECPublicKeyComponents& components, const StringMap& additionalParameters);

    [[nodiscard]] ECPublicKeyComponents components() const;
    void keep(const SecKey& key);

    KeptSecKey kept_;
};

} // namespace korvane
