#include "bench/BareOpenSSL.h"

#include "Platform/Failure.h"

#include <openssl/crypto.h>

#include <cstdlib>

namespace korvane::bench::bare {

namespace {

std::size_t opensslAllocations = 0;

void* countedMalloc(std::size_t size, const char*, int) {
    ++opensslAllocations;
    return std::malloc(size);
}

void* countedRealloc(void* memory, std::size_t size, const char*, int) {
    ++opensslAllocations;
    return std::realloc(memory, size);
}

void plainFree(void* memory, const char*, int) {
    std::free(memory);
}

} // namespace

void countAllocations() {
    must(CRYPTO_set_mem_functions(countedMalloc, countedRealloc, plainFree) == 1);
}

std::size_t allocationCount() {
    return opensslAllocations;
}

void must(bool isDone) {
    if (!isDone) fatalError("A bare OpenSSL call failed: " + openssl::ErrorScope::reason());
}

std::array<std::uint8_t, 32> Sha256::operator()(std::initializer_list<ByteView> pieces) {
    std::array<std::uint8_t, 32> result{};
    bool isDone = EVP_DigestInit_ex2(context_.get(), digest_.get(), nullptr) == 1;
    for (const ByteView piece : pieces)
        isDone = isDone && EVP_DigestUpdate(context_.get(), piece.data(), piece.size()) == 1;
    must(isDone && EVP_DigestFinal_ex(context_.get(), result.data(), nullptr) == 1);
    return result;
}

} // namespace korvane::bench::bare
