#include "Platform/Security/Secret.h"

#include <cstring>

namespace korvane {

namespace {

/// Read anew for each call, so that no compiler knows what is called and leaves it out. It fills many octets
/// at a time, which OPENSSL_cleanse does not: a long message would feel that.
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
