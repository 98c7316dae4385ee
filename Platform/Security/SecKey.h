#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/CFError.h"
#include "Platform/Security/Secret.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace korvane {

enum class SecKeyType { kSecAttrKeyTypeRSA, kSecAttrKeyTypeEC };

enum class SecKeyClass { kSecAttrKeyClassPublic, kSecAttrKeyClassPrivate };

/// What is said of a key: its size is the modulus length (RSA) or the field size (EC: 256,
/// 384 or 521), in bits.
struct SecKeyAttributes {
    SecKeyType kSecAttrKeyType;
    SecKeyClass kSecAttrKeyClass;
    std::size_t kSecAttrKeySizeInBits;

    friend bool operator==(const SecKeyAttributes&, const SecKeyAttributes&) = default;
};

enum class SecKeyOperationType {
    kSecKeyOperationTypeSign,
    kSecKeyOperationTypeVerify,
    kSecKeyOperationTypeEncrypt,
    kSecKeyOperationTypeDecrypt,
    kSecKeyOperationTypeKeyExchange
};

enum class SecKeyAlgorithm {
    kSecKeyAlgorithmRSAEncryptionPKCS1,
    kSecKeyAlgorithmRSAEncryptionOAEPSHA1,
    kSecKeyAlgorithmRSAEncryptionOAEPSHA256,
    kSecKeyAlgorithmRSASignatureMessagePKCS1v15SHA256,
    kSecKeyAlgorithmRSASignatureMessagePKCS1v15SHA384,
    kSecKeyAlgorithmRSASignatureMessagePKCS1v15SHA512,
    kSecKeyAlgorithmRSASignatureMessagePSSSHA256,
    kSecKeyAlgorithmRSASignatureMessagePSSSHA384,
    kSecKeyAlgorithmRSASignatureMessagePSSSHA512,
    kSecKeyAlgorithmECDSASignatureMessageX962SHA256,
    kSecKeyAlgorithmECDSASignatureMessageX962SHA384,
    kSecKeyAlgorithmECDSASignatureMessageX962SHA512,
    kSecKeyAlgorithmECDHKeyExchangeStandard
};

/// One RSA or EC key (P-256, P-384, P-521), public or private. A handle: copies share the key, which never
/// changes. Any thread. Public points are checked to lie on their curve when the key is made, and never
/// again; an RSA exponent that is even or 1 makes no key, for under it anything is a signature.
class SecKey {
public:
    struct Material;
    explicit SecKey(std::shared_ptr<Material> material) : material_(std::move(material)) {}

    [[nodiscard]] Material& material() const noexcept { return *material_; }

private:
    std::shared_ptr<Material> material_;
};

/// Makes a key from the platform's bytes forms: PKCS#1 RSAPublicKey or RSAPrivateKey (RFC 8017 appendix A.1);
/// the uncompressed point 04, x, y (SEC 1 section 2.3.3); for a private EC key the same with d behind it,
/// each number big-endian at the curve's full length. The size in `attributes` chooses the curve; for RSA it
/// is not used.
/// @throws CFError for bytes of another form, a point off the curve, or d outside 1 to n - 1.
[[nodiscard]] SecKey SecKeyCreateWithData(ByteView data, const SecKeyAttributes& attributes);

/// Makes an RSA private key of its three numbers, big-endian, without the primes.
/// @throws CFError for numbers that make no key.
[[nodiscard]] SecKey SecKeyCreateWithRSAPrivateNumbers(ByteView modulus, ByteView exponent,
                                                       ByteView privateExponent);

/// Generates a private key with its public half; EC by curve size, RSA with public exponent 65537.
/// @throws CFError for a size that there is no key of.
[[nodiscard]] SecKey SecKeyCreateRandomKey(SecKeyType type, std::size_t sizeInBits);

/// @throws CFError for anything but one DER PrivateKeyInfo (RFC 5208) of an RSA or EC key.
[[nodiscard]] SecKey SecKeyCreateWithPKCS8(ByteView der);

/// @throws CFError for anything but one DER SubjectPublicKeyInfo (RFC 5280 section 4.1.2.7)
/// of an RSA or EC key.
[[nodiscard]] SecKey SecKeyCreateWithSubjectPublicKeyInfo(ByteView der);

/// Reads the first PEM block (RFC 7468) labelled "PRIVATE KEY" or "PUBLIC KEY"; encrypted keys are refused.
/// @throws CFError as for the DER forms.
[[nodiscard]] SecKey SecKeyCreateWithPEM(std::string_view text);

/// The public half of a private key, or the key itself.
[[nodiscard]] SecKey SecKeyCopyPublicKey(const SecKey& key);

[[nodiscard]] SecKeyAttributes SecKeyCopyAttributes(const SecKey& key);

/// The bytes form that `SecKeyCreateWithData` reads.
/// @throws CFError when the numbers cannot be had, as for an RSA private key that was
/// made without its primes.
[[nodiscard]] SecretBytes SecKeyCopyExternalRepresentation(const SecKey& key);

/// Bytes of one RSA block, or of one EC coordinate.
[[nodiscard]] std::size_t SecKeyGetBlockSize(const SecKey& key);

/// True when type and class of the key suit algorithm and operation.
[[nodiscard]] bool SecKeyIsAlgorithmSupported(const SecKey& key, SecKeyOperationType operation,
                                              SecKeyAlgorithm algorithm);

/// Signs the message, which is hashed here. RSA: one block. EC: an X9.62 SEQUENCE of r and s.
/// @throws CFError when the key cannot sign so.
[[nodiscard]] Bytes SecKeyCreateSignature(const SecKey& key, SecKeyAlgorithm algorithm, ByteView message);

/// @return true for the key's signature on the message, else false: a mismatch is no error.
/// @throws CFError when the key cannot verify so.
[[nodiscard]] bool SecKeyVerifySignature(const SecKey& key, SecKeyAlgorithm algorithm, ByteView message,
                                         ByteView signature);

/// @throws CFError when the key cannot encrypt so or the text is too long for one block.
[[nodiscard]] Bytes SecKeyCreateEncryptedData(const SecKey& key, SecKeyAlgorithm algorithm,
                                              ByteView plaintext);

/// @throws CFError when the key cannot decrypt so or the padding is bad.
[[nodiscard]] SecretBytes SecKeyCreateDecryptedData(const SecKey& key, SecKeyAlgorithm algorithm,
                                                    ByteView ciphertext);

/// Decrypts a text whose length is known into `text`, which keeps what it holds where the padding is bad or
/// the text of another length. Both ways take the same steps, so that a peer who measures time learns nothing
/// of the padding.
/// @throws CFError when the key cannot decrypt so.
void SecKeyDecryptInto(const SecKey& key, SecKeyAlgorithm algorithm, ByteView ciphertext,
                       std::span<std::uint8_t> text);

/// Plain ECDH (SP 800-56A section 5.7.1.2): the X coordinate of the shared point, big-endian
/// at the curve's length.
/// @throws CFError for keys on different curves.
[[nodiscard]] SecretBytes SecKeyCopyKeyExchangeResult(const SecKey& privateKey, const SecKey& publicKey);

} // namespace korvane
