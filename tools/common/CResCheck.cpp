#include "tools/common/CResCheck.h"

#include "Platform/LetterCase.h"
#include "Sdk/Messages/MessageValues.h"
#include "Sdk/Messages/MessageVersion.h"
#include "Sdk/Messages/Validator.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace korvane::tools {

namespace {

/// Of the ACS, before any request was counted.
constexpr const char* kFirstCounter = "000";

const CRes::Field* fieldOf(std::string_view name) {
    const auto* found =
        std::ranges::find_if(CRes::fields(), [name](const CRes::Field& field) { return field.name == name; });
    return found == CRes::fields().end() ? nullptr : found;
}

/// The index that a step of a decoder's path names; a member may bear a name of that kind too.
std::optional<std::size_t> indexOf(std::string_view key) {
    constexpr std::string_view kIndex = "Index ";
    if (!key.starts_with(kIndex)) return std::nullopt;
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(key.data() + kIndex.size(), key.data() + key.size(), index);
    const bool isNumber = error == std::errc() && end == key.data() + key.size();
    return isNumber ? std::optional(index) : std::nullopt;
}

/// "Index 0" of a decoder's path is "[0]" here.
std::string filePath(std::string path, const std::vector<std::string>& codingPath) {
    for (const std::string& key : codingPath) {
        const auto index = indexOf(key);
        path = index ? elementPath(path, *index) : memberPath(path, key);
    }
    return path;
}

std::vector<std::string> split(std::string_view list) {
    std::vector<std::string> parts(1);
    for (const char character : list)
        if (character == ',')
            parts.emplace_back();
        else
            parts.back() += character;
    return parts;
}

std::string limitOf(std::string_view name) {
    const CRes::Field* field = fieldOf(name);
    return field && field->longest ? " (1 to " + std::to_string(*field->longest) + " characters)" : "";
}

std::string endBy(int code) {
    return "; the library ends the challenge with error " + std::to_string(code) + ".";
}

/// The error by which the library answers what it cannot decode.
int codeOf(const DecodingError& error) {
    const bool isMissing = error.kind() == DecodingErrorCase::keyNotFound;
    return static_cast<int>(isMissing ? ProtocolErrorCode::elementMissing
                                      : ProtocolErrorCode::elementInvalid);
}

/// What an error of the library's says of a name in its details.
std::string verdict(int code, std::string_view name) {
    const std::string end = endBy(code);
    switch (static_cast<ProtocolErrorCode>(code)) {
    case ProtocolErrorCode::elementMissing: return "is missing or empty" + end;
    case ProtocolErrorCode::elementInvalid: return "has a value that is not allowed" + limitOf(name) + end;
    default: return "is not acceptable" + end;
    }
}

/// The name that was meant, if it differs in the case of letters alone.
std::string suggestion(std::string_view name) {
    for (const CRes::Field& field : CRes::fields())
        if (lowercased(std::string(field.name)) == lowercased(std::string(name)))
            return "; \"" + std::string(field.name) + "\" is known";
    return {};
}

} // namespace

CRes decodeChecked(CheckedText& text, const std::string& path, JSON message) {
    for (;;) {
        try {
            return CRes::decode(message.dump());
        } catch (const DecodingError& error) {
            std::string what = error.description();
            if (what.ends_with('.')) what.pop_back();
            text.add(Remark::Kind::fault, filePath(path, error.codingPath()), what + endBy(codeOf(error)));
            // The decoder stops at the first fault: the next one shows without it.
            const std::string& name = error.codingPath().front();
            message.erase(name);
            if (fieldOf(name)->isRequired()) message[name] = "";
        }
    }
}

void judgeMessage(CheckedText& text, Remark::Kind kind, const std::string& path, const CRes& message,
                  MessagePlace place) {
    ChallengeParameters own;
    own.tdsServerTransactionId = message.threeDSServerTransID;
    own.acsTransactionId = message.acsTransID;
    CRes inStep = message;
    if (!inStep.acsCounterAtoS.empty()) inStep.acsCounterAtoS = kFirstCounter;
    const auto version =
        fromRawValue<MessageVersion>(message.messageVersion).value_or(MessageVersion::v2_2_0);
    const auto error = Validator::validateCRes(
        {inStep, 0, std::string(rawValue(version)), own, message.sdkTransID, place == MessagePlace::first});
    if (!error) return;
    if (error->code == static_cast<int>(ProtocolErrorCode::criticalExtension)) {
        text.add(kind, memberPath(path, "messageExtension"),
                 "has the critical extension " + error->details + "; the library ends the challenge.");
        return;
    }
    const bool isFinal = message.challengeCompletionInd == rawValue(YesNoSelector::Y);
    for (const std::string& name : split(error->details)) {
        // A screen without its kind could be an ending too, which hardly anybody means.
        const bool isMeant = isFinal || name != "transStatus" || message.transStatus;
        const std::string member = memberPath(path, name);
        // What cannot be read is not missing as well.
        if (isMeant && !text.hasFaultAt(member)) text.add(kind, member, verdict(error->code, name));
    }
}

CRes checkCRes(CheckedText& text) {
    const CheckedValue root = text.root();
    for (const CheckedValue& member : root.members())
        if (!fieldOf(member.path()))
            member.warn("is not known here and is ignored" + suggestion(member.path()) + ".");
    CRes message = decodeChecked(text, {}, root.json());
    judgeMessage(text, Remark::Kind::fault, {}, message, MessagePlace::anywhere);
    return message;
}

} // namespace korvane::tools
