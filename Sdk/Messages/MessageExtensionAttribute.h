#pragma once

#include "Platform/JSONDecoding.h"

#include <string>
#include <vector>

namespace korvane {

/// An extension of a message. The library knows none, so that every critical one is refused.
struct MessageExtensionAttribute {
    bool criticalityIndicator = false;
    StringTable data;
    std::string id;
    std::string name;

    /// @throws DecodingError naming the field.
    [[nodiscard]] static MessageExtensionAttribute decode(const JSONField& field);

    /// The members in declaration order, as JSON text.
    [[nodiscard]] std::string json() const;

    friend bool operator==(const MessageExtensionAttribute&, const MessageExtensionAttribute&) = default;
};

/// The member `messageExtension` of a message: a list of extensions as JSON text.
[[nodiscard]] std::string jsonOf(const std::vector<MessageExtensionAttribute>& extensions);

} // namespace korvane
