#include "tests/support/Vectors.h"

#include "Platform/Failure.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <map>
#include <tuple>
#include <utility>

namespace korvane {
namespace {

/// What overrides call a test that says nothing.
constexpr const char* kVacuous = "vacuous";

VectorOutcome outcomeOf(const std::string& expectation) {
    static const std::map<std::string, VectorOutcome> outcomes{
        {"valid", VectorOutcome::accept},
        {"acceptable", VectorOutcome::either},
        {"invalid", VectorOutcome::reject},
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

/// What is changed of a file's tests: outcome and reason, by tcId.
std::map<int, std::pair<VectorOutcome, std::string>> overridesOf(const std::string& file) {
    std::map<int, std::pair<VectorOutcome, std::string>> overrides;
    const JSON files = readVectors("wycheproof/overrides.json").at("files");
    for (const JSON& entry : files.value(file, JSON::array()))
        for (const JSON& tcId : entry.at("tcIds"))
            overrides[tcId.get<int>()] = {outcomeOf(entry.at("expect")), entry.at("why")};
    return overrides;
}

void runTest(const WycheproofCheck& check, const WycheproofTest& test) {
    bool isAccepted = false;
    try {
        isAccepted = check(test);
    } catch (const Failure&) {
        isAccepted = false;
    }
    if (test.outcome == VectorOutcome::either) return;
    EXPECT_NE(isAccepted,
              test.outcome == VectorOutcome::reject || test.outcome == VectorOutcome::messageHidden);
}

} // namespace

void runWycheproof(const std::string& file, const WycheproofGroup& makeCheck) {
    auto overrides = overridesOf(file);
    std::size_t ran = 0;
    const JSON vectors = readVectors("wycheproof/" + file);
    for (const JSON& group : vectors.at("testGroups")) {
        const WycheproofCheck check = makeCheck(group);
        for (const JSON& test : group.at("tests")) {
            SCOPED_TRACE(file + ", tcId " + test.at("tcId").dump() + ": " + test.at("comment").dump());
            WycheproofTest row{group, test, outcomeOf(test.at("result")), {}};
            if (const auto entry = overrides.extract(test.at("tcId").get<int>()))
                std::tie(row.outcome, row.why) = entry.mapped();
            if (row.why != kVacuous) runTest(check, row);
            ++ran;
        }
    }
    EXPECT_EQ(ran, vectors.at("numberOfTests").get<std::size_t>()) << file;
    EXPECT_TRUE(overrides.empty()) << file << " has no tcId " << overrides.begin()->first;
}

void runRFC(const std::string& file, std::size_t count, const std::function<void(const JSON& row)>& check) {
    std::size_t ran = 0;
    const JSON vectors = readVectors("rfc/" + file);
    for (const JSON& row : vectors.at("vectors")) {
        SCOPED_TRACE(file + ", row " + std::to_string(++ran) + " " + row.value("name", ""));
        check(row);
    }
    EXPECT_EQ(ran, count);
}

JSON readVectors(const std::string& path) {
    return JSON::parse(readFile(KORVANE_VECTORS "/" + path));
}

Bytes hexMember(const JSON& object, const char* name) {
    const std::string text = object.at(name);
    Bytes bytes;
    for (std::size_t at = 0; at < text.size(); at += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(text.substr(at, 2), nullptr, 16)));
    return bytes;
}

} // namespace korvane
