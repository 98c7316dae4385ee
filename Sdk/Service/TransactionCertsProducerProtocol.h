#pragma once

#include "Platform/Export.h"
#include "Sdk/SecureChannel/TransactionCerts.h"

#include <string>

namespace korvane {

/// Gives the certificates of a directory server at run time, in place of the configured table. Implemented by
/// the application; called on the thread that creates a transaction.
class KORVANE_EXPORT TransactionCertsProducerProtocol {
public:
    virtual ~TransactionCertsProducerProtocol() = default;

    /// @throws anything that is to reach the caller of `createTransaction` as it is.
    [[nodiscard]] virtual TransactionCerts getCerts(const std::string& directoryServerID) = 0;
};

} // namespace korvane
