#include "Crypt/AESCBCEncryption.h"
#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Crypt/JWS.h"
#include "Sdk/Messages/UiUtils.h"
#include "tests/support/Failures.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using KM = KeyManagementAlgorithm;
using CE = ContentEncryptionAlgorithm;
using SA = SignatureAlgorithm;
using enum JOSEErrorCase;

constexpr CE kEnc = CE::A128CBCHS256;
constexpr CE kLongEnc = CE::A256CBCHS512;

std::string encoded(const std::string& header) {
    return base64URLEncodedString(asBytes(header));
}

const std::string kHeader = encoded(R"({"alg":"dir","enc":"A128CBC-HS256"})");

TEST(CompactReading, FaultsAreToldApartAndLogged) {
    const auto count = [](std::int64_t parts) {
        return JOSEError(invalidCompactSerializationComponentCount, parts);
    };
    const RecordingLogger log;
    EXPECT_RAISES(count(2), JWE("a.b"));
    EXPECT_RAISES(JOSEError(componentNotValidBase64URL, std::string("AAAAA")),
                  JWE(kHeader + "..AAAAA.A A.="));
    const std::string place = "Crypt/Deserializer.cpp deserialize(_:fromCompactSerialization:): ";
    EXPECT_THAT(log.lines(), testing::ElementsAre(place + "Invalid compact serialization component count: 2",
                                                  place + "Component not valid base64 URL: AAAAA"));
    EXPECT_RAISES(count(6), JWE("!.!.!.!.!.!")) << "the parts are counted first";
    EXPECT_RAISES(count(5000001), JWE(std::string(5000000, '.')));
    EXPECT_RAISES(count(5), JWS("a.b.c.d.e"));
    const Bytes noHeader = toBytes(R"({"alg":"dir"})");
    EXPECT_RAISES(JOSEError(componentCouldNotBeInitializedFromData, noHeader),
                  JWE(base64URLEncodedString(noHeader) + "...."));
    EXPECT_RAISES(wrongDataEncoding, JWE(Bytes{'.', 0xFF}));
}

TEST(CompactWriting, PartsComeBackAsTheyWere) {
    const std::string odd = encoded("{ \"enc\" :\t\"x\",\n\"x\":1.0e1, \"alg\":\"d\\u0069r\"}");
    EXPECT_EQ(JWE(odd + "....").header().algorithm(), KM::direct);
    for (const std::string& text : {kHeader + "..AAAA.BBBB.CCCC", odd + ".Zg.Zm8.Zm9v.", kHeader + "...."}) {
        EXPECT_EQ(JWE(text).compactSerializedString(), text);
        EXPECT_EQ(asText(JWE(asBytes(text)).compactSerializedData()), text);
    }
    EXPECT_EQ(JWS(odd + "..Zg").compactSerializedString(), odd + "..Zg");
}

TEST(CompactReading, ARememberedHeaderStandsForItsOwnTextAlone) {
    const auto headerOf = [](const std::string& text) { return JWE(text + "....").header(); };
    JWEHeader changed = headerOf(kHeader);
    changed.setKid("other");
    EXPECT_FALSE(headerOf(kHeader).kid()) << "a change is its own header's";
    EXPECT_EQ(headerOf(base64URLEncodedString(changed.data())).kid(), "other");
    EXPECT_EQ(headerOf(kHeader + "="), headerOf(kHeader)) << "another text of the same bytes";
    EXPECT_EQ(JWS(kHeader + "..").header().data(), headerOf(kHeader).data());
    EXPECT_RAISES(JOSEError(componentNotValidBase64URL, std::string("A")), JWE(kHeader + "..A.."));
}

