#pragma once

#include "Platform/Export.h"

#include <string>
#include <vector>

namespace korvane {

/// The fonts of the system. Sizes are in points. No read fails.
/// Read on the main queue, when a service is initialised; belongs to its platform and lives as long.
class KORVANE_EXPORT UIFontServices {
public:
    virtual ~UIFontServices() = default;

    [[nodiscard]] virtual std::vector<std::string> familyNames() const = 0;

    /// The fonts of one family; empty for an unknown family.
    [[nodiscard]] virtual std::vector<std::string>
    fontNamesForFamilyName(const std::string& family) const = 0;

    [[nodiscard]] virtual double systemFontSize() const = 0;
    [[nodiscard]] virtual double labelFontSize() const = 0;
    [[nodiscard]] virtual double buttonFontSize() const = 0;
    [[nodiscard]] virtual double smallSystemFontSize() const = 0;

    /// How the system font of that size describes itself; a text for people, of no fixed form.
    [[nodiscard]] virtual std::string systemFontDescription(double size) const = 0;
};

} // namespace korvane
