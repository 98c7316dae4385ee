#include "Platform/Security/Compression.h"

#include "Platform/Security/Secret.h"

#include <zlib.h>

#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace korvane {

namespace {

/// zlib writes and reads DEFLATE without any wrapper when the window bits are negative.
constexpr int kRawWindowBits = -15;
constexpr int kMemoryLevel = 8;

/// zlib's memory holds what it reads and writes, and is told by its address alone when it is freed: its size
/// stands in front of it.
constexpr std::size_t kSizeField = alignof(std::max_align_t);
static_assert(kSizeField >= sizeof(std::size_t));

voidpf allocate(voidpf, uInt count, uInt size) {
    const std::size_t length = kSizeField + std::size_t{count} * size;
    void* const memory = ::operator new(length, std::nothrow);
    if (!memory) return nullptr;
    std::memcpy(memory, &length, sizeof(length));
    return static_cast<std::uint8_t*>(memory) + kSizeField;
}

void release(voidpf, voidpf address) {
    void* const memory = static_cast<std::uint8_t*>(address) - kSizeField;
    std::size_t length = 0;
    std::memcpy(&length, memory, sizeof(length));
    cleanse(memory, length);
    ::operator delete(memory);
}

} // namespace

struct CompressionStream::State {
    CompressionOperation operation;
    z_stream stream{};

    ~State() { operation == CompressionOperation::encode ? deflateEnd(&stream) : inflateEnd(&stream); }
};

std::optional<CompressionStream> CompressionStream::make(CompressionOperation operation, ByteView source) {
    if (source.size() > std::numeric_limits<uInt>::max()) return std::nullopt;
    auto state = std::make_unique<State>(State{operation});
    state->stream.zalloc = allocate;
    state->stream.zfree = release;
    const int status = operation == CompressionOperation::encode
                           ? deflateInit2(&state->stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kRawWindowBits,
                                          kMemoryLevel, Z_DEFAULT_STRATEGY)
                           : inflateInit2(&state->stream, kRawWindowBits);
    if (status != Z_OK) return std::nullopt;
    state->stream.next_in = const_cast<Bytef*>(source.data());
    state->stream.avail_in = static_cast<uInt>(source.size());
    return CompressionStream(std::move(state));
}

CompressionStream::CompressionStream(std::unique_ptr<State> state) : state_(std::move(state)) {}

CompressionStream::CompressionStream(CompressionStream&&) noexcept = default;

CompressionStream& CompressionStream::operator=(CompressionStream&&) noexcept = default;

CompressionStream::~CompressionStream() = default;

CompressionStream::Status CompressionStream::process(std::span<std::uint8_t> destination,
                                                     std::size_t& produced) {
    z_stream& stream = state_->stream;
    stream.next_out = destination.data();
    stream.avail_out = static_cast<uInt>(destination.size());
    const int status = state_->operation == CompressionOperation::encode ? deflate(&stream, Z_FINISH)
                                                                         : inflate(&stream, Z_NO_FLUSH);
    produced = destination.size() - stream.avail_out;
    if (status == Z_STREAM_END) return Status::end;
    // No progress with room left means that the input ended before the stream did.
    const bool isHungry = produced == 0 && stream.avail_out > 0;
    return (status == Z_OK || status == Z_BUF_ERROR) && !isHungry ? Status::ok : Status::error;
}

} // namespace korvane
