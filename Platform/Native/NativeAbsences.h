#pragma once

#include "Platform/ASIdentifierManager.h"
#include "Platform/CLLocationManager.h"
#include "Platform/UIScreen.h"

#include <mutex>

namespace korvane {

// What a machine without a screen, without a store and without sensors answers.

/// Empty, until it is given a size for screens that nobody looks at.
class NoScreen final : public UIScreen {
public:
    [[nodiscard]] CGRect bounds() const override {
        const std::scoped_lock lock(mutex_);
        return bounds_;
    }
    void setBounds(const CGRect& bounds) {
        const std::scoped_lock lock(mutex_);
        bounds_ = bounds;
    }

private:
    mutable std::mutex mutex_;
    CGRect bounds_;
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
