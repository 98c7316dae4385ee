#pragma once

#include "Platform/Native/UsualFontSizes.h"

#include <map>
#include <memory>
#include <mutex>
#include <set>

namespace korvane {

/// The fonts that fontconfig knows; none where it is not set up. They are read once, at the first question
/// about them. Any thread.
class HeadlessFonts final : public UsualFontSizes {
public:
    HeadlessFonts();
    HeadlessFonts(const HeadlessFonts&) = delete;
    HeadlessFonts& operator=(const HeadlessFonts&) = delete;
    ~HeadlessFonts() override;

    /// In alphabetical order.
    [[nodiscard]] std::vector<std::string> familyNames() const override;
    /// PostScript names in alphabetical order.
    [[nodiscard]] std::vector<std::string> fontNamesForFamilyName(const std::string& family) const override;

    /// The family that stands for "sans-serif", and the size.
    [[nodiscard]] std::string systemFontDescription(double size) const override;

private:
    struct Catalogue;

    const Catalogue& catalogue() const;

    mutable std::once_flag once_;
    mutable std::unique_ptr<const Catalogue> catalogue_;
};

} // namespace korvane
