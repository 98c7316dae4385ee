#include "tools/challenge/FailureNames.h"

#include "Crypt/AES.h"
#include "Crypt/ASN1DER.h"
#include "Crypt/EC.h"
#include "Crypt/ECPrivateKey.h"
#include "Crypt/HMAC.h"
#include "Crypt/JOSEError.h"
#include "Crypt/JOSEHeader.h"
#include "Crypt/JWK.h"
#include "Crypt/JWKSet.h"
#include "Crypt/RSA.h"
#include "Platform/JSONDecoding.h"
#include "Sdk/Events/SdkError.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace korvane::challenge {

namespace {

struct Family {
    std::string_view domain;
    std::string_view (*nameOf)(std::size_t index);
};

template <HasRawValues Case>
constexpr Family family() {
    return {FailureTraits<Case>::domain, [](std::size_t index) {
                return index < EnumTable<Case>::size ? EnumTable<Case>::rows[index].text : kNoRawValue;
            }};
}

constexpr Family kFamilies[] = {
    family<JOSEErrorCase>(),
    family<JWEErrorCase>(),
    family<JWSErrorCase>(),
    family<JWKErrorCase>(),
    family<JWKTypeErrorCase>(),
    family<HeaderParsingErrorCase>(),
    family<ThumbprintErrorCase>(),
    family<ECKeyPairErrorCase>(),
    family<ECErrorCase>(),
    family<RSAErrorCase>(),
    family<AESErrorCase>(),
    family<HMACErrorCase>(),
    family<ASN1DERParsingErrorCase>(),
    family<DecodingErrorCase>(),
    family<SdkErrorCase>(),
};

/// The name of a case, or an empty text.
std::string_view nameOf(std::string_view domain, std::string_view number) {
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), index);
    if (error != std::errc() || end != number.data() + number.size()) return {};
    const auto* found = std::find_if(std::begin(kFamilies), std::end(kFamilies),
                                     [domain](const Family& row) { return row.domain == domain; });
    return found == std::end(kFamilies) ? kNoRawValue : found->nameOf(index);
}

} // namespace

std::string namesOfFailures(std::string_view text) {
    constexpr std::string_view kBegin = "(Korvane.";
    constexpr std::string_view kMiddle = " error ";
    constexpr std::string_view kEnd = ".)";
    std::string names;
    for (std::size_t at = text.find(kBegin); at != std::string_view::npos; at = text.find(kBegin, at)) {
        at += kBegin.size();
        const std::size_t end = text.find(kEnd, at);
        const std::size_t middle = text.find(kMiddle, at);
        if (end == std::string_view::npos || middle > end) continue;
        const std::string_view domain = text.substr(at, middle - at);
        const std::string_view number = text.substr(middle + kMiddle.size(), end - middle - kMiddle.size());
        const std::string_view name = nameOf(domain, number);
        if (name.empty()) continue;
        names += (names.empty() ? "" : " ") + std::string(domain) + " error " + std::string(number) + " is " +
                 std::string(name) + ".";
    }
    return names;
}

} // namespace korvane::challenge
