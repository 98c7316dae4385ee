#pragma once

#include "Crypt/ECPublicKey.h"
#include "Platform/Bytes.h"

#include <string>

namespace korvane {

/// The payload of the ACS's signed content. A value; JSON names equal field names.
struct AcsSignedContent {
    ECPublicKey acsEphemPubKey;
    /// The library's key as the ACS received it. It is compared with nothing.
    ECPublicKey sdkEphemPubKey;
    /// Where the ACS takes challenge requests.
    std::string acsURL;

    /// Of repeated names the last one counts; unknown names are ignored.
    /// @throws DecodingError naming the field.
    [[nodiscard]] static AcsSignedContent decode(ByteView json);
};

} // namespace korvane
