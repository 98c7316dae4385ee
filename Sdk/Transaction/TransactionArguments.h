#pragma once

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
    /// "2.1.0" or "2.2.0".
    std::string messageVersion;
    std::unique_ptr<KeysContainer> keysContainer;
    ChallengeLook look = {};
};

} // namespace korvane