TEST(HeaderReading, OnlyObjectsWithTheirRequiredTextsAreHeaders) {
    const std::tuple<const char*, bool, bool> rows[] = {
        {R"({"alg":"unknown","enc":"unknown"})", true, true},
        {R"({"alg":"dir","enc":null})", false, true},
        {R"({"alg":1,"enc":"A128CBC-HS256"})", false, false},
        {R"(["alg"])", false, false},
        {"", false, false},
        {"{\"alg\":\"\xFF\"}", false, false},
    };
    for (const auto& [json, isJWE, isJWS] : rows) {
        EXPECT_EQ(JWEHeader::make(toBytes(json)).has_value(), isJWE) << json;
        EXPECT_EQ(JWSHeader::make(toBytes(json)).has_value(), isJWS) << json;
    }
    using enum HeaderParsingErrorCase;
    EXPECT_RAISES(HeaderParsingError(requiredHeaderParameterMissing, std::string("enc")),
                  JWEHeader(JSON{{"alg", "dir"}}));
    EXPECT_RAISES(headerIsNotValidJSONObject, JWEHeader(JSON::array()));
    EXPECT_RAISES(headerIsNotValidJSONObject, JWSHeader(JSON{{"x", "\xFF"}}));
    Bytes data = toBytes(R"({"alg":"dir","enc":"A128CBC-HS256"})");
    data.resize(65536, ' ');
    EXPECT_TRUE(JWEHeader::make(Bytes(data)));
    data.push_back(' ');
    EXPECT_FALSE(JWEHeader::make(Bytes(data)) || JWSHeader::make(Bytes(data))) << "more than 64 KiB";
}

/// The words of a failure that stands in another one's description.
std::string wrapped(const std::string& error) {
    return "The operation couldn\u2019t be completed. (Korvane." + error + ".)";
}

enum class Side { sender, receiver };

AnyKey keyOf(Side side, KM algorithm, CE encryption) {
    static const SecKey rsa = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeRSA, 2048);
    static const SecKey rsaPublic = SecKeyCopyPublicKey(rsa);
    static const ECPrivateKey ec = ECPrivateKey::generateWith(ECCurveType::P256);
    static const ECPublicKey ecPublic = ec.getPublic();
    static const Bytes octets(64, 0x42);
    switch (family(algorithm)) {
    case KeyManagementFamily::RSA: return side == Side::sender ? rsaPublic : rsa;
    case KeyManagementFamily::EC: return side == Side::sender ? AnyKey(ecPublic) : AnyKey(ec);
    default: return ByteView(octets).first(keyBitSize(algorithm).value_or(keyBitSize(encryption)) / 8);
    }
}

Encrypter encrypter(KM algorithm = KM::direct, CE encryption = kEnc) {
    return Encrypter::make(algorithm, encryption, keyOf(Side::sender, algorithm, encryption)).value();
}

Decrypter decrypter(KM algorithm = KM::direct, CE encryption = kEnc) {
    return Decrypter::make(algorithm, encryption, keyOf(Side::receiver, algorithm, encryption)).value();
}

JWE sealed(KM algorithm = KM::direct, CE encryption = kEnc, const char* zip = "NONE") {
    JWEHeader header(algorithm, encryption);
    header.setZip(zip);
    return {header, Payload(toBytes("text")), encrypter(algorithm, encryption)};
}

TEST(JWESealing, IsUndoneByOpeningTheWholeInEveryRow) {
    for (const auto& [algorithm, name] : EnumTable<KM>::rows)
        for (const auto& [enc, zip] : {std::pair(kEnc, "NONE"), {kLongEnc, "DEF"}}) {
            const JWE jwe = sealed(algorithm, enc, zip);
            const std::string compact = jwe.compactSerializedString();
            SCOPED_TRACE(name);
            EXPECT_TRUE(validateJWE(compact));
            EXPECT_NE(sealed(algorithm, enc, zip).initializationVector(), jwe.initializationVector());
            const JWE received(compact);
            const Decrypter opening = decrypter(algorithm, enc);
            EXPECT_EQ(asText(received.decrypt(opening).data()), "text");
            EXPECT_EQ(asText(JWE(received).decrypt(opening).data()), "text") << "where it stands";
            EXPECT_EQ(asText(received.decrypt(keyOf(Side::receiver, algorithm, enc)).data()), "text");
            for (std::size_t length = 0; length < compact.size(); length += 3)
                EXPECT_THROW(static_cast<void>(JWE(compact.substr(0, length)).decrypt(opening)), JOSEError);
        }
}

