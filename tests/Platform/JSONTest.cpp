#include "Platform/JSON.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <limits>

namespace korvane {
namespace {

constexpr const char* kBig = "123456789012345678901234567890";

std::string nested(int depth, const std::string& innermost = "") {
    const auto count = static_cast<std::size_t>(depth);
    return std::string(count, '[') + innermost + std::string(count, ']');
}

TEST(JSONReading, NestingIsTakenUpToItsLimit) {
    for (const char* innermost : {"", "1", kBig}) {
        SCOPED_TRACE(innermost);
        EXPECT_TRUE(JSONSerialization::jsonObject(nested(JSONSerialization::kDepthLimit, innermost)));
        EXPECT_FALSE(JSONSerialization::jsonObject(nested(JSONSerialization::kDepthLimit + 1, innermost)));
    }
    EXPECT_FALSE(JSONSerialization::jsonObject(std::string(1000000, '[')));
}

TEST(JSONReading, MalformedTextIsRefused) {
    for (const char* text : {"", "{\"a\":1,}", "\"\x80\"", "{} {}", "\"\\ud800\"", "1e999", "\"\t\"",
                             "\xEF\xBB\xBF{", "[012345678901234567890123]", "[123456789012345678901234567890",
                             "[-]", "[123456789012345678901234567890.]", "[+123456789012345678901234567890]"})
        EXPECT_FALSE(JSONSerialization::jsonObject(text)) << text;
}

TEST(JSONReading, LastOfRepeatedMembersWinsInShortAndLongObjects) {
    for (const int others : {0, 14, 15, 16, 17}) {
        std::string text = "{\"again\":0";
        JSON expected{{"again", 3}};
        for (int index = 0; index < others; ++index) {
            text += ",\"m" + std::to_string(index) + "\":" + std::to_string(index);
            expected["m" + std::to_string(index)] = index;
        }
        expected["last"] = 4;
        EXPECT_EQ(JSONSerialization::jsonObject(text + R"(,"again":1,"last":2,"again":3,"last":4})"),
                  expected);
    }
}

/// Names of 16 characters that libstdc++'s hash of fixed seed makes one number of: the second eight octets
/// undo what the first have made of its state.
std::vector<std::string> namesOfOneHash(std::size_t count) {
    constexpr std::uint64_t kFactor = 0xC6A4A7935BD1E995U;
    constexpr std::uint64_t kInverse = 0x5F7A0EA7E59B19BDU; // modulo 2^64
    constexpr std::uint64_t kSeed = 0xC70F6907U ^ (16U * kFactor);
    const auto mixed = [](std::uint64_t octets) { return octets ^ (octets >> 47U); };
    std::vector<std::string> names;
    for (std::uint64_t chosen = 0; names.size() < count; ++chosen) {
        std::string name(16, '\0');
        for (std::size_t place = 0; place < 8; ++place)
            name[place] = static_cast<char>('a' + ((chosen >> (4 * place)) & 15U));
        std::uint64_t octets = 0;
        std::memcpy(&octets, name.data(), 8);
        octets = mixed(((kSeed ^ (mixed(octets * kFactor) * kFactor)) * kFactor) * kInverse) * kInverse;
        std::memcpy(name.data() + 8, &octets, 8);
        const auto isPlain = [](char octet) { return octet >= '#' && octet < 0x7F && octet != '\\'; };
        if (std::all_of(name.begin() + 8, name.end(), isPlain)) names.push_back(name);
    }
    return names;
}

TEST(JSONReading, FourTimesAsManyNamesOfOneHashTakeLessThanEightTimesAsLong) {
    const auto names = namesOfOneHash(800);
    ASSERT_EQ(std::hash<std::string>{}(names.front()), std::hash<std::string>{}(names.back()));
    // The least processor time of three readings of an object with the first of the names.
    const auto costOfReading = [&names](std::size_t count) {
        std::string text = "{\"last\":0";
        for (std::size_t index = 0; index < count; ++index)
            text += ",\"" + names[index] + "\":1";
        std::clock_t least = std::numeric_limits<std::clock_t>::max();
        for (int round = 0; round < 3; ++round) {
            const std::clock_t start = std::clock();
            EXPECT_EQ(JSONSerialization::jsonObject(text + "}")->size(), count + 1);
            least = std::min(least, std::clock() - start);
        }
        return least;
    };
    EXPECT_LT(costOfReading(800), 8 * costOfReading(200)) << "16 times would be the square";
}

TEST(JSONReading, IntegersBeyondSixtyFourBitsAreNumbers) {
    const auto value = JSONSerialization::jsonObject(
        R"({"big":123456789012345678901234567890,"neg":-9223372036854775809,"e":[12345678901234567890123e1],)"
        R"("most":18446744073709551615,"least":-9223372036854775808,"\"1":"\\123456789012345678901"})");
    EXPECT_EQ(value, JSON({{"big", 1.2345678901234568e29},
                           {"neg", -9223372036854775808.0},
                           {"e", JSON::array({1.2345678901234569e23})},
                           {"most", std::numeric_limits<std::uint64_t>::max()},
                           {"least", std::numeric_limits<std::int64_t>::min()},
                           {"\"1", "\\123456789012345678901"}}));
}

TEST(JSONWriting, OnlyWhatCanBeReadAgainIsWritten) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const JSON& value : {JSON("text"), JSON(), JSON{{"n", kInfinity}}, JSON{{"s", "\xFF"}},
                              JSON{{"\xFF", "s"}}, JSON{{"b", JSON::binary({1})}}})
        EXPECT_FALSE(JSONSerialization::data(value));
    const std::string text = R"({"b":[1,-2.5,true,null,{}],"a":{"\"d\n":"\u001f","":[]}})";
    EXPECT_EQ(JSONSerialization::data(JSON::parse(text)), text);
}

