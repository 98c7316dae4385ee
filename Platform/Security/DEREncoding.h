#pragma once

#include "Platform/Bytes.h"

namespace korvane {

/// Whether the bytes are one value as the distinguished encoding rules want it (X.690 section 10), as far as
/// one can tell without its type: tags of one byte, the shortest lengths, no value of indefinite length, no
/// string in pieces, numbers without spare bytes, TRUE as FF, unused bits that are 0. The order of a SET and
/// default values that are spelt out are not looked at. Values are nested 32 levels at most.
[[nodiscard]] bool isDER(ByteView bytes);

} // namespace korvane
