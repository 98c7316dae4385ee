#include "Platform/Security/Secret.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <new>

namespace korvane {
namespace {

/// Whether a text still stands in the memory of an object that has ended.
bool holds(const void* memory, std::size_t size, std::string_view text) {
    const auto* const start = static_cast<const char*>(memory);
    return std::search(start, start + size, text.begin(), text.end()) != start + size;
}

TEST(Secrets, ShortTextsAreGoneWhenTheyDie) {
    alignas(SecretString) std::array<unsigned char, sizeof(SecretString)> memory{};
    auto* secret = new (memory.data()) SecretString("short key");
    ASSERT_TRUE(holds(memory.data(), memory.size(), "short"));
    secret->~SecretString();
    EXPECT_FALSE(holds(memory.data(), memory.size(), "short"));
}

TEST(Secrets, NothingIsLeftBehindByAMove) {
    SecretString source("short key");
    SecretString target(std::move(source));
    EXPECT_EQ(target, "short key");
    EXPECT_FALSE(holds(&source, sizeof(source), "short"));
    target = SecretString("k");
    EXPECT_EQ(target, "k");
    EXPECT_FALSE(holds(&target, sizeof(target), "hort key"));
}

TEST(Secrets, CleansedTextLosesItsSpareCapacityToo) {
    std::string text(100, 's');
    text.resize(20);
    cleanse(text);
    EXPECT_TRUE(text.empty());
    text.resize(text.capacity(), '\0');
    EXPECT_EQ(text.find('s'), std::string::npos);
}

} // namespace
} // namespace korvane
