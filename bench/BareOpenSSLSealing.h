#pragma once

#include "Platform/Bytes.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace korvane::bench::bare {

/// Compact JWEs with A128CBC-HS256 (RFC 7516, RFC 7518 section 5.2.3), at the limit of what OpenSSL gives:
/// contexts and key schedules are kept, and so is the buffer that the result stands in until the next call.
/// Nothing is cleansed, no header is read, and a failure ends the process. One thread only.
class Sealing {
public:
    Sealing();
    /// With the schedules of a key, 32 bytes, MAC key first.
    explicit Sealing(ByteView contentKey);
    ~Sealing();

    /// Sets the key of the messages to come, in one direction each.
    void setSealingKey(ByteView contentKey);
    void setOpeningKey(ByteView contentKey);
    /// Overwrites what it keeps of a key and a text that was opened, as a library must.
    void forget();

    /// @param header  its Base64URL text.
    [[nodiscard]] std::string_view seal(std::string_view header, ByteView encryptedKey, ByteView payload);

    /// @param header  the Base64URL text that the message must begin with; its second part must be empty.
    [[nodiscard]] ByteView open(std::string_view header, std::string_view compact);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace korvane::bench::bare
