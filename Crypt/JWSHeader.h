#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/JOSEHeader.h"

namespace korvane {

/// The protected header of a JWS (RFC 7515 section 4). "alg" must be a text; one that no row of the layer has
/// is kept and reads as no value.
class JWSHeader : public JOSEHeader {
public:
    /// @param headerData  the bytes of `parameters`, or no value: then they are serialised here.
    /// @throws HeaderParsingError headerIsNotValidJSONObject, or requiredHeaderParameterMissing for "alg".
    explicit JWSHeader(JSON parameters, std::optional<Bytes> headerData = std::nullopt);

    explicit JWSHeader(SignatureAlgorithm algorithm);

    /// The header of the wire's bytes, which it takes; they stay with the caller where there is no header.
    /// @return no value for anything but a JSON object with "alg".
    [[nodiscard]] static std::optional<JWSHeader> make(Bytes&& data);

    [[nodiscard]] std::optional<SignatureAlgorithm> algorithm() const;
};

} // namespace korvane
