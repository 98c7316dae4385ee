#include "Platform/JSON.h"
#include "Platform/JSONDecoding.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <limits>

namespace korvane {
namespace {

std::string nested(int depth, const std::string& innermost = "") {
    const auto count = static_cast<std::size_t>(depth);
    return std::string(count, '[') + innermost + std::string(count, ']');
}

TEST(JSONReading, NestingIsTakenUpToItsLimit) {
    const std::string bigNumber = "123456789012345678901234567890";
    for (const std::string& innermost : {std::string(), std::string("1"), bigNumber}) {
        SCOPED_TRACE(innermost);
        EXPECT_TRUE(JSONSerialization::jsonObject(nested(JSONSerialization::kDepthLimit, innermost)));
        EXPECT_FALSE(JSONSerialization::jsonObject(nested(JSONSerialization::kDepthLimit + 1, innermost)));
    }
    EXPECT_FALSE(JSONSerialization::jsonObject(nested(100000)));
    EXPECT_FALSE(JSONSerialization::jsonObject(std::string(1000000, '[')));
}

TEST(JSONReading, MalformedTextIsRefused) {
    const std::vector<std::string> texts{
        "",           " ",        "{",     "{\"a\":1,}", "{'a':1}",     "[1 2]",
        "{\"a\"}",    "\"\x80\"", "nul",   "{} {}",      "\"\\ud800\"", "01",
        "{\"a\":.5}", "[1] 2",    "1e999", "\"\t\"",     "{\"a\":NaN}", "\xEF\xBB\xBF{"};
    for (const std::string& text : texts)
        EXPECT_FALSE(JSONSerialization::jsonObject(text)) << text;
}

TEST(JSONReading, LastOfRepeatedMembersWinsInShortAndLongObjects) {
    for (const int others : {0, 14, 15, 16, 17, 40}) {
        SCOPED_TRACE(others);
        std::string text = "{\"again\":0";
        for (int index = 0; index < others; ++index)
            text += ",\"m" + std::to_string(index) + "\":" + std::to_string(index);
        const auto value =
            JSONSerialization::jsonObject(text + ",\"again\":1,\"last\":2,\"again\":3,\"last\":4}");
        ASSERT_TRUE(value);
        EXPECT_EQ(value->size(), static_cast<std::size_t>(others) + 2);
        EXPECT_EQ(value->at("again"), 3);
        EXPECT_EQ(value->at("last"), 4);
        EXPECT_EQ(value->begin().key(), "again");
    }
}

/// Undoes the mixing that libstdc++'s hash of fixed seed does with eight octets.
std::uint64_t unmixed(std::uint64_t mixed) {
    constexpr std::uint64_t kInverse = 0x5F7A0EA7E59B19BDU; // of the factor 0xC6A4A7935BD1E995, modulo 2^64
    mixed *= kInverse;
    return (mixed ^ (mixed >> 47U)) * kInverse;
}

/// Names of 16 characters that a table with that hash puts into one place.
std::vector<std::string> namesOfOneHash(std::size_t count) {
    constexpr std::uint64_t kFactor = 0xC6A4A7935BD1E995U;
    constexpr std::uint64_t kSeed = 0xC70F6907U ^ (16U * kFactor);
    const auto isPrintable = [](char octet) { return octet >= '#' && octet < 0x7F && octet != '\\'; };
    std::vector<std::string> names;
    for (std::uint64_t chosen = 0; names.size() < count; ++chosen) {
        std::array<char, 16> name{};
        for (std::size_t place = 0; place < 8; ++place)
            name[place] = static_cast<char>('a' + ((chosen >> (4 * place)) & 15U));
        std::uint64_t first = 0;
        std::memcpy(&first, name.data(), 8);
        first *= kFactor;
        const std::uint64_t state = (kSeed ^ ((first ^ (first >> 47U)) * kFactor)) * kFactor;
        const std::uint64_t second = unmixed(state); // so that the state becomes 0
        std::memcpy(name.data() + 8, &second, 8);
        if (std::all_of(name.begin() + 8, name.end(), isPrintable))
            names.emplace_back(name.data(), name.size());
    }
    return names;
}

/// The least processor time of three readings.
std::clock_t costOfReading(const std::vector<std::string>& names, std::size_t count) {
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
}

TEST(JSONReading, NamesOfOneHashTakeTimeInProportion) {
    const auto names = namesOfOneHash(1600);
    ASSERT_EQ(std::hash<std::string>{}(names.front()), std::hash<std::string>{}(names.back()));
    EXPECT_LT(costOfReading(names, 1600), 8 * costOfReading(names, 400)) << "16 times would be the square";
}

TEST(JSONReading, IntegersBeyondSixtyFourBitsAreNumbers) {
    const std::string padding(20000, 'p');
    auto value = JSONSerialization::jsonObject(
        R"({"big":123456789012345678901234567890,"neg":-9223372036854775809,"e":[12345678901234567890123e1],)"
        R"("most":18446744073709551615,"least":-9223372036854775808,"\"1":"\\123456789012345678901","p":")" +
        padding + "\"}");
    ASSERT_TRUE(value);
    EXPECT_EQ(value->erase("p"), 1U);
    EXPECT_EQ(*value, JSON({{"big", 1.2345678901234568e29},
                            {"neg", -9223372036854775808.0},
                            {"e", JSON::array({1.2345678901234569e23})},
                            {"most", std::numeric_limits<std::uint64_t>::max()},
                            {"least", std::numeric_limits<std::int64_t>::min()},
                            {"\"1", "\\123456789012345678901"}}));
    for (const char* bad : {"[012345678901234567890123]", "[123456789012345678901234567890", "[-]",
                            "[123456789012345678901234567890.]", "[+123456789012345678901234567890]"})
        EXPECT_FALSE(JSONSerialization::jsonObject(bad)) << bad;
}

TEST(JSONWritingTest, OnlyWritableContainersAreValid) {
    JSON loop = JSON::object();
    loop["inner"] = JSON::array({1, "two", nullptr});
    EXPECT_TRUE(JSONSerialization::isValidJSONObject(loop));
    const std::vector<JSON> refused{JSON("text"),
                                    JSON(1),
                                    JSON(),
                                    JSON{{"n", std::numeric_limits<double>::infinity()}},
                                    JSON{{"n", std::numeric_limits<double>::quiet_NaN()}},
                                    JSON{{"s", "\xFF"}},
                                    JSON{{"\xFF", "s"}},
                                    JSON{{"b", JSON::binary({1})}}};
    for (const JSON& value : refused) {
        EXPECT_FALSE(JSONSerialization::isValidJSONObject(value));
        EXPECT_FALSE(JSONSerialization::data(value));
    }
    const std::string text = R"({"b":[1,-2.5,true,null,{}],"a":{"\"d\n":"\u001f","":[]}})";
    EXPECT_EQ(JSONSerialization::data(JSON::parse(text)), text);
}

