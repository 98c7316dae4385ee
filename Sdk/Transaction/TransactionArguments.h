#pragma once

#include "Sdk/Messages/MessageVersion.h"
#include "Sdk/SecureChannel/KeysContainer.h"
#include "Sdk/Transaction/ChallengeFlow.h"

#include <memory>
#include <string>

namespace korvane {

/// What a service gives each transaction at its creation.
struct TransactionArguments {
    /// The sealed device document, a compact JWE.
    std::string deviceData;
    /// Identifies the application's installation.
    std::string sdkAppID;
    std::string sdkReferenceNum;
    MessageVersion messageVersion = MessageVersion::v2_2_0;
    std::unique_ptr<KeysContainer> keysContainer;
    ChallengeLook look = {};
};

} // namespace korvane
