#pragma once

#include "Sdk/Messages/CRes.h"
#include "Ui/Customisation/Theme.h"
#include "tools/screen/NotDone.h"

#include <string>

namespace korvane::screen {

/// What is to be shown, as files have it.
struct Script {
    CRes cRes;
    Theme theme;
};

/// The theme of a file; none where the name is empty.
/// @throws FaultyText for a theme that cannot be used.
[[nodiscard]] Theme readThemeIfAny(const std::string& file);

/// @throws NotDone for a CRes that the library refuses, or that ends a challenge; FaultyText for a theme that
/// cannot be used; UsageError for a file that cannot be read,
/// and for a bank's page where this program runs as root.
/// @param theme  empty for none.
[[nodiscard]] Script readScript(const std::string& cres, const std::string& theme);

} // namespace korvane::screen
