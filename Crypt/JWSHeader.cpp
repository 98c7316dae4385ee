#include "Crypt/JWSHeader.h"

namespace korvane {

JWSHeader::JWSHeader(JSON parameters, std::optional<Bytes> headerData)
    : JOSEHeader(std::move(parameters), std::move(headerData), {HeaderParameter::alg}) {}

JWSHeader::JWSHeader(SignatureAlgorithm algorithm)
    : JWSHeader(JSON::object({{HeaderParameter::alg, rawValue(algorithm)}})) {}

std::optional<JWSHeader> JWSHeader::make(Bytes&& data) {
    return parse<JWSHeader>(std::move(data));
}

std::optional<SignatureAlgorithm> JWSHeader::algorithm() const {
    const std::string* name = rawText(HeaderParameter::alg);
    return name ? fromRawValue<SignatureAlgorithm>(*name) : std::nullopt;
}

} // namespace korvane
