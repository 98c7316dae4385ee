#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/OpenSSLHandles.h"

#include <array>
#include <cstddef>
#include <initializer_list>

/// The operations of the library written down as bare OpenSSL calls: what a careful caller would do for the
/// same bytes, without a header to read, keys to choose, or failures to tell apart. A failure of OpenSSL ends
/// the process. One thread only.
namespace korvane::bench::bare {

/// Puts a counting allocator under OpenSSL; to be called before anything else of OpenSSL is.
void countAllocations();
[[nodiscard]] std::size_t allocationCount();

void must(bool isDone);

/// SHA-256 in a context that is reused.
class Sha256 {
public:
    std::array<std::uint8_t, 32> operator()(std::initializer_list<ByteView> pieces);

    [[nodiscard]] const EVP_MD* algorithm() const { return digest_.get(); }

private:
    openssl::Digest digest_{EVP_MD_fetch(nullptr, "SHA256", nullptr)};
    openssl::DigestContext context_{EVP_MD_CTX_new()};
};

} // namespace korvane::bench::bare
