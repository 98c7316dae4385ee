#include "Sdk/SecureChannel/AcsSignedContent.h"

#include "Platform/JSON.h"
#include "Platform/JSONDecoding.h"

namespace korvane {

AcsSignedContent AcsSignedContent::decode(ByteView json) {
    const JSON object = decodeObject(asText(json));
    const JSONField content(object);
    return {ECPublicKey::decodeField(content.member("acsEphemPubKey")),
            ECPublicKey::decodeField(content.member("sdkEphemPubKey")), content.member("acsURL").string()};
}

std::optional<std::string> AcsSignedContent::jsonString() const {
    const auto acsKey = acsEphemPubKey.jsonString();
    const auto sdkKey = sdkEphemPubKey.jsonString();
    if (!acsKey || !sdkKey) return std::nullopt;
    JSONObjectWriter writer;
    writer.addJSON("acsEphemPubKey", *acsKey);
    writer.addJSON("sdkEphemPubKey", *sdkKey);
    writer.addString("acsURL", acsURL);
    return std::move(writer).finish();
}

} // namespace korvane
