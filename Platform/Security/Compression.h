#pragma once

#include "Platform/Bytes.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace korvane {

enum class CompressionOperation { encode, decode };

/// The platform's raw DEFLATE stream (RFC 1951, without a zlib or gzip wrapper): takes one whole source and
/// gives the result in steps. Destroying it frees its memory on every path.
class CompressionStream {
public:
    enum class Status { ok, end, error };

    /// @return no value when the library cannot set the stream up.
    [[nodiscard]] static std::optional<CompressionStream> make(CompressionOperation operation,
                                                               ByteView source);

    CompressionStream(CompressionStream&& other) noexcept;
    CompressionStream& operator=(CompressionStream&&) noexcept;
    ~CompressionStream();

    /// Fills the front of `destination`.
    /// @param produced  the number of bytes written.
    /// @return `ok` when there is more to come, `end` behind the last byte, `error` for damaged
    /// or unfinished input.
    [[nodiscard]] Status process(std::span<std::uint8_t> destination, std::size_t& produced);

private:
    struct State;
    explicit CompressionStream(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

} // namespace korvane
