#pragma once

#include "Platform/Bytes.h"

#include <cstddef>

namespace korvane {

/// A secret as the scan takes it: the bytes under a mask, so that whoever looks for the
/// secret does not hold it.
[[nodiscard]] Bytes maskedForScan(ByteView secret);

/// How often a secret stands in the process's writable memory: heap, stacks and globals,
/// freed blocks included.
/// @param masked  what `maskedForScan` made of it; 8 bytes or more, or chance would find it.
/// @throws std::system_error  where the system does not show a process its own memory.
[[nodiscard]] std::size_t copiesInMemory(ByteView masked);

} // namespace korvane
