#pragma once

#include "Platform/Export.h"

#include <string>
#include <vector>

namespace korvane {

/// A locale, which is known by its identifier: "fr_CA", "fr-CA".
struct Locale {
    std::string identifier;
    friend bool operator==(const Locale&, const Locale&) = default;
};

/// The locales of the system. No read fails.
/// Read on the main queue, when a service is initialised; belongs to its platform and lives as long.
class KORVANE_EXPORT LocaleServices {
public:
    virtual ~LocaleServices() = default;

    [[nodiscard]] virtual Locale current() const = 0;

    /// The identifiers of all locales that the system knows.
    [[nodiscard]] virtual std::vector<std::string> availableIdentifiers() const = 0;

    /// The user's languages as language tags (BCP 47), the most preferred first.
    [[nodiscard]] virtual std::vector<std::string> preferredLanguages() const = 0;
};

} // namespace korvane
