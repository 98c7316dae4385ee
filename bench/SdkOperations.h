#pragma once

#include "bench/Operations.h"

namespace korvane::bench {

/// What an application asks of the library: transactions, exchanges with an ACS and its chain of
/// certificates, each beside its own cryptography. While the rows live, their platform is the process's.
[[nodiscard]] std::vector<Operation> sdkOperations();

} // namespace korvane::bench
