#pragma once

#include "Platform/Security/SecKey.h"

#include <memory>
#include <mutex>
#include <optional>

namespace korvane {

/// The platform's key of a JWK, shared by the JWK's copies. It is made when it is first asked for, since that
/// means to check a point; most JWKs only pass through. Any thread.
class KeptSecKey {
public:
    void keep(const SecKey& key) { slot_->key = key; }

    /// @param make  gives the key where there is none yet. What it throws passes, and nothing is kept then.
    template <class Make>
    [[nodiscard]] SecKey get(Make make) const {
        const std::lock_guard lock(slot_->mutex);
        if (!slot_->key) slot_->key = make();
        return *slot_->key;
    }

private:
    struct Slot {
        std::mutex mutex;
        std::optional<SecKey> key;
    };

    std::shared_ptr<Slot> slot_ = std::make_shared<Slot>();
};

} // namespace korvane