TEST(JWESealing, FailuresSayWhatHappened) {
    const auto seal = [](KM algorithm, CE enc, const Bytes& payload, const char* zip = "NONE") {
        JWEHeader header(algorithm, enc);
        header.setZip(zip);
        return JWE(header, Payload(payload), Encrypter::make(KM::direct, kEnc, Bytes(32)).value());
    };
    const Bytes text(1);
    EXPECT_RAISES_SAYING(encryptingFailed, "Encryption failed with status: -4300.",
                         seal(KM::direct, kEnc, {}));
    EXPECT_RAISES_SAYING(encryptingFailed, wrapped("JWEError error 0"), seal(KM::A128KW, kEnc, text));
    EXPECT_RAISES_SAYING(encryptingFailed, wrapped("JWEError error 1"), seal(KM::direct, kLongEnc, text));
    EXPECT_RAISES(compressionAlgorithmNotSupported, seal(KM::direct, kEnc, text, "GZ"));
    JWEHeader unwritten(KM::ECDH_ES, kEnc);
    unwritten.setKid("\xFF"); // which leaves the header's bytes as they were
    EXPECT_RAISES(encryptingFailed, JWE(unwritten, Payload(text), encrypter(KM::ECDH_ES)));
}

TEST(JWEOpening, FailuresSayWhatHappened) {
    const std::string mismatch = "JWE header algorithms do not match encrypter algorithms.";
    const JWE jwe = sealed();
    EXPECT_RAISES_SAYING(decryptingFailed, mismatch, jwe.decrypt(decrypter(KM::RSAOAEP256)));
    EXPECT_RAISES_SAYING(decryptingFailed, mismatch, jwe.decrypt(decrypter(KM::direct, kLongEnc)));
    EXPECT_RAISES_SAYING(decryptingFailed, "Wrong key type.",
                         jwe.decrypt(keyOf(Side::receiver, KM::RSAOAEP, kEnc)));
    EXPECT_RAISES_SAYING(decryptingFailed, wrapped("JWEError error 3"), jwe.decrypt(AnyKey(Bytes(32, 1))));
    std::string keyed = jwe.compactSerializedString();
    EXPECT_RAISES(decryptingFailed, JWE(keyed.insert(keyed.find('.') + 1, "AAAA")).decrypt(decrypter()))
        << "a direct key is not sent along";
    const std::string rest = "..AAAA.AAAA.AAAA";
    const std::string odd = encoded(R"({"alg":"dir","enc":"A128CBC-HS256","zip":"LZ"})");
    EXPECT_RAISES_SAYING(decryptingFailed, "Invalid header parameter.",
                         JWE(encoded(R"({"alg":"dir","enc":"A128GCM"})") + rest).decrypt(AnyKey(Bytes(32))));
    EXPECT_RAISES(compressionAlgorithmNotSupported, JWE(odd + rest).decrypt(decrypter()));
    // Sealed properly, but what is inside is no DEFLATE stream.
    const Bytes header = toBytes(R"({"alg":"dir","enc":"A128CBC-HS256","zip":"DEF"})");
    const ContentEncryptionContext parts =
        AESCBCEncryption(kEnc, SecretBytes(32, 0x42)).encrypt(header, Payload(toBytes("not deflated")));
    EXPECT_RAISES(
        decompressionFailed,
        JWE(joinedBase64URL(std::array<DataConvertible, 5>{header, ByteView(), parts.initializationVector,
                                                           parts.ciphertext, parts.authenticationTag}))
            .decrypt(decrypter()));
}

