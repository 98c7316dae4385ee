#include "Platform/Security/SecKey.h"

#include "Platform/Security/SecKeyMaterial.h"

#include <openssl/ec.h>
#include <openssl/rsa.h>

#include <array>

namespace korvane {

namespace {

using namespace openssl;

constexpr std::array<SecCurve, 3> kCurves{
    {{256, 32, "prime256v1"}, {384, 48, "secp384r1"}, {521, 66, "secp521r1"}}};

/// OpenSSL refuses operations on longer moduli; so a longer key is refused at once.
constexpr int kMaxModulusBits = 16384;

const SecCurve* curveOf(const EVP_PKEY* key) {
    std::array<char, 64> name{};
    if (EVP_PKEY_get_group_name(key, name.data(), name.size(), nullptr) != 1) return nullptr;
    for (const SecCurve& curve : kCurves)
        if (std::string_view(name.data()) == curve.groupName) return &curve;
    return nullptr;
}

Key keyFromParameters(const char* type, int selection, OSSL_PARAM* parameters) {
    const KeyContext context(EVP_PKEY_CTX_new_from_name(nullptr, type, nullptr));
    EVP_PKEY* key = nullptr;
    if (!context || EVP_PKEY_fromdata_init(context.get()) != 1 ||
        EVP_PKEY_fromdata(context.get(), &key, selection, parameters) != 1)
        throw platformError(CFError::errSecDecode, "The numbers make no key.");
    return Key(key);
}

/// A key that holds a curve and nothing else: copying it is three times as fast as naming the curve anew.
const EVP_PKEY* curveTemplate(const SecCurve& curve) {
    static const std::array<Key, kCurves.size()> templates = [] {
        std::array<Key, kCurves.size()> made;
        for (std::size_t index = 0; index < kCurves.size(); ++index) {
            std::array<OSSL_PARAM, 2> parameters{
                OSSL_PARAM_construct_utf8_string(OSSL_PKEY_PARAM_GROUP_NAME,
                                                 const_cast<char*>(kCurves[index].groupName), 0),
                OSSL_PARAM_construct_end()};
            made[index] = keyFromParameters("EC", EVP_PKEY_KEY_PARAMETERS, parameters.data());
        }
        return made;
    }();
    return templates[static_cast<std::size_t>(&curve - kCurves.data())].get();
}

/// A context that is ready to generate keys of a curve, one per thread; null where OpenSSL gives none.
EVP_PKEY_CTX* generator(const SecCurve& curve) {
    thread_local std::array<KeyContext, kCurves.size()> contexts;
    KeyContext& context = contexts[static_cast<std::size_t>(&curve - kCurves.data())];
    if (!context) {
        KeyContext made(
            EVP_PKEY_CTX_new_from_pkey(nullptr, const_cast<EVP_PKEY*>(curveTemplate(curve)), nullptr));
        if (made && EVP_PKEY_keygen_init(made.get()) == 1) context = std::move(made);
    }
    return context.get();
}

Key ecPublicKey(const SecCurve& curve, ByteView point) {
    Key key(EVP_PKEY_dup(const_cast<EVP_PKEY*>(curveTemplate(curve))));
    if (!key || EVP_PKEY_set1_encoded_public_key(key.get(), point.data(), point.size()) != 1)
        throw platformError(CFError::errSecDecode, "The point is not on the curve.");
    return key;
}

Key ecPrivateKey(const SecCurve& curve, ByteView point, ByteView number) {
    const Number secret(BN_bin2bn(number.data(), static_cast<int>(number.size()), BN_secure_new()));
    const ParameterBuilder builder(OSSL_PARAM_BLD_new());
    if (!secret || !builder ||
        OSSL_PARAM_BLD_push_utf8_string(builder.get(), OSSL_PKEY_PARAM_GROUP_NAME, curve.groupName, 0) != 1 ||
        OSSL_PARAM_BLD_push_octet_string(builder.get(), OSSL_PKEY_PARAM_PUB_KEY, point.data(),
                                         point.size()) != 1 ||
        OSSL_PARAM_BLD_push_BN(builder.get(), OSSL_PKEY_PARAM_PRIV_KEY, secret.get()) != 1)
        throw std::bad_alloc();
    const Parameters parameters(OSSL_PARAM_BLD_to_param(builder.get()));
    Key key = keyFromParameters("EC", EVP_PKEY_KEYPAIR, parameters.get());
    const KeyContext check(EVP_PKEY_CTX_new_from_pkey(nullptr, key.get(), nullptr));
    if (!check || EVP_PKEY_private_check(check.get()) != 1)
        throw platformError(CFError::errSecDecode, "The private number is out of range.");
    return key;
}

Key rsaKey(ByteView data, SecKeyClass keyClass) {
    const unsigned char* position = data.data();
    const auto length = static_cast<long>(data.size());
    Key key(keyClass == SecKeyClass::kSecAttrKeyClassPublic
                ? d2i_PublicKey(EVP_PKEY_RSA, nullptr, &position, length)
                : d2i_PrivateKey(EVP_PKEY_RSA, nullptr, &position, length));
    if (!key || position != data.data() + data.size())
        throw platformError(CFError::errSecDecode, "The bytes are not a PKCS#1 key.");
    return key;
}

SecKey adoptRsaKey(Key key, SecKeyClass keyClass) {
    const int bits = key ? EVP_PKEY_get_bits(key.get()) : 0;
    if (bits < 1 || bits > kMaxModulusBits)
        throw CFError(CFError::errSecParam, "The modulus has a length that is not supported.");
    if (!hasUsableExponent(key.get()))
        throw CFError(CFError::errSecParam, "The public exponent is even or below 3.");
    const SecKeyAttributes attributes{SecKeyType::kSecAttrKeyTypeRSA, keyClass,
                                      static_cast<std::size_t>(bits)};
    return SecKey(std::make_shared<SecKey::Material>(std::move(key), attributes, nullptr));
}

SecKey adoptEcKey(Key key, SecKeyClass keyClass, const SecCurve& curve) {
    const SecKeyAttributes attributes{SecKeyType::kSecAttrKeyTypeEC, keyClass, curve.bits};
    return SecKey(std::make_shared<SecKey::Material>(std::move(key), attributes, &curve));
}

SecKey ecKey(ByteView data, const SecKeyAttributes& attributes) {
    const SecCurve* curve = secCurve(attributes.kSecAttrKeySizeInBits);
    const bool isPrivate = attributes.kSecAttrKeyClass == SecKeyClass::kSecAttrKeyClassPrivate;
    const std::size_t numbers = isPrivate ? 3 : 2;
    if (!curve || data.size() != 1 + numbers * curve->coordinateLength ||
        data[0] != POINT_CONVERSION_UNCOMPRESSED)
        throw CFError(CFError::errSecParam, "The bytes are not an uncompressed point of the curve.");
    const std::size_t pointLength = 1 + 2 * curve->coordinateLength;
    Key key = isPrivate ? ecPrivateKey(*curve, data.first(pointLength), data.subspan(pointLength))
                        : ecPublicKey(*curve, data);
    return adoptEcKey(std::move(key), attributes.kSecAttrKeyClass, *curve);
}

SecretBytes ecRepresentation(const SecKey::Material& material) {
    const std::size_t coordinate = material.curve->coordinateLength;
    const bool isPrivate = material.attributes.kSecAttrKeyClass == SecKeyClass::kSecAttrKeyClassPrivate;
    SecretBytes result(1 + (isPrivate ? 3 : 2) * coordinate);
    std::size_t length = 0;
    if (EVP_PKEY_get_octet_string_param(material.key.get(), OSSL_PKEY_PARAM_PUB_KEY, result.data(),
                                        1 + 2 * coordinate, &length) != 1 ||
        length != 1 + 2 * coordinate)
        throw platformError(CFError::errSecInternal, "The point cannot be read.");
    if (!isPrivate) return result;
    BIGNUM* secret = nullptr;
    EVP_PKEY_get_bn_param(material.key.get(), OSSL_PKEY_PARAM_PRIV_KEY, &secret);
    const Number number(secret);
    if (!number || BN_bn2binpad(number.get(), result.data() + length, static_cast<int>(coordinate)) < 0)
        throw platformError(CFError::errSecInternal, "The private number cannot be read.");
    return result;
}

SecretBytes rsaRepresentation(const SecKey::Material& material) {
    const bool isPrivate = material.attributes.kSecAttrKeyClass == SecKeyClass::kSecAttrKeyClassPrivate;
    const auto encode = isPrivate ? i2d_PrivateKey : i2d_PublicKey;
    unsigned char* encoded = nullptr;
    const int length = encode(material.key.get(), &encoded);
    if (length <= 0) throw platformError(CFError::errSecInternal, "The key has no PKCS#1 form.");
    SecretBytes result(encoded, encoded + length);
    OPENSSL_clear_free(encoded, static_cast<std::size_t>(length));
    return result;
}

} // namespace

const SecCurve* secCurve(std::size_t bits) {
    for (const SecCurve& curve : kCurves)
        if (curve.bits == bits) return &curve;
    return nullptr;
}

bool hasUsableExponent(const EVP_PKEY* key) {
    BIGNUM* exponent = nullptr;
    EVP_PKEY_get_bn_param(key, OSSL_PKEY_PARAM_RSA_E, &exponent);
    const Number number(exponent);
    return number && BN_is_odd(number.get()) == 1 && BN_is_one(number.get()) == 0;
}

CFError platformError(int code, const std::string& what) {
    const std::string reason = ErrorScope::reason();
    return {code, reason.empty() ? what : what + " (" + reason + ")"};
}

SecKey adoptParsedKey(Key key, SecKeyClass keyClass) {
    if (EVP_PKEY_is_a(key.get(), "RSA") == 1) return adoptRsaKey(std::move(key), keyClass);
    const SecCurve* curve = EVP_PKEY_is_a(key.get(), "EC") == 1 ? curveOf(key.get()) : nullptr;
    if (!curve) throw CFError(CFError::errSecParam, "The key is neither RSA nor on a known curve.");
    int isSpeltOut = 0;
    EVP_PKEY_get_int_param(key.get(), OSSL_PKEY_PARAM_EC_DECODED_FROM_EXPLICIT_PARAMS, &isSpeltOut);
    if (isSpeltOut != 0)
        throw CFError(CFError::errSecParam, "The key does not name its curve (RFC 5480 section 2.1.1).");
    EVP_PKEY_set_utf8_string_param(key.get(), OSSL_PKEY_PARAM_EC_POINT_CONVERSION_FORMAT, "uncompressed");
    return adoptEcKey(std::move(key), keyClass, *curve);
}

SecKey SecKeyCreateWithData(ByteView data, const SecKeyAttributes& attributes) {
    const ErrorScope errors;
    if (attributes.kSecAttrKeyType == SecKeyType::kSecAttrKeyTypeEC) return ecKey(data, attributes);
    return adoptRsaKey(rsaKey(data, attributes.kSecAttrKeyClass), attributes.kSecAttrKeyClass);
}

SecKey SecKeyCreateWithRSAPrivateNumbers(ByteView modulus, ByteView exponent, ByteView privateExponent) {
    const ErrorScope errors;
    const ParameterBuilder builder(OSSL_PARAM_BLD_new());
    std::array<Number, 3> numbers;
    const std::array<std::pair<const char*, ByteView>, 3> values{{{OSSL_PKEY_PARAM_RSA_N, modulus},
                                                                  {OSSL_PKEY_PARAM_RSA_E, exponent},
                                                                  {OSSL_PKEY_PARAM_RSA_D, privateExponent}}};
    for (std::size_t index = 0; index < values.size(); ++index) {
        const auto& [name, value] = values[index];
        numbers[index].reset(BN_bin2bn(value.data(), static_cast<int>(value.size()), BN_secure_new()));
        if (!numbers[index] || OSSL_PARAM_BLD_push_BN(builder.get(), name, numbers[index].get()) != 1)
            throw platformError(CFError::errSecParam, "A number of the key cannot be read.");
    }
    const Parameters parameters(OSSL_PARAM_BLD_to_param(builder.get()));
    return adoptRsaKey(keyFromParameters("RSA", EVP_PKEY_KEYPAIR, parameters.get()),
                       SecKeyClass::kSecAttrKeyClassPrivate);
}

SecKey SecKeyCreateRandomKey(SecKeyType type, std::size_t sizeInBits) {
    const ErrorScope errors;
    if (type == SecKeyType::kSecAttrKeyTypeRSA)
        return adoptRsaKey(Key(EVP_RSA_gen(sizeInBits)), SecKeyClass::kSecAttrKeyClassPrivate);
    const SecCurve* curve = secCurve(sizeInBits);
    if (!curve) throw CFError(CFError::errSecParam, "There is no curve of this size.");
    EVP_PKEY_CTX* context = generator(*curve);
    EVP_PKEY* key = nullptr;
    if (!context || EVP_PKEY_generate(context, &key) != 1)
        throw platformError(CFError::errSecInternal, "No key could be generated.");
    return adoptEcKey(Key(key), SecKeyClass::kSecAttrKeyClassPrivate, *curve);
}

SecKey SecKeyCopyPublicKey(const SecKey& key) {
    const SecKey::Material& material = key.material();
    if (material.attributes.kSecAttrKeyClass == SecKeyClass::kSecAttrKeyClassPublic) return key;
    SecKeyAttributes attributes = material.attributes;
    attributes.kSecAttrKeyClass = SecKeyClass::kSecAttrKeyClassPublic;
    EVP_PKEY_up_ref(material.key.get());
    return SecKey(std::make_shared<SecKey::Material>(Key(material.key.get()), attributes, material.curve));
}

SecKeyAttributes SecKeyCopyAttributes(const SecKey& key) {
    return key.material().attributes;
}

SecretBytes SecKeyCopyExternalRepresentation(const SecKey& key) {
    const ErrorScope errors;
    return key.material().curve ? ecRepresentation(key.material()) : rsaRepresentation(key.material());
}

std::size_t SecKeyGetBlockSize(const SecKey& key) {
    const SecKey::Material& material = key.material();
    return material.curve ? material.curve->coordinateLength
                          : (material.attributes.kSecAttrKeySizeInBits + 7) / 8;
}

} // namespace korvane
