#pragma once

#include "Platform/Hosted/Host.h"
#include "Platform/NSUserDefaults.h"

#include <map>
#include <mutex>

namespace korvane {

/// User defaults in the host's store. What that does not take lasts as long as this object.
class HostedDefaults final : public NSUserDefaults {
public:
    explicit HostedDefaults(const Host& host) : host_(host) {}

    [[nodiscard]] std::optional<std::string> valueForKey(const std::string& key) const override;
    void setObject(const std::string& object, const std::string& key) override;
    bool synchronize() override;

private:
    const Host& host_;
    mutable std::mutex mutex_;
    std::map<std::string, std::string> unsaved_;
};

} // namespace korvane
