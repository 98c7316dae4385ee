// The ACS's signed content: as it comes, and signed anew by a leaf that the root vouches for, so that
// mutations of header and payload get behind the signature.

#include "Crypt/JOSEError.h"
#include "Crypt/JWS.h"
#include "Platform/JSONDecoding.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/SecureChannel/AcsSignedContent.h"
#include "Sdk/SecureChannel/KeysContainer.h"
#include "fuzz/support/Certificates.h"
#include "fuzz/support/Fuzz.h"
#include "fuzz/support/Keys.h"

namespace korvane::fuzzing {

namespace {

constexpr const char* kReferenceNumber = "3DS_LOA_SDK_QXRV_020200_00417";

/// What one container makes of a signed content; a second one is always refused after a success.
std::optional<std::string> urlOf(const std::string& compact) {
    KeysContainer container(TransactionCerts{{}, certificates().root, CertAlgorithm::EC});
    const auto published = container.getEphemeralPublicKey();
    const auto parse = [&] {
        return attempt<SdkError, JOSEError, JWKError, ECError, DecodingError>(
            [&] { return container.parseAcsSignedContent(compact, kReferenceNumber); });
    };
    const auto sealed = [&] {
        return attempt<SdkError>([&] { return container.encryptCReq(toBytes("{}"), "id"); });
    };
    const auto url = parse();
    require(sealed().has_value() == url.has_value(),
            "A session's key without a signed content, or none with.");
    require((container.getEphemeralPublicKey() == published) != url.has_value(),
            "The key pair goes with a refusal, or stays after a success.");
    return url;
}

/// The content under a signature of the leaf that has a key for the header's algorithm.
std::optional<std::string> signedAnew(const JWS& jws) {
    const auto algorithm = jws.header().algorithm();
    if (!algorithm) return std::nullopt;
    const bool isEc = curveType(*algorithm).has_value();
    JWSHeader header = jws.header();
    header.setX5c(std::vector{isEc ? certificates().ecText : certificates().rsaText});
    const auto signer =
        Signer::make(*algorithm, isEc ? keys().ecPrivateSecKey : keys().rsaLeafPrivate).value();
    return attempt<JOSEError>([&] { return JWS(header, jws.payload(), signer).compactSerializedString(); });
}

} // namespace

void run(ByteView input) {
    const std::string compact = compactText(input);
    static_cast<void>(urlOf(compact));
    const auto jws = attempt<JOSEError>([&] { return JWS(compact); });
    const auto good = jws ? signedAnew(*jws) : std::nullopt;
    if (!good) return;
    const auto url = urlOf(*good);
    const auto content =
        attempt<DecodingError>([&] { return AcsSignedContent::decode(jws->payload().data()); });
    require(!url || (content && content->acsURL == *url), "The URL is not the payload's.");
}

} // namespace korvane::fuzzing
