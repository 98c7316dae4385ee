#include "Crypt/ASN1DER.h"
#include "Crypt/EC.h"

#include <algorithm>

namespace korvane {

namespace {

using enum ECErrorCase;

struct Signing {
    SecKeyAlgorithm algorithm;
    ECCurveType curve;

    [[nodiscard]] std::size_t coordinateLength() const { return coordinateOctetLength(curve); }
};

Signing requireSigning(SignatureAlgorithm algorithm) {
    const auto curve = curveType(algorithm);
    if (!curve) throw ECError(unknownOrUnsupportedAlgorithm);
    const auto platform = ecSecKeyAlgorithm(algorithm);
    if (!platform) throw ECError(invalidCurveDigestAlgorithm);
    return {*platform, *curve};
}

/// An algorithm goes with one curve (RFC 7518 section 3.4): the numbers of a larger one would not fit into
/// the signature, those of a smaller one would, and give a key less strength than its algorithm says.
void requireCurve(const SecKey& key, ECCurveType curve) {
    const SecKeyAttributes attributes = SecKeyCopyAttributes(key);
    if (attributes.kSecAttrKeyType == SecKeyType::kSecAttrKeyTypeEC &&
        attributes.kSecAttrKeySizeInBits != keyBitLength(curve))
        throw ECError(invalidKeySize);
}

ECError signingError(const CFError& error) {
    if (error.domain() == CFError::kLocalAuthenticationDomain)
        return ECError(localAuthenticationFailed, std::int64_t{error.caseIndex()});
    return ECError(signingFailed,
                   Description{"Error creating signature. (CFError: " + error.localizedDescription() + ")"});
}

/// Raw r and s as the platform's SEQUENCE of two INTEGERs (ANSI X9.62).
Bytes toX962(ByteView signature) {
    const std::size_t half = signature.size() / 2;
    Bytes numbers = encode(Asn1IntegerConversion::fromRaw(signature.first(half)), ASN1Type::integer);
    const Bytes s = encode(Asn1IntegerConversion::fromRaw(signature.subspan(half)), ASN1Type::integer);
    numbers.insert(numbers.end(), s.begin(), s.end());
    return encode(numbers, ASN1Type::sequence);
}

Bytes fromX962(ByteView signature, std::size_t coordinateLength) {
    const ByteView numbers = read(signature, ASN1Type::sequence);
    const ByteView r = read(numbers, ASN1Type::integer);
    const ByteView s = read(skip(numbers, ASN1Type::integer), ASN1Type::integer);
    Bytes raw = Asn1IntegerConversion::toRaw(r, coordinateLength);
    const Bytes rawS = Asn1IntegerConversion::toRaw(s, coordinateLength);
    raw.insert(raw.end(), rawS.begin(), rawS.end());
    return raw;
}

} // namespace

Bytes EC::sign(ByteView signingInput, const SecKey& privateKey, SignatureAlgorithm algorithm) {
    const Signing signing = requireSigning(algorithm);
    requireCurve(privateKey, signing.curve);
    try {
        return fromX962(SecKeyCreateSignature(privateKey, signing.algorithm, signingInput),
                        signing.coordinateLength());
    } catch (const CFError& error) {
        throw signingError(error);
    }
}

bool EC::verify(ByteView verifyingInput, ByteView signature, const SecKey& publicKey,
                SignatureAlgorithm algorithm) {
    const Signing signing = requireSigning(algorithm);
    const std::size_t expected = signatureOctetLength(signing.curve);
    if (signature.size() != expected)
        throw ECError(verifyingFailed,
                      Description{"Signature is " + std::to_string(signature.size()) +
                                  " bytes long instead of the expected " + std::to_string(expected) + "."});
    requireCurve(publicKey, signing.curve);
    try {
        return SecKeyVerifySignature(publicKey, signing.algorithm, verifyingInput, toX962(signature));
    } catch (const CFError& error) {
        throw ECError(verifyingFailed, Description{"Error verifying signature. (CFError: " +
                                                   error.localizedDescription() + ")"});
    }
}

Bytes Asn1IntegerConversion::fromRaw(ByteView data) {
    if (data.empty()) fatalError("An empty number cannot become an ASN.1 integer.");
    const auto first = std::find_if(data.begin(), data.end(), [](std::uint8_t byte) { return byte != 0; });
    Bytes value(first, data.end());
    if (value.empty() || value.front() >= 0x80) value.insert(value.begin(), 0);
    return value;
}

Bytes Asn1IntegerConversion::toRaw(ByteView data, std::size_t expectedLength) {
    if (data.size() > expectedLength + 1)
        fatalError("ASN.1 integer is " + std::to_string(data.size()) + " bytes long when it should be < " +
                   std::to_string(expectedLength + 1) + ".");
    if (data.size() == expectedLength + 1) {
        if (data.front() != 0) fatalError("The sign byte of an ASN.1 integer is not 0.");
        data = data.subspan(1);
    }
    Bytes raw(expectedLength - data.size());
    raw.insert(raw.end(), data.begin(), data.end());
    return raw;
}

} // namespace korvane