// RFC 7516 section 11.5.
TEST(JWEOpening, RSAFailuresCannotBeToldFromABadTag) {
    const auto seen = JOSEError(decryptingFailed, Description{wrapped("JWEError error 3")});
    for (const KM algorithm : {KM::RSA1_5, KM::RSAOAEP, KM::RSAOAEP256}) {
        std::string badTag = sealed(algorithm).compactSerializedString();
        std::string badKey = badTag;
        for (std::string* message : {&badKey, &badTag}) {
            char& changed = (*message)[message == &badKey ? message->find('.') + 9 : message->rfind('.') + 9];
            changed = changed == 'A' ? 'B' : 'A';
            EXPECT_RAISES(seen, JWE(*message).decrypt(decrypter(algorithm))) << rawValue(algorithm);
        }
    }
}

const SecKey& privateKey(SA algorithm) {
    static const SecKey keys[] = {SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 256),
                                  SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 384),
                                  SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 521),
                                  SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeRSA, 2048)};
    const auto curve = curveType(algorithm);
    return keys[curve ? static_cast<std::size_t>(*curve) : 3];
}

SecKey publicKey(SA algorithm) {
    return SecKeyCopyPublicKey(privateKey(algorithm));
}

JWS signedWith(SA header, const SecKey& key, SA algorithm) {
    return {JWSHeader(header), Payload(toBytes("text")), Signer::make(algorithm, key).value()};
}

JWS signedWith(SA algorithm) {
    return signedWith(algorithm, privateKey(algorithm), algorithm);
}

/// The message with another payload, and with another signature where one is given.
JWS forged(const JWS& jws, const std::optional<Bytes>& signature = {}) {
    const Bytes other = toBytes("other");
    return JWS(joinedBase64URL(
        std::array<DataConvertible, 3>{jws.header(), other, signature ? *signature : jws.signature()}));
}

TEST(JWSValidation, EveryRowTakesItsSignatureAndNoOtherMessage) {
    for (const SA algorithm : {SA::RS256, SA::RS384, SA::RS512, SA::PS256, SA::PS384, SA::PS512, SA::ES256,
                               SA::ES384, SA::ES512}) {
        SCOPED_TRACE(rawValue(algorithm));
        const JWS jws(signedWith(algorithm).compactSerializedString());
        EXPECT_TRUE(jws.isValid(Verifier::make(algorithm, publicKey(algorithm)).value()));
        EXPECT_EQ(asText(jws.validate(publicKey(algorithm)).payload().data()), "text");
        EXPECT_RAISES(signatureInvalid, forged(jws).validate(publicKey(algorithm)));
    }
}

TEST(JWSValidation, FailuresSayWhatHappened) {
    const JWS ps256 = signedWith(SA::PS256);
    const std::string mismatch = "JWS header algorithm does not match verifier algorithm.";
    const Verifier rs256 = Verifier::make(SA::RS256, publicKey(SA::RS256)).value();
    const JWS none(encoded(R"({"alg":"none"})") + ".eA.");
    EXPECT_RAISES_SAYING(verifyingFailed, mismatch, ps256.validate(rs256));
    EXPECT_RAISES_SAYING(verifyingFailed, mismatch, none.validate(publicKey(SA::ES256)));
    EXPECT_RAISES_SAYING(verifyingFailed, "Wrong key type.", ps256.validate(AnyKey(Bytes(32))));
    EXPECT_RAISES_SAYING(verifyingFailed, wrapped("RSAError error 4"), ps256.validate(publicKey(SA::ES256)));
    EXPECT_RAISES_SAYING(verifyingFailed, "Signature is 65 bytes long instead of the expected 64.",
                         forged(signedWith(SA::ES256), Bytes(65)).validate(publicKey(SA::ES256)));
    EXPECT_RAISES(signatureInvalid, forged(signedWith(SA::RS256), Bytes()).validate(rs256));
}

} // namespace
} // namespace korvane
