#pragma once

#include "Platform/Failure.h"
#include "Sdk/Messages/MessageExtensionAttribute.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
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

    /// What is known of a field beside its value.
    struct Field {
        using Member =
            std::variant<std::string CRes::*, std::optional<std::string> CRes::*,
                         std::optional<ImageUrls> CRes::*, std::optional<std::vector<StringTable>> CRes::*,
                         std::optional<std::vector<MessageExtensionAttribute>> CRes::*>;

        /// Of the JSON.
        std::string_view name;
        Member member;
        /// The most characters that `Validator` lets the text have, or no value for any number.
        std::optional<std::size_t> longest = std::nullopt;

        [[nodiscard]] constexpr bool isRequired() const {
            return std::holds_alternative<std::string CRes::*>(member);
        }
    };

    /// The row of every field, in the order in which the fields are read: that of their declaration, but for
    /// the last two.
    [[nodiscard]] static constexpr const auto& fields() { return kFields; }

    /// Decodes one JSON text. Names of this record that stand twice at the top level are looked for
    /// first; then the fields are read in the order of their rows. The first failure ends it.
    /// Unknown names are ignored.
    /// @throws ParsingError duplicateKeyException; DecodingError naming the field by its path.
    [[nodiscard]] static CRes decode(std::string_view json);

    friend bool operator==(const CRes&, const CRes&) = default;

private:
    static const std::array<Field, 30> kFields;
};

inline constexpr std::array<CRes::Field, 30> CRes::kFields{{
    {"threeDSServerTransID", &CRes::threeDSServerTransID},
    {"acsCounterAtoS", &CRes::acsCounterAtoS},
    {"acsTransID", &CRes::acsTransID},
    {"acsHTML", &CRes::acsHTML, 100000},
    {"acsHTMLRefresh", &CRes::acsHTMLRefresh, 100000},
    {"acsUiType", &CRes::acsUiType},
    {"challengeCompletionInd", &CRes::challengeCompletionInd},
    {"challengeInfoHeader", &CRes::challengeInfoHeader, 45},
    {"challengeInfoLabel", &CRes::challengeInfoLabel},
    {"challengeInfoText", &CRes::challengeInfoText},
    {"challengeInfoTextIndicator", &CRes::challengeInfoTextIndicator},
    {"challengeSelectInfo", &CRes::challengeSelectInfo},
    {"expandInfoLabel", &CRes::expandInfoLabel},
    {"expandInfoText", &CRes::expandInfoText},
    {"issuerImage", &CRes::issuerImage},
    {"messageExtension", &CRes::messageExtension},
    {"messageType", &CRes::messageType},
    {"messageVersion", &CRes::messageVersion},
    {"oobAppURL", &CRes::oobAppURL, 256},
    {"oobAppLabel", &CRes::oobAppLabel, 256},
    {"oobContinueLabel", &CRes::oobContinueLabel, 45},
    {"psImage", &CRes::psImage},
    {"resendInformationLabel", &CRes::resendInformationLabel, 45},
    {"sdkTransID", &CRes::sdkTransID},
    {"submitAuthenticationLabel", &CRes::submitAuthenticationLabel, 45},
    {"whitelistingInfoText", &CRes::whitelistingInfoText, 64},
    {"whyInfoLabel", &CRes::whyInfoLabel},
    {"whyInfoText", &CRes::whyInfoText},
    {"transStatus", &CRes::transStatus},
    {"challengeAddInfo", &CRes::challengeAddInfo},
}};

} // namespace korvane
