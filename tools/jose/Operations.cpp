#include "tools/jose/Operations.h"

#include "Crypt/ConcatKDF.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Crypt/JWS.h"
#include "Crypt/RSA.h"
#include "tools/jose/Keys.h"

namespace korvane::jose {

using namespace input;

namespace {

using enum InputErrorCase;

/// The most bits that the Concat KDF is asked for.
constexpr std::size_t kLargestKeyDataLen = 65536;

/// A protected header: the members that the operation fixes, and those of "header" behind them.
JSON protectedHeader(JSON::object_t members, const Arguments& arguments) {
    const JSON* further = arguments.valueIfPresent("header");
    if (!further) return JSON(std::move(members));
    for (const auto& [name, value] : further->items())
        if (members.count(name) > 0)
            throw memberError(unknownMember, "header." + name,
                              "is a member of the line, not of its \"header\".");
    for (const auto& [name, value] : further->items())
        members.emplace_back(name, value);
    return JSON(std::move(members));
}

/// An ES algorithm goes with one curve (RFC 7518 section 3.4).
void requireCurve(SignatureAlgorithm algorithm, const SecKey& key) {
    const auto curve = curveType(algorithm);
    const SecKeyAttributes attributes = SecKeyCopyAttributes(key);
    if (!curve || attributes.kSecAttrKeyType != SecKeyType::kSecAttrKeyTypeEC) return;
    if (attributes.kSecAttrKeySizeInBits != keyBitLength(*curve))
        throw memberError(wrongKey, "key",
                          "is not on " + std::string(rawValue(*curve)) + ", the curve of \"alg\".");
}

} // namespace

JSON encryptJWE(const Arguments& arguments) {
    const auto algorithm = arguments.algorithm("alg", fromRawValue<KeyManagementAlgorithm>);
    const auto encryption = arguments.algorithm("enc", fromRawValue<ContentEncryptionAlgorithm>);
    const Key key = sealingKey(arguments.value("key"), "key");
    const auto encrypter = Encrypter::make(algorithm, encryption, asAnyKey(key));
    if (!encrypter) throw memberError(wrongKey, "key", "is of a type that \"alg\" cannot use.");
    JSON header = protectedHeader({{"alg", rawValue(algorithm)}, {"enc", rawValue(encryption)}}, arguments);
    const JWE jwe(JWEHeader(std::move(header)), Payload(arguments.bytes("payload")), *encrypter);
    return {{"jwe", jwe.compactSerializedString()}};
}

JSON decryptJWE(const Arguments& arguments) {
    const JWE jwe(arguments.text("jwe"));
    const Key key = openingKey(arguments.value("key"), "key");
    const Payload payload = jwe.decrypt(asAnyKey(key));
    return {{"payload", base64URLEncodedString(payload.data())}, {"header", jwe.header().parameters()}};
}

JSON signJWS(const Arguments& arguments) {
    const auto algorithm = arguments.algorithm("alg", fromRawValue<SignatureAlgorithm>);
    const SecKey key = signingKey(arguments.value("key"), "key");
    requireCurve(algorithm, key);
    const auto signer = Signer::make(algorithm, key);
    JSON header = protectedHeader({{"alg", rawValue(algorithm)}}, arguments);
    const JWS jws(JWSHeader(std::move(header)), Payload(arguments.bytes("payload")), *signer);
    return {{"jws", jws.compactSerializedString()}};
}

JSON verifyJWS(const Arguments& arguments) {
    const JWS jws(arguments.text("jws"));
    const SecKey key = verifyingKey(arguments.value("key"), "key");
    const Payload& payload = jws.validate(AnyKey(key)).payload();
    return {{"payload", base64URLEncodedString(payload.data())}, {"header", jws.header().parameters()}};
}

JSON verifySignature(const Arguments& arguments) {
    const auto algorithm = arguments.algorithm("alg", fromRawValue<SignatureAlgorithm>);
    const SecKey key = verifyingKey(arguments.value("key"), "key");
    requireCurve(algorithm, key);
    const auto verify = curveType(algorithm) ? EC::verify : RSA::verify;
    return {{"valid", verify(arguments.bytes("input"), arguments.bytes("signature"), key, algorithm)}};
}

JSON thumbprintJWK(const Arguments& arguments) {
    return {{"thumbprint", thumbprint(arguments.value("key"), "key")}};
}

JSON deriveECDH(const Arguments& arguments) {
    const ECPrivateKey privateKey = agreementPrivateKey(arguments.value("private"), "private");
    const ECPublicKey publicKey = agreementPublicKey(arguments.value("public"), "public");
    return {{"z", base64URLEncodedString(ecdhDeriveBits(privateKey, publicKey))}};
}

JSON deriveConcatKDF(const Arguments& arguments) {
    const SecretBytes key = concatKDF(
        Hash::SHA256, arguments.secret("z"), arguments.count("keyDataLen", kLargestKeyDataLen),
        arguments.bytes("algorithmID"), arguments.bytes("partyUInfo"), arguments.bytes("partyVInfo"),
        arguments.bytes("suppPubInfo"), arguments.secret("suppPrivInfo"));
    return {{"key", base64URLEncodedString(key)}};
}

} // namespace korvane::jose
