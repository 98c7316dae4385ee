#include "Platform/Security/Secret.h"

#include <openssl/crypto.h>

namespace korvane {

void cleanse(void* octets, std::size_t size) noexcept {
    OPENSSL_cleanse(octets, size);
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
