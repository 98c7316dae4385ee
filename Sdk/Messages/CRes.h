#pragma once

#include "Platform/Failure.h"
#include "Sdk/Messages/MessageExtensionAttribute.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// Where an image lies, at three densities.
struct ImageUrls {
    std::string medium;
    std::string high;
    std::string extraHigh;

    /// @throws DecodingError naming the field.
    [[nodiscard]] static ImageUrls decode(const JSONField& field);

    [[nodiscard]] std::string json() const;

    friend bool operator==(const ImageUrls&, const ImageUrls&) = default;
};

enum class ParsingErrorCase {
    duplicateKeyException, // Description: the repeated names, joined by ","
};

[[nodiscard]] constexpr std::string_view rawValue(ParsingErrorCase value) {
    switch (value) {
    case ParsingErrorCase::duplicateKeyException: return "duplicateKeyException";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<ParsingErrorCase> {
    static constexpr std::string_view domain = "ParsingError";
    using Value = FailureValue;
};

/// `description()` is the list of repeated names.
using ParsingError = TypedFailure<ParsingErrorCase>;

/// The challenge response: the ACS's answer to each `CReq`, after it is decrypted. A value. JSON names
/// equal field names. Every value is a text, those that look like flags or counters too; what they mean is
/// judged by `Validator`.
struct CRes {
    std::string threeDSServerTransID;
    std::string acsCounterAtoS;
    std::string acsTransID;
    std::optional<std::string> acsHTML;
    std::optional<std::string> acsHTMLRefresh;
    std::optional<std::string> acsUiType;
    std::string challengeCompletionInd;
    std::optional<std::string> challengeInfoHeader;
    std::optional<std::string> challengeInfoLabel;
    std::optional<std::string> challengeInfoText;
    std::optional<std::string> challengeInfoTextIndicator;
    /// Choices, each a map from key to label.
    std::optional<std::vector<StringTable>> challengeSelectInfo;
    std::optional<std::string> expandInfoLabel;
    std::optional<std::string> expandInfoText;
    std::optional<ImageUrls> issuerImage;
    std::optional<std::vector<MessageExtensionAttribute>> messageExtension;
    std::string messageType;
    std::string messageVersion;
    std::optional<std::string> oobAppURL;
    std::optional<std::string> oobAppLabel;
    std::optional<std::string> oobContinueLabel;
    std::optional<ImageUrls> psImage;
    std::optional<std::string> resendInformationLabel;
    std::string sdkTransID;
    std::optional<std::string> submitAuthenticationLabel;
    std::optional<std::string> whitelistingInfoText;
    std::optional<std::string> whyInfoLabel;
    std::optional<std::string> whyInfoText;
    std::optional<std::string> challengeAddInfo;
    std::optional<std::string> transStatus;

    /// Decodes one JSON text. Names of this record that stand twice at the top level are looked for first;
    /// then the fields are read in declaration order, but for the last two, which are read in the opposite
    /// one. The first failure ends it. Unknown names are ignored.
    /// @throws ParsingError duplicateKeyException; DecodingError naming the field by its path.
    [[nodiscard]] static CRes decode(std::string_view json);

    friend bool operator==(const CRes&, const CRes&) = default;
};

} // namespace korvane
