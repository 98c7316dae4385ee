#pragma once

#include "Platform/ASIdentifierManager.h"
#include "Platform/CLLocationManager.h"

namespace korvane {

// What a machine without a store and without sensors answers.

class NoLocation final : public CLLocationManager {
public:
    [[nodiscard]] CLAuthorizationStatus authorizationStatus() const override {
        return CLAuthorizationStatus::notDetermined;
    }
    [[nodiscard]] std::optional<CLLocation> location() const override { return std::nullopt; }
};

class NoAdvertising final : public ASIdentifierManager {
public:
    [[nodiscard]] std::string advertisingIdentifier() const override {
        return "00000000-0000-0000-0000-000000000000";
    }
};

} // namespace korvane
