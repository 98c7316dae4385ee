#pragma once

#include <optional>
#include <string>

namespace korvane {

/// A bundle: the application's own files.
class NSBundle {
public:
    virtual ~NSBundle() = default;

    /// The absolute URL of the receipt that the store gave with the application, or no value.
    [[nodiscard]] virtual std::optional<std::string> appStoreReceiptURL() const = 0;
};

} // namespace korvane
