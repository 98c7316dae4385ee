#include "Platform/Security/SecTrust.h"
#include "Platform/Security/DEREncoding.h"
#include "tests/support/TestPki.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>

namespace korvane {
namespace {

using Chain = std::vector<TestIdentity>;
using Date = std::chrono::system_clock::time_point;

std::vector<SecCertificate> certificatesOf(const Chain& identities) {
    std::vector<SecCertificate> certificates;
    for (const TestIdentity& each : identities)
        certificates.push_back(each.certificate());
    return certificates;
}

/// The text of the refusal, or an empty one for a trusted chain.
std::string judged(const Chain& chain, const Chain& anchors, std::optional<Date> date = std::nullopt) {
    std::optional<SecTrust> trust;
    EXPECT_EQ(SecTrustCreateWithCertificates(certificatesOf(chain), SecPolicyCreateBasicX509(), trust), 0);
    SecTrustSetAnchorCertificates(*trust, certificatesOf(anchors));
    const auto error = SecTrustEvaluateWithError(*trust, date);
    return error ? error->localizedDescription() : "";
}

/// From the lowest authority up to the one below the root.
Chain withoutRoot(const Chain& line) {
    return {line.rbegin(), line.rend() - 1};
}

TEST(SecTrust, ChainsUpToTheAnchorAreTrustedAndBrokenOnesRefused) {
    const Chain line = authorities(9), deep = authorities(18);
    const TestIdentity &root = line[0], &first = line[1], &second = line[2];
    const TestIdentity namesake = selfSigned(authority("Root"));
    const TestIdentity leaf = second.issue({}), direct = root.issue({});
    const TestIdentity intruder = direct.issue({.commonName = "Intruder"});
    Chain ten = withoutRoot(line);
    ten.insert(ten.begin(), line[9].issue({}));
    const auto below = [&root](const std::function<void(CertificateFields&)>& change) {
        CertificateFields fields = authority("Other");
        change(fields);
        return root.issue(fields);
    };
    const auto late = below([](auto& fields) { fields.firstDay = -9, fields.lastDay = -1; });
    const auto small = below([](auto& fields) { fields.key = TestKeyType::rsa1024; });
    const auto ofOne = below([](auto& fields) { fields.key = TestKeyType::rsaOfOne; });
    const auto silent = below([](auto& fields) {
        fields.extensions = {{"keyUsage", "keyCertSign"}};
        fields.basicConstraints.clear();
    });
    static constexpr const char* kPolicy = "DER:3007300506032A0304"; // the one policy 1.2.3.4
    const auto strict = below([](auto& fields) {
        fields.extensions = {{"policyConstraints", "critical,requireExplicitPolicy:0"},
                             {"certificatePolicies", kPolicy}};
    });
    const TestIdentity allowed = strict.issue({.extensions = {{"certificatePolicies", kPolicy}}});
    TestIdentity changed = direct;
    changed.der.back() ^= 1U;

    constexpr const char* kExpired = "certificate has expired";
    constexpr const char* kSignature = "certificate signature failure";
    constexpr const char* kNoAuthority = "invalid CA certificate";
    constexpr const char* kNoIssuer = "unable to get local issuer certificate";
    constexpr const char* kForeignRoot = "self-signed certificate in certificate chain";
    constexpr const char* kWeakLeaf = "EE certificate key too weak";
    constexpr const char* kWeakAuthority = "CA certificate key too weak";
    // Nothing that judges chains knows what a comment would demand.
    const TestIdentity unknown = root.issue({.extensions = {{"nsComment", "critical,DER:0401AA"}}});
    const struct {
        const char* name;
        Chain chain;
        Chain anchors;
        const char* refusal = "";
    } rows[] = {
        {"a policy that is asked for and there", {allowed, strict}, {root}},
        {"RSA of 2048 bits", {root.issue({.key = TestKeyType::rsa2048})}, {root}},
        {"the root sent too", {direct, root}, {root}},
        {"any order behind the leaf", {leaf, root, first, second}, {root}},
        {"ten certificates", ten, {root}},
        {"an anchor that did not sign itself", {leaf, second}, {first}},
        {"the anchor below a chain that goes on", {leaf, second, first, root}, {second}},
        {"the leaf is the anchor", {direct}, {direct}},
        {"one anchor of two", {direct}, {line[5], root}},
        {"expired", {root.issue({.firstDay = -9, .lastDay = -1})}, {root}, kExpired},
        {"not yet valid", {root.issue({.firstDay = 1})}, {root}, "certificate is not yet valid"},
        {"expired intermediate", {late.issue({}), late}, {root}, kExpired},
        {"expired anchor", {late.issue({})}, {late}, kExpired},
        {"the issuer's name, another key", {namesake.issue({})}, {root}, kSignature},
        {"changed signature", {changed}, {root}, kSignature},
        {"a leaf as issuer", {intruder, direct}, {root}, kNoAuthority},
        {"an issuer that may sign but is no authority", {silent.issue({}), silent}, {root}, kNoAuthority},
        {"an anchor that may not sign", {intruder}, {direct}, kNoAuthority},
        {"foreign root, sent too", {namesake.issue({}), namesake}, {first}, kForeignRoot},
        {"self-signed", {selfSigned({})}, {root}, "self-signed certificate"},
        {"missing intermediate", {leaf, second}, {root}, kNoIssuer},
        {"wrong first certificate", {second, leaf}, {leaf}, kNoIssuer},
        {"no anchor at all", {leaf, second, first, root}, {}, kForeignRoot},
        {"SHA-1", {root.issue({.digest = "SHA1"})}, {root}, "CA signature digest algorithm too weak"},
        {"RSA of 1024 bits", {small}, {root}, kWeakLeaf},
        {"RSA of 1024 bits above the leaf", {small.issue({}), small}, {root}, kWeakAuthority},
        {"RSA of 1024 bits as anchor", {small.issue({})}, {small}, kWeakAuthority},
        {"the leaf's RSA exponent is 1", {ofOne}, {root}, kWeakLeaf},
        {"a forgery under an exponent of 1", {ofOne.issue({}), ofOne}, {root}, kWeakAuthority},
        {"a missing policy", {strict.issue({}), strict}, {root}, "no explicit policy"},
        {"unknown critical extension", {unknown}, {root}, "unhandled critical extension"},
        {"longer than any real chain", withoutRoot(deep), {deep[0]}, "certificate chain too long"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(judged(row.chain, row.anchors), row.refusal);
    }
}

TEST(SecTrust, IsJudgedByTheDateThatIsGiven) {
    const TestIdentity root = selfSigned(authority("Root"));
    const TestIdentity leaf = root.issue({});
    const Date now = std::chrono::system_clock::now();
    const auto day = std::chrono::hours(24);
    EXPECT_EQ(judged({leaf}, {root}, now + 364 * day), "");
    EXPECT_EQ(judged({leaf}, {root}, now + 366 * day), "certificate has expired");
    EXPECT_EQ(judged({leaf}, {root}, now - 2 * day), "certificate is not yet valid");
    std::optional<SecTrust> trust;
    EXPECT_EQ(SecTrustCreateWithCertificates({}, SecPolicyCreateBasicX509(), trust), CFError::errSecParam);
}

TEST(SecCertificate, BERThatIsNotDERIsRefused) {
    const Bytes der = selfSigned(authority("Root")).der;
    const Bytes authority{0x30, 3, 1, 1, 0xFF};
    const auto found = std::search(der.begin(), der.end(), authority.begin(), authority.end());
    ASSERT_NE(found, der.end());
    EXPECT_TRUE(SecCertificateCreateWithData(der));
    Bytes changed = der;
    changed[static_cast<std::size_t>(found - der.begin()) + 4] = 1;
    EXPECT_FALSE(SecCertificateCreateWithData(changed)) << "an authority that says 01";
    changed = der;
    changed[1] = 0x83;
    changed.insert(changed.begin() + 2, 0);
    EXPECT_FALSE(SecCertificateCreateWithData(changed)) << "a length with a zero in front";
}

TEST(SecCertificate, DERIsToldByItsBytes) {
    using namespace std::string_view_literals;
    for (const auto good :
         {"\x30\0"sv, "\1\1\xFF"sv, "\2\2\0\x80"sv, "\2\2\xFF\x7F"sv, "\3\2\4\xF0"sv, "\xA0\2\5\0"sv})
        EXPECT_TRUE(isDER(asBytes(good))) << testing::PrintToString(good);
    // No length, a byte behind the value, a primitive sequence, a tag of several bytes, a fault inside.
    for (const auto bad : {""sv, "\x30"sv, "\x30\0\0"sv, "\x10\0"sv, "\x1F\x81\1\0"sv, "\xA0\2\5\1"sv})
        EXPECT_FALSE(isDER(asBytes(bad))) << testing::PrintToString(bad);
    // Lengths that are longer than need be, beyond all there is, or without an end.
    for (const auto bad :
         {"\x30\x81\0"sv, "\x30\x84\xFF\xFF\xFF\xFF"sv, "\x30\x88\1\0\0\0\0\0\0\0"sv, "\x30\x80\0\0"sv})
        EXPECT_FALSE(isDER(asBytes(bad))) << testing::PrintToString(bad);
    // Truths, numbers, bits, nulls and identifiers in forms that are not the one; octets in pieces.
    for (const auto bad : {"\1\1\1"sv, "\2\0"sv, "\2\2\0\x7F"sv, "\2\2\xFF\x80"sv, "\3\2\4\xF8"sv, "\3\1\1"sv,
                           "\5\1\0"sv, "\6\2\x80\1"sv, "\6\1\x81"sv, "\x24\3\4\1\7"sv})
        EXPECT_FALSE(isDER(asBytes(bad))) << testing::PrintToString(bad);
    Bytes deep{0x05, 0};
    for (std::uint8_t level = 2; level <= 33; ++level) {
        deep.insert(deep.begin(), {0x30, static_cast<std::uint8_t>(deep.size())});
        EXPECT_EQ(isDER(deep), level <= 32) << int{level};
    }
}

} // namespace
} // namespace korvane
