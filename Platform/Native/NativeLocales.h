#pragma once

#include "Platform/Locale.h"
#include "Platform/TimeZone.h"

namespace korvane {

/// The locales of ICU, and the user's choice among them from the environment.
class NativeLocales final : public LocaleServices {
public:
    [[nodiscard]] Locale current() const override;
    [[nodiscard]] std::vector<std::string> availableIdentifiers() const override;
    /// The list in LANGUAGE, else the one language of the locale; never empty.
    [[nodiscard]] std::vector<std::string> preferredLanguages() const override;
};

/// The zone of TZ or of the machine.
class NativeTimeZone final : public TimeZone {
public:
    [[nodiscard]] std::optional<std::string> abbreviation() const override;
};

} // namespace korvane