TEST(JSONWritingTest, WrittenMembersReadBackAsTheyWere) {
    std::string text;
    for (char character = 1; character < 127; ++character)
        text += character;
    text += "\u00e9\u4e2d";
    JSONObjectWriter writer;
    writer.addString("a \"name\"", text);
    writer.addBoolean("yes", true);
    writer.addJSON("list", "[1]");
    writer.addString("repaired", "\xFFz");
    const std::string json = std::move(writer).finish();
    EXPECT_EQ(
        JSONSerialization::jsonObject(json),
        JSON::object(
            {{"a \"name\"", text}, {"yes", true}, {"list", JSON::array({1})}, {"repaired", "\uFFFDz"}}));
    EXPECT_EQ(JSONObjectWriter().finish(), "{}");
}

TEST(JSONWritingTest, CharactersAreWrittenInTheirShortestForm) {
    JSONObjectWriter writer;
    writer.addString("\t", "\b\f\n\r\t\"\\/\x01\x1f\x7f\u00e9");
    EXPECT_EQ(std::move(writer).finish(), "{\"\\t\":\"\\b\\f\\n\\r\\t\\\"\\\\/\\u0001\\u001f\x7f\u00e9\"}");
}

TEST(JSONReading, MembersComeInOrderWithTheirRepeats) {
    std::vector<std::string> seen;
    const auto read = [&seen](const std::string& text) {
        seen.clear();
        return JSONSerialization::forEachMember(text, [&seen](std::string_view name, JSON&& value) {
            seen.push_back(std::string(name) + "=" + value.dump());
        });
    };
    EXPECT_EQ(read(R"({"b":1,"a":{"x":1,"x":2},"b":"2"})"), JSONTopLevel::object);
    EXPECT_THAT(seen, testing::ElementsAre("b=1", R"(a={"x":2})", R"(b="2")"));
    const std::string big = "123456789012345678901234567890";
    EXPECT_EQ(read(R"({"b":)" + big + R"(,"a":{"x":[1]},"b":[2],"c":"t"})"), JSONTopLevel::object);
    EXPECT_THAT(seen,
                testing::ElementsAre("b=1.2345678901234568e+29", R"(a={"x":[1]})", "b=[2]", R"(c="t")"));
    EXPECT_EQ(read("{\"a\":" + big + ",}"), JSONTopLevel::malformed);
    EXPECT_EQ(read("[" + big + "]"), JSONTopLevel::otherValue);
    EXPECT_EQ(read("[1]"), JSONTopLevel::otherValue);
    EXPECT_EQ(read("{\"a\":"), JSONTopLevel::malformed);
    const std::string deepest = nested(JSONSerialization::kDepthLimit - 1);
    EXPECT_EQ(read("{\"a\":" + deepest + "}"), JSONTopLevel::object);
    EXPECT_EQ(read("{\"a\":[" + deepest + "]}"), JSONTopLevel::malformed);
}

