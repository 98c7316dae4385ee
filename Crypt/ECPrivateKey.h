#pragma once

#include "Crypt/ECPublicKey.h"
#include "Crypt/JWK.h"
#include "Crypt/SecKeyECPrivateKey.h"

namespace korvane {

/// An EC private key with its public half (RFC 7518 section 6.2.2).
class ECPrivateKey : public JWKOf<ECPrivateKey> {
public:
    /// @param x, y, privateKey  Base64URL texts of big-endian numbers; they are not looked at.
    /// @throws JOSEError invalidCurvePointOctetLength for an unknown curve.
    ECPrivateKey(const std::string& crv, std::string x, std::string y, std::string privateKey,
                 const StringMap& additionalParameters = {});

    /// @throws JOSEError couldNotConstructJWK for a key that does not yield its numbers.
    template <ExpressibleAsECPrivateKeyComponents Key>
    explicit ECPrivateKey(const Key& privateKey, const StringMap& additionalParameters = {})
        : ECPrivateKey(componentsFrom([&] { return ecPrivateKeyComponents(privateKey); }),
                       additionalParameters) {
        if constexpr (std::same_as<Key, SecKey>) kept_.keep(privateKey);
    }

    /// A new key with a fresh UUID in upper case as "kid".
    /// @throws ECKeyPairError generateECKeyPairFail
    [[nodiscard]] static ECPrivateKey generateWith(ECCurveType curveType);

    /// A new key without further parameters.
    /// @throws ECKeyPairError generateECKeyPairFail
    [[nodiscard]] static ECPrivateKey generateWithoutParametersWith(ECCurveType curveType);

    [[nodiscard]] ECCurveType crv() const;
    [[nodiscard]] const std::string& x() const { return number(ECParameter::x); }
    [[nodiscard]] const std::string& y() const { return number(ECParameter::y); }
    [[nodiscard]] const std::string& privateKey() const { return number(ECParameter::privateKey); }

    /// A copy of the key.
    [[nodiscard]] ECPrivateKey getPrivate() const { return *this; }

    /// The public half, with this key's whole `parameters` as additional ones: its own `parameters` therefore
    /// hold "d". Its JSON does not, since that writes public members only; whoever copies `parameters`
    /// elsewhere must mind it.
    [[nodiscard]] ECPublicKey getPublic() const { return {crv(), x(), y(), parameters()}; }

    /// True when curve and coordinates are equal, the coordinates as texts.
    [[nodiscard]] bool isCorrespondWith(const ECPublicKey& publicKey) const;

    /// A platform key is made once.
    /// @throws JOSEError xNotBase64URLUIntEncoded, yNotBase64URLUIntEncoded,
    ///         privateKeyNotBase64URLUIntEncoded, or what the target's `representing` throws.
    template <ExpressibleAsECPrivateKeyComponents Key>
    [[nodiscard]] Key converted() const {
        const auto make = [this] { return representing(std::type_identity<Key>{}, components()); };
        if constexpr (std::same_as<Key, SecKey>)
            return kept_.get(make);
        else
            return make();
    }

private:
    friend JWKOf<ECPrivateKey>;

    explicit ECPrivateKey(const JSONField& object);
    ECPrivateKey(const ECPrivateKeyComponents& components, const StringMap& additionalParameters);

    [[nodiscard]] ECPrivateKeyComponents components() const;

    KeptSecKey kept_;
};

enum class ECKeyPairErrorCase { generateECKeyPairFail };

[[nodiscard]] constexpr std::string_view rawValue(ECKeyPairErrorCase value) {
    switch (value) {
    case ECKeyPairErrorCase::generateECKeyPairFail: return "generateECKeyPairFail";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<ECKeyPairErrorCase> {
    static constexpr std::string_view domain = "ECKeyPairError";
    using Value = FailureValue;
};

using ECKeyPairError = TypedFailure<ECKeyPairErrorCase>;

} // namespace korvane
