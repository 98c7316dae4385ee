#pragma once

#include "C/korvane_c.h"
#include "Platform/Hosted/Host.h"
#include "Platform/Logger.h"

#include <memory>

namespace korvane::c {

/// A program's callbacks as a host. What they answer is checked, so that the rest of the library meets whole
/// texts alone.
/// @throws CallError for callbacks of which one needs another.
[[nodiscard]] Host hostOf(const korvane_host& functions);

/// A program's log; null where it has none.
[[nodiscard]] std::shared_ptr<IKorvaneLogger> loggerOf(const korvane_host& functions);

} // namespace korvane::c