TEST(JSONWriting, MembersComeOneByOneInTheShortestForm) {
    JSONObjectWriter writer;
    writer.addString("\t", "\b\f\n\r\t\"\\/\x01\x1f\x7f\u00e9");
    writer.addBoolean("yes", true);
    writer.addJSON("list", "[1]");
    writer.addString("repaired", "\xFFz");
    EXPECT_EQ(std::move(writer).finish(),
              "{\"\\t\":\"\\b\\f\\n\\r\\t\\\"\\\\/\\u0001\\u001f\x7f\u00e9\",\"yes\":true,\"list\":[1],"
              "\"repaired\":\"\uFFFDz\"}");
    EXPECT_EQ(JSONObjectWriter().finish(), "{}");
}

TEST(JSONReading, MembersComeInOrderWithTheirRepeats) {
    const std::string deepest = nested(JSONSerialization::kDepthLimit - 1);
    const std::string big = kBig;
    using enum JSONTopLevel;
    const struct {
        std::string text;
        JSONTopLevel top;
        std::string members;
    } rows[] = {
        {R"({"b":)" + big + R"(,"a":{"x":1,"x":2},"b":"2"})", object,
         R"(b=1.2345678901234568e+29 a={"x":2} b="2" )"},
        {"{\"a\":" + big + ",}", malformed, ""},
        {"[" + big + "]", otherValue, ""},
        {"{\"a\":[" + deepest + "]}", malformed, ""},
        {"{\"a\":" + deepest + "}", object, "a=" + deepest + " "},
    };
    for (const auto& row : rows) {
        std::string seen;
        const auto keep = [&seen](std::string_view name, JSON&& value) {
            seen += std::string(name) + "=" + value.dump() + " ";
        };
        EXPECT_EQ(JSONSerialization::forEachMember(row.text, keep), row.top) << row.text;
        EXPECT_EQ(seen, row.members);
    }
}

} // namespace
} // namespace korvane
