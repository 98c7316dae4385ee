// JWKs of the five types and JWK sets: decoding, thumbprints, JSON round trips, and the roads to platform
// keys and back.

#include "Crypt/ECPrivateKey.h"
#include "Crypt/ECPublicKey.h"
#include "Crypt/JOSEError.h"
#include "Crypt/JWKSet.h"
#include "Crypt/RSAPrivateKey.h"
#include "Crypt/RSAPublicKey.h"
#include "Crypt/SymmetricKey.h"
#include "fuzz/support/Fuzz.h"

namespace korvane::fuzzing {

namespace {

/// Converts to a foreign key and back: the second conversion must give the first one's bytes.
template <class Foreign, class Key>
void checkConversion(const Key& key) {
    const auto converted = attempt<JOSEError, JWKError>([&] { return key.template converted<Foreign>(); });
    if (!converted) return;
    const auto back = [&] {
        if constexpr (std::is_same_v<Key, SymmetricKey>)
            return Key(ByteView(*converted));
        else
            return Key(*converted);
    }();
    require(back.thumbprint().size() == 43, "A converted key has no thumbprint.");
    // The public form of P-384 loses its first bytes on the way back.
    if constexpr (std::is_same_v<Key, ECPublicKey>)
        if (back.crv() == ECCurveType::P384) return;
    const auto again = back.template converted<Foreign>();
    if constexpr (std::is_same_v<Foreign, SecKey>)
        require(SecKeyCopyExternalRepresentation(again) == SecKeyCopyExternalRepresentation(*converted),
                "A platform key differs from itself after a JWK.");
    else
        require(again == *converted, "The bytes of a key differ from themselves after a JWK.");
}

void checkConversions(const ECPrivateKey& key) {
    checkConversion<SecretBytes>(key);
    checkConversion<SecKey>(key);
    require(key.isCorrespondWith(key.getPublic()), "A key is not that of its public half.");
}

void checkConversions(const ECPublicKey& key) {
    checkConversion<Bytes>(key);
    checkConversion<SecKey>(key);
}

void checkConversions(const RSAPublicKey& key) {
    const auto der = attempt<JOSEError, JWKError>([&] { return key.converted<Bytes>(); });
    require(!der || rsaPublicKeyComponents(*der).modulus.size() <= der->size(),
            "A number is longer than its key.");
    checkConversion<SecKey>(key);
}

void checkConversions(const RSAPrivateKey&) {}

void checkConversions(const SymmetricKey& key) {
    checkConversion<SecretBytes>(key);
}

template <class Key>
void check(ByteView input) {
    const auto key = attempt<DecodingError, JOSEError>([&] { return Key::make(input); });
    if (!key) return;
    const auto json = key->jsonString();
    require(json.has_value(), "A key that was read cannot be written.");
    require(Key::make(asBytes(*json)) == *key, "A key differs from itself after writing and reading.");
    const Key named = key->withThumbprintAsKeyId();
    require(named["kid"] == key->thumbprint() && named.thumbprint() == key->thumbprint(),
            "A thumbprint depends on the key's name.");
    checkConversions(*key);
}

void checkSet(ByteView input) {
    const auto set = attempt<DecodingError>([&] { return JWKSet::make(input); });
    if (!set) return;
    const auto json = set->jsonString();
    require(json.has_value(), "A set that was read cannot be written.");
    const JWKSet again = JWKSet::make(asBytes(*json));
    require(again.size() == set->size(), "A set loses keys in writing and reading.");
    for (std::size_t index = 0; index < again.size(); ++index)
        require(again[index] == (*set)[index],
                "A key of a set differs from itself after writing and reading.");
}

} // namespace

void run(ByteView input) {
    check<ECPrivateKey>(input);
    check<ECPublicKey>(input);
    check<RSAPrivateKey>(input);
    check<RSAPublicKey>(input);
    check<SymmetricKey>(input);
    checkSet(input);
}

} // namespace korvane::fuzzing
