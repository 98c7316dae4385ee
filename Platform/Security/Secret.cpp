#include "Platform/Security/Secret.h"

#include <cstring>

namespace korvane {

namespace {

/// Volatile: it is read anew for each call, so that no optimiser, the linker's included, knows what is called
/// and may drop it. OPENSSL_cleanse keeps the same promise, but overwrites eight octets at a time on x86-64,
/// which a long message would feel; memset_s and explicit_bzero are not everywhere.
void* (*volatile const fillMemory)(void*, int, std::size_t) = std::memset;

} // namespace

void cleanse(void* octets, std::size_t size) noexcept {
    if (size > 0) fillMemory(octets, 0, size);
}

void cleanse(std::string& text) noexcept {
    text.resize(text.capacity());
    cleanse(text.data(), text.size());
    text.clear();
}

void cleanse(Bytes& octets) noexcept {
    octets.resize(octets.capacity());
    cleanse(octets.data(), octets.size());
    octets.clear();
}

SecretString& SecretString::operator=(const SecretString& other) {
    if (this != &other) {
        cleanse(text_);
        text_ = other.text_;
    }
    return *this;
}

SecretString& SecretString::operator=(SecretString&& other) noexcept {
    if (this != &other) {
        cleanse(text_);
        text_ = std::move(other.text_);
        cleanse(other.text_);
    }
    return *this;
}

} // namespace korvane
