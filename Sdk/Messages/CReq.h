#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/Secret.h"
#include "Sdk/Messages/MessageExtensionAttribute.h"
#include "Sdk/Messages/MessageValues.h"

#include <optional>
#include <string>
#include <vector>

namespace korvane {

/// The challenge request: what the library sends to the ACS on every step of a challenge, before it is
/// encrypted. A value. JSON names equal field names; an absent field is left out, an empty text is written.
struct CReq {
    std::optional<std::string> threeDSRequestorAppURL;
    std::string threeDSServerTransID;
    std::string acsTransID;
    std::optional<ChallengeCancelationInd> challengeCancel;
    std::optional<SecretString> challengeDataEntry;
    std::optional<SecretString> challengeHTMLDataEntry;
    std::optional<YesNoSelector> challengeNoEntry;
    std::optional<ChallengeWindowSize> challengeWindowSize;
    std::optional<std::vector<MessageExtensionAttribute>> messageExtension;
    std::string messageType = "CReq";
    std::string messageVersion;
    std::optional<bool> oobContinue;
    std::optional<YesNoSelector> resendChallenge;
    /// The transaction's UUID in lower case.
    std::string sdkTransID;
    /// "00" and the decimal counter, without further padding: see `counterText`.
    std::string sdkCounterStoA;
    std::optional<YesNoSelector> whitelistingDataEntry;

    /// The UTF-8 JSON text, members in declaration order.
    [[nodiscard]] SecretString jsonString() const;

    /// Reads the JSON form back.
    /// @throws DecodingError naming the field.
    [[nodiscard]] static CReq decode(ByteView json);

    friend bool operator==(const CReq&, const CReq&) = default;
};

/// The text of `sdkCounterStoA`: "000" for 0, "009" for 9, "0010" for 10.
[[nodiscard]] std::string counterText(int sdkToAcsCounter);

} // namespace korvane
