#pragma once

#include "Platform/Bytes.h"

#include <cstddef>
#include <map>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korvane {

/// Overwrites `size` octets in a way that the compiler does not remove.
void cleanse(void* octets, std::size_t size) noexcept;

/// Overwrites a text, its spare capacity included, and leaves it empty.
void cleanse(std::string& text) noexcept;

/// As above, for octets.
void cleanse(Bytes& octets) noexcept;

/// Cleanses memory before it gives it back.
template <class T>
struct CleansingAllocator {
    using value_type = T;

    CleansingAllocator() = default;
    template <class U>
    CleansingAllocator(const CleansingAllocator<U>&) noexcept {}

    T* allocate(std::size_t count) { return static_cast<T*>(::operator new(count * sizeof(T))); }

    void deallocate(T* items, std::size_t count) noexcept {
        cleanse(items, count * sizeof(T));
        ::operator delete(items);
    }

    friend bool operator==(const CleansingAllocator&, const CleansingAllocator&) { return true; }
};

/// Octets of key material: like `Bytes`, but overwritten when they die or move.
using SecretBytes = std::vector<std::uint8_t, CleansingAllocator<std::uint8_t>>;

inline SecretBytes toSecretBytes(ByteView bytes) {
    return {bytes.begin(), bytes.end()};
}

/// A text that may be key material (a Base64URL private number): overwritten when it dies.
class SecretString {
public:
    SecretString() = default;
    SecretString(std::string text) : text_(std::move(text)) { cleanse(text); }
    SecretString(std::string_view text) : text_(text) {}
    SecretString(const char* text) : text_(text) {}
    SecretString(const SecretString&) = default;
    SecretString(SecretString&& other) noexcept : text_(std::move(other.text_)) { cleanse(other.text_); }
    SecretString& operator=(const SecretString& other);
    SecretString& operator=(SecretString&& other) noexcept;
    ~SecretString() { cleanse(text_); }

    [[nodiscard]] const std::string& text() const noexcept { return text_; }
    operator const std::string&() const noexcept { return text_; }
    operator std::string_view() const noexcept { return text_; }

    friend bool operator==(const SecretString& left, const SecretString& right) {
        return left.text_ == right.text_;
    }
    friend bool operator==(const SecretString& left, std::string_view right) { return left.text_ == right; }
    friend bool operator==(const SecretString& left, const char* right) { return left.text_ == right; }

private:
    std::string text_;
};

/// A map from names to texts that may be key material.
using StringMap = std::map<std::string, SecretString, std::less<>>;

} // namespace korvane
