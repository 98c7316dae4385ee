#pragma once

#include "Platform/ASIdentifierManager.h"
#include "Platform/CLLocationManager.h"
#include "Platform/UIScreen.h"

namespace korvane {

// What a machine without a screen, without a store and without sensors answers.

class NoScreen final : public UIScreen {
public:
    [[nodiscard]] CGRect bounds() const override { return {}; }
};

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
