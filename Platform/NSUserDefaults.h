#pragma once

#include "Platform/JSON.h"

#include <optional>
#include <string>

namespace korvane {

/// The application's small values that survive restarts. Any thread. Nothing here fails: what cannot be saved
/// is kept for the life of the process.
class NSUserDefaults {
public:
    virtual ~NSUserDefaults() = default;

    /// The value under `key`, of whatever type was stored, or no value.
    [[nodiscard]] virtual std::optional<JSON> valueForKey(const std::string& key) const = 0;

    /// Replaces the value under `key`. An object that JSON cannot express is not stored.
    virtual void setObject(const JSON& object, const std::string& key) = 0;

    /// Saves what is not saved yet.
    /// @return false while something is kept in memory only.
    virtual bool synchronize() = 0;
};

} // namespace korvane
