#include "Sdk/SecureChannel/AcsSignedContent.h"

#include "Platform/JSONDecoding.h"

namespace korvane {

AcsSignedContent AcsSignedContent::decode(ByteView json) {
    const JSON object = decodeObject(asText(json));
    const JSONField content(object);
    return {ECPublicKey::decodeField(content.member("acsEphemPubKey")),
            ECPublicKey::decodeField(content.member("sdkEphemPubKey")), content.member("acsURL").string()};
}

} // namespace korvane
