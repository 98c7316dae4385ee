#pragma once

#include "Crypt/JWK.h"
#include "Platform/Security/Secret.h"

#include <concepts>
#include <type_traits>

namespace korvane {

/// The key itself.
using SymmetricKeyComponents = SecretBytes;

[[nodiscard]] inline SecretBytes representing(std::type_identity<SecretBytes>,
                                              const SymmetricKeyComponents& components) {
    return components;
}

[[nodiscard]] inline SymmetricKeyComponents symmetricKeyComponents(ByteView key) {
    return toSecretBytes(key);
}

/// What can be made of a shared key and be taken apart into one: bytes.
template <class Key>
concept ExpressibleAsSymmetricKeyComponents = requires(const Key& key,
                                                       const SymmetricKeyComponents& components) {
    { symmetricKeyComponents(key) } -> std::same_as<SymmetricKeyComponents>;
    { representing(std::type_identity<Key>{}, components) } -> std::same_as<Key>;
};

/// A symmetric key (RFC 7518 section 6.4). Unlike the other types it fails to decode where "key_ops" or "x5c"
/// is an array.
class SymmetricKey : public JWKOf<SymmetricKey> {
public:
    explicit SymmetricKey(ByteView key, const StringMap& additionalParameters = {});

    /// @throws JOSEError couldNotConstructJWK for a key that does not yield its bytes.
    template <ExpressibleAsSymmetricKeyComponents Key>
    requires(!std::convertible_to<const Key&, ByteView>) explicit SymmetricKey(
        const Key& key, const StringMap& additionalParameters = {})
        : SymmetricKey(ByteView(componentsFrom([&] { return symmetricKeyComponents(key); })),
                       additionalParameters) {}

    /// The Base64URL text of the key's bytes.
    [[nodiscard]] const std::string& key() const { return number(SymmetricKeyParameter::key); }

    /// @throws JOSEError symmetricKeyNotBase64URLEncoded, or what the target's `representing` throws.
    template <ExpressibleAsSymmetricKeyComponents Key>
    [[nodiscard]] Key converted() const {
        return representing(std::type_identity<Key>{}, components());
    }

private:
    friend JWKOf<SymmetricKey>;

    explicit SymmetricKey(const JSONField& object);

    [[nodiscard]] SymmetricKeyComponents components() const;
};

} // namespace korvane