TEST(Decoding, FaultsAreToldApartAndNameTheirPlace) {
    const JSON object = decodeObject(
        R"({"text":"t","null":null,"number":1,"list":[{"a":"x"},{"a":2}],"map":{"k":1},"unnamed":{"":1}})");
    const JSONField root(object);
    EXPECT_EQ(decodeString(object, "text"), "t");
    EXPECT_FALSE(root.memberIfPresent("null"));
    EXPECT_FALSE(root.memberIfPresent("absent"));
    const struct {
        DecodingErrorCase kind;
        std::function<void()> action;
        std::vector<std::string> path;
    } rows[] = {
        {DecodingErrorCase::keyNotFound,
         [&] { static_cast<void>(decodeString(object, "absent")); },
         {"absent"}},
        {DecodingErrorCase::valueNotFound,
         [&] { static_cast<void>(decodeString(object, "null")); },
         {"null"}},
        {DecodingErrorCase::typeMismatch,
         [&] { static_cast<void>(decodeString(object, "number")); },
         {"number"}},
        {DecodingErrorCase::typeMismatch,
         [&] { static_cast<void>(root.member("map").stringTable()); },
         {"map", "k"}},
        {DecodingErrorCase::typeMismatch,
         [&] { static_cast<void>(root.member("unnamed").stringTable()); },
         {"unnamed", ""}},
        {DecodingErrorCase::typeMismatch, [&] { static_cast<void>(root.member("map").elements()); }, {"map"}},
        {DecodingErrorCase::typeMismatch,
         [&] {
             const JSONField list = root.member("list");
             for (const JSONField& element : list.elements())
                 static_cast<void>(element.member("a").string());
         },
         {"list", "Index 1", "a"}},
        {DecodingErrorCase::dataCorrupted, [] { static_cast<void>(decodeObject("{")); }, {}},
        {DecodingErrorCase::typeMismatch, [] { static_cast<void>(decodeObject("[]")); }, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.path));
        try {
            row.action();
            ADD_FAILURE() << "raised nothing";
        } catch (const DecodingError& error) {
            EXPECT_EQ(error.kind(), row.kind);
            EXPECT_EQ(error.codingPath(), row.path);
        }
    }
}

} // namespace
} // namespace korvane
