#pragma once

#include "Crypt/JWK.h"
#include "Crypt/SecKeyRSAPublicKey.h"

namespace korvane {

/// A symmetric key (RFC 7518 section 6.4).
class SymmetricKey : public JWK {
public:
    explicit SymmetricKey(ByteView key, const StringMap& additionalParameters = {});

    /// @throws JOSEError couldNotConstructJWK for a key that does not yield its bytes.
    template <ExpressibleAsSymmetricKeyComponents Key>
    requires(!std::convertible_to<const Key&, ByteView>) explicit SymmetricKey(
        const Key& key, const StringMap& additionalParameters = {})
        : SymmetricKey(ByteView(componentsFrom([&] { return symmetricKeyComponents(key); })),
                       additionalParameters) {}

    /// Decodes JSON. Unlike the other types, this one fails on a "key_ops" or "x5c" array.
    /// @throws DecodingError; JOSEError symmetricKeyNotBase64URLEncoded
    [[nodiscard]] static SymmetricKey make(ByteView data);
    [[nodiscard]] static SymmetricKey decode(const JSON& object) { return SymmetricKey(JSONField(object)); }

    /// The Base64URL text of the key's bytes.
    [[nodiscard]] const std::string& key() const { return number(SymmetricKeyParameter::key); }

    /// @throws JOSEError symmetricKeyNotBase64URLEncoded, or what the target's `representing` throws.
    template <ExpressibleAsSymmetricKeyComponents Key>
    [[nodiscard]] Key converted() const {
        return representing(std::type_identity<Key>{}, components());
    }

    /// The same key with its thumbprint as "kid".
    [[nodiscard]] SymmetricKey
    withThumbprintAsKeyId(JWKThumbprintAlgorithm algorithm = JWKThumbprintAlgorithm::SHA256) const;

private:
    explicit SymmetricKey(const JSONField& object);

    [[nodiscard]] SymmetricKeyComponents components() const;
};

} // namespace korvane
