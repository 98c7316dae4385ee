#include "tests/support/Vectors.h"

#include "Platform/Failure.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <stdexcept>

namespace korvane {
namespace {

struct Override {
    std::string published;
    std::string why;
    VectorOutcome outcome;
};

constexpr const char* kVacuous = "vacuous";

VectorOutcome outcomeOf(const std::string& expectation) {
    static const std::map<std::string, VectorOutcome> outcomes{
        {"accept", VectorOutcome::accept},
        {"reject", VectorOutcome::reject},
        {"either", VectorOutcome::either},
        {"either (OpenSSL rejects)", VectorOutcome::either},
        {"sealing fails, opening gives zero bytes", VectorOutcome::emptyPlaintext},
        {"an error or bytes unrelated to the message", VectorOutcome::messageHidden},
        {"reject when the verifier is built from the JWK alg, accept when built from the header alg",
         VectorOutcome::pinned}};
    return outcomes.at(expectation);
}

/// The overrides of a file by tcId.
std::map<int, Override> overridesOf(const std::string& file) {
    const JSON all = readVectors("wycheproof/overrides.json");
    std::map<int, Override> overrides;
    const auto found = all.at("files").find(file);
    if (found == all.at("files").end()) return overrides;
    for (const JSON& entry : *found)
        for (const JSON& tcId : entry.at("tcIds"))
            EXPECT_TRUE(overrides
                            .try_emplace(tcId.get<int>(), Override{entry.at("published"), entry.at("why"),
                                                                   outcomeOf(entry.at("expect"))})
                            .second)
                << file << " lists tcId " << tcId << " twice";
    return overrides;
}

/// What the check is to tell, or no value where either will do.
std::optional<bool> expectedAcceptance(VectorOutcome outcome) {
    if (outcome == VectorOutcome::either) return std::nullopt;
    return outcome != VectorOutcome::reject && outcome != VectorOutcome::messageHidden;
}

void runTest(const WycheproofCheck& check, const WycheproofTest& test) {
    bool isAccepted = false;
    try {
        isAccepted = check(test);
    } catch (const Failure&) {
        isAccepted = false;
    } catch (const std::exception& error) {
        ADD_FAILURE() << "not a failure of the library: " << error.what();
    }
    EXPECT_EQ(isAccepted, expectedAcceptance(test.outcome).value_or(isAccepted));
}

VectorOutcome publishedOutcome(const std::string& result) {
    if (result == "acceptable") return VectorOutcome::either;
    return result == "valid" ? VectorOutcome::accept : VectorOutcome::reject;
}

/// Runs a group and counts what ran; the overrides that applied are taken out of `overrides`.
std::ptrdiff_t runGroup(const JSON& group, const WycheproofGroup& makeCheck,
                        std::map<int, Override>& overrides) {
    const WycheproofCheck check = makeCheck(group);
    std::ptrdiff_t ran = 0;
    for (const JSON& test : group.at("tests")) {
        const int tcId = test.at("tcId");
        const std::string published = test.at("result");
        SCOPED_TRACE("tcId " + std::to_string(tcId) + ": " + test.at("comment").get<std::string>());
        WycheproofTest row{group, test, publishedOutcome(published), {}};
        if (const auto entry = overrides.extract(tcId)) {
            const Override& changed = entry.mapped();
            EXPECT_TRUE(changed.published == "any" || changed.published == published)
                << "published as " << published;
            if (changed.why == kVacuous) continue;
            row.outcome = changed.outcome;
            row.why = changed.why;
        }
        runTest(check, row);
        ++ran;
    }
    return ran;
}

} // namespace

const std::string& WycheproofTest::text(const char* member) const {
    return test.at(member).get_ref<const std::string&>();
}

Bytes WycheproofTest::bytes(const char* member) const {
    return hexMember(test, member);
}

void runWycheproof(const std::string& file, const WycheproofGroup& makeCheck) {
    SCOPED_TRACE(file);
    const JSON vectors = readVectors("wycheproof/" + file);
    std::map<int, Override> overrides = overridesOf(file);
    const auto skipped = std::count_if(overrides.begin(), overrides.end(),
                                       [](const auto& entry) { return entry.second.why == kVacuous; });
    std::ptrdiff_t ran = 0;
    for (const JSON& group : vectors.at("testGroups"))
        ran += runGroup(group, makeCheck, overrides);
    EXPECT_GT(ran, 0);
    EXPECT_EQ(ran, vectors.at("numberOfTests").get<std::ptrdiff_t>() - skipped);
    EXPECT_TRUE(overrides.empty()) << "overrides of tests that are not there, from tcId "
                                   << overrides.begin()->first;
}

void runWycheproof(const std::string& file, const WycheproofCheck& check) {
    runWycheproof(file, [&check](const JSON&) { return check; });
}

void runRFC(const std::string& file, std::size_t count, const std::function<void(const JSON& row)>& check) {
    SCOPED_TRACE(file);
    const JSON vectors = readVectors("rfc/" + file);
    std::size_t ran = 0;
    for (const JSON& row : vectors.at("vectors")) {
        SCOPED_TRACE("row " + std::to_string(++ran) + " " + row.value("name", ""));
        try {
            check(row);
        } catch (const std::exception& error) {
            ADD_FAILURE() << error.what();
        }
    }
    EXPECT_EQ(ran, count);
}

JSON readVectors(const std::string& path) {
    return JSON::parse(readFile(KORVANE_VECTORS "/" + path));
}

Bytes hexMember(const JSON& object, const char* name) {
    const std::string text = object.at(name);
    if (text.size() % 2 != 0 || text.find_first_not_of("0123456789abcdef") != std::string::npos)
        throw std::invalid_argument(std::string("not hexadecimal: ") + name);
    Bytes bytes;
    for (std::size_t at = 0; at < text.size(); at += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(text.substr(at, 2), nullptr, 16)));
    return bytes;
}

} // namespace korvane
