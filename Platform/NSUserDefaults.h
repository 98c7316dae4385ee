#pragma once

#include "Platform/Export.h"

#include <optional>
#include <string>

namespace korvane {

/// The application's small texts that survive restarts. Any thread. Nothing here fails: what cannot be saved
/// is kept for the life of the process.
class KORVANE_EXPORT NSUserDefaults {
public:
    virtual ~NSUserDefaults() = default;

    /// The text under `key`; no value where there is none, or something else than a text.
    [[nodiscard]] virtual std::optional<std::string> valueForKey(const std::string& key) const = 0;

    /// Replaces whatever is under `key`. What is no UTF-8 is not stored.
    virtual void setObject(const std::string& object, const std::string& key) = 0;

    /// Saves what is not saved yet.
    /// @return false while something is kept in memory only.
    virtual bool synchronize() = 0;
};

} // namespace korvane
