#include "Platform/Security/SecTrust.h"
#include "Platform/Security/DEREncoding.h"
#include "tests/support/TestPki.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <thread>

namespace korvane {
namespace {

/// The text of the refusal, or an empty one for a trusted chain.
std::string judged(const std::vector<TestIdentity>& chain, const std::vector<TestIdentity>& anchors,
                   std::optional<std::chrono::system_clock::time_point> date = std::nullopt) {
    const auto certificatesOf = [](const std::vector<TestIdentity>& identities) {
        std::vector<SecCertificate> certificates;
        for (const TestIdentity& each : identities)
            certificates.push_back(each.certificate());
        return certificates;
    };
    std::optional<SecTrust> trust;
    EXPECT_EQ(SecTrustCreateWithCertificates(certificatesOf(chain), SecPolicyCreateBasicX509(), trust), 0);
    SecTrustSetAnchorCertificates(*trust, certificatesOf(anchors));
    const auto error = SecTrustEvaluateWithError(*trust, date);
    return error ? error->localizedDescription() : "";
}

/// The one policy 1.2.3.4.
constexpr const char* kPolicy = "DER:3007300506032A0304";

TEST(SecTrust, WithoutCertificatesIsNotMade) {
    std::optional<SecTrust> trust;
    EXPECT_EQ(SecTrustCreateWithCertificates({}, SecPolicyCreateBasicX509(), trust), CFError::errSecParam);
    EXPECT_FALSE(trust);
}

TEST(SecTrust, ChainsUpToTheAnchorAreTrusted) {
    const auto line = authorities(9);
    const TestIdentity &root = line[0], &first = line[1], &second = line[2];
    const TestIdentity leaf = second.issue({});
    const TestIdentity direct = root.issue({});
    const TestIdentity authorityLeaf = root.issue(authority("ACS"));
    std::vector<TestIdentity> ten{line.rbegin(), line.rend() - 1};
    ten.insert(ten.begin(), line[9].issue({}));
    ASSERT_EQ(ten.size(), 10U);

    CertificateFields withPolicy = authority("Policy");
    withPolicy.extensions = {{"policyConstraints", "critical,requireExplicitPolicy:0"},
                             {"certificatePolicies", kPolicy}};
    const TestIdentity constrained = root.issue(withPolicy);

    struct Row {
        const char* name;
        std::vector<TestIdentity> chain;
        std::vector<TestIdentity> anchors;
    };
    const std::vector<Row> rows{
        {"a policy that is asked for and there",
         {constrained.issue({.extensions = {{"certificatePolicies", kPolicy}}}), constrained},
         {root}},
        {"RSA of 2048 bits", {root.issue({.key = TestKeyType::rsa2048})}, {root}},
        {"leaf under the root", {direct}, {root}},
        {"the root sent too", {direct, root}, {root}},
        {"two intermediates", {leaf, second, first}, {root}},
        {"any order behind the leaf", {leaf, root, first, second}, {root}},
        {"ten certificates", ten, {root}},
        {"an anchor that did not sign itself", {leaf, second}, {first}},
        {"the anchor below a chain that goes on", {leaf, second, first, root}, {second}},
        {"the leaf is the anchor", {direct}, {direct}},
        {"a leaf that may sign", {authorityLeaf}, {root}},
        {"one anchor of two", {direct}, {line[5], root}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(judged(row.chain, row.anchors), "");
    }
}

TEST(SecTrust, BrokenChainsAreRefused) {
    const auto line = authorities(1);
    const TestIdentity &root = line[0], &intermediate = line[1];
    const TestIdentity namesake = selfSigned(authority("Root"));
    const TestIdentity leaf = intermediate.issue({});
    const TestIdentity silent = root.issue({.commonName = "Silent",
                                            .basicConstraints = TestBasicConstraints::absent,
                                            .keyUsage = "keyCertSign"});
    const TestIdentity lateAuthority = root.issue({.commonName = "Late",
                                                   .basicConstraints = TestBasicConstraints::authority,
                                                   .firstDay = -9,
                                                   .lastDay = -1});
    TestIdentity changed = root.issue({});
    changed.der.back() ^= 1U;
    std::vector<TestIdentity> deep = authorities(18);
    std::vector<TestIdentity> tooDeep{deep.rbegin(), deep.rend() - 1};

    const auto under = [&root](TestKeyType key) {
        CertificateFields fields = authority("Weak");
        fields.key = key;
        return root.issue(fields);
    };
    const TestIdentity small = under(TestKeyType::rsa1024);
    const TestIdentity ofOne = under(TestKeyType::rsaOfOne);
    CertificateFields withPolicy = authority("Policy");
    withPolicy.extensions = {{"policyConstraints", "critical,requireExplicitPolicy:0"}};
    const TestIdentity withoutPolicies = root.issue(withPolicy);
    withPolicy.extensions.push_back({"certificatePolicies", kPolicy});
    const TestIdentity constrained = root.issue(withPolicy);

    struct Row {
        const char* name;
        std::vector<TestIdentity> chain;
        std::vector<TestIdentity> anchors;
        const char* text;
    };
    const std::vector<Row> rows{
        {"expired", {root.issue({.firstDay = -9, .lastDay = -1})}, {root}, "certificate has expired"},
        {"not yet valid", {root.issue({.firstDay = 1})}, {root}, "certificate is not yet valid"},
        {"expired intermediate", {lateAuthority.issue({}), lateAuthority}, {root}, "certificate has expired"},
        {"expired anchor", {lateAuthority.issue({})}, {lateAuthority}, "certificate has expired"},
        {"issuer of the right name, another key",
         {namesake.issue({})},
         {root},
         "certificate signature failure"},
        {"changed signature", {changed}, {root}, "certificate signature failure"},
        {"a leaf as issuer",
         {leaf.issue({.commonName = "Intruder"}), leaf, intermediate},
         {root},
         "invalid CA certificate"},
        {"an issuer that may sign but does not say it is an authority",
         {silent.issue({}), silent},
         {root},
         "invalid CA certificate"},
        {"an anchor that may not sign",
         {leaf.issue({.commonName = "Intruder"})},
         {leaf},
         "invalid CA certificate"},
        {"foreign root, sent too",
         {namesake.issue({}), namesake},
         {intermediate},
         "self-signed certificate in certificate chain"},
        {"self-signed", {selfSigned({})}, {root}, "self-signed certificate"},
        {"missing intermediate", {leaf}, {root}, "unable to get local issuer certificate"},
        {"wrong first certificate", {intermediate, leaf}, {leaf}, "unable to get local issuer certificate"},
        {"no anchor at all", {leaf, intermediate, root}, {}, "self-signed certificate in certificate chain"},
        {"SHA-1 signature",
         {root.issue({.digest = "SHA1"})},
         {root},
         "CA signature digest algorithm too weak"},
        {"RSA of 1024 bits", {small}, {root}, "EE certificate key too weak"},
        {"RSA of 1024 bits above the leaf", {small.issue({}), small}, {root}, "CA certificate key too weak"},
        {"RSA of 1024 bits as anchor", {small.issue({})}, {small}, "CA certificate key too weak"},
        {"the leaf's RSA exponent is 1", {ofOne}, {root}, "EE certificate key too weak"},
        {"a forgery under an RSA exponent of 1",
         {ofOne.issue({}), ofOne},
         {root},
         "CA certificate key too weak"},
        {"a policy that is asked for and not there",
         {constrained.issue({}), constrained},
         {root},
         "no explicit policy"},
        {"constraints on policies without any",
         {withoutPolicies.issue({}), withoutPolicies},
         {root},
         "invalid or inconsistent certificate policy extension"},
        {"unknown critical extension",
         {root.issue({.hasUnknownCriticalExtension = true})},
         {root},
         "unhandled critical extension"},
        {"longer than any real chain", tooDeep, {deep[0]}, "certificate chain too long"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(judged(row.chain, row.anchors), row.text);
    }
}

TEST(SecTrust, IsJudgedByTheDateThatIsGiven) {
    const auto root = selfSigned(authority("Root"));
    const auto leaf = root.issue({});
    const auto now = std::chrono::system_clock::now();
    const auto day = std::chrono::hours(24);
    EXPECT_EQ(judged({leaf}, {root}, now + 364 * day), "");
    EXPECT_EQ(judged({leaf}, {root}, now + 366 * day), "certificate has expired");
    EXPECT_EQ(judged({leaf}, {root}, now - 2 * day), "certificate is not yet valid");
}

Bytes replaced(Bytes bytes, const Bytes& from, const Bytes& to) {
    const auto found = std::search(bytes.begin(), bytes.end(), from.begin(), from.end());
    EXPECT_NE(found, bytes.end());
    std::copy(to.begin(), to.end(), found);
    return bytes;
}

TEST(SecCertificate, BERThatIsNotDERIsRefused) {
    const Bytes der = selfSigned(authority("Root")).der;
    ASSERT_EQ(der[1], 0x82) << "a length of two bytes";
    Bytes longLength = der;
    longLength[1] = 0x83;
    longLength.insert(longLength.begin() + 2, 0);
    Bytes indefinite = der;
    indefinite[1] = 0x80;
    indefinite.erase(indefinite.begin() + 2, indefinite.begin() + 4);
    indefinite.insert(indefinite.end(), 2, 0);
    const struct {
        const char* name;
        Bytes bytes;
    } rows[] = {
        {"a length with a zero in front", longLength},
        {"an indefinite length", indefinite},
        {"a critical extension that says 01",
         replaced(der, {0x1D, 0x13, 0x01, 0x01, 0xFF}, {0x1D, 0x13, 0x01, 0x01, 0x01})},
        {"an authority that says 01",
         replaced(der, {0x30, 3, 0x01, 0x01, 0xFF}, {0x30, 3, 0x01, 0x01, 0x01})},
    };
    EXPECT_TRUE(SecCertificateCreateWithData(der));
    for (const auto& row : rows)
        EXPECT_FALSE(SecCertificateCreateWithData(row.bytes)) << row.name;
}

TEST(SecCertificate, DERIsToldByItsBytes) {
    const struct {
        Bytes bytes;
        bool isDER;
    } rows[] = {
        {{}, false},
        {{0x30}, false},
        {{0x30, 0}, true},
        {{0x30, 0, 0}, false},    // a byte behind the value
        {{0x10, 0}, false},       // a primitive SEQUENCE
        {{0x30, 0x81, 0}, false}, // a length that one byte holds
        {{0x30, 0x84, 0xFF, 0xFF, 0xFF, 0xFF}, false},
        {{0x30, 0x88, 1, 0, 0, 0, 0, 0, 0, 0}, false},
        {{0x1F, 0x81, 1, 0}, false}, // a tag of several bytes
        {{0x01, 1, 0xFF}, true},
        {{0x01, 1, 0x01}, false},
        {{0x02, 0}, false},
        {{0x02, 2, 0x00, 0x80}, true},
        {{0x02, 2, 0x00, 0x7F}, false},
        {{0x02, 2, 0xFF, 0x80}, false},
        {{0x02, 2, 0xFF, 0x7F}, true},
        {{0x03, 2, 4, 0xF0}, true},
        {{0x03, 2, 4, 0xF8}, false}, // an unused bit that is set
        {{0x03, 1, 1}, false},
        {{0x05, 1, 0}, false},
        {{0x06, 2, 0x80, 1}, false},    // a subidentifier with a zero in front
        {{0x06, 1, 0x81}, false},       // one that does not end
        {{0x24, 3, 0x04, 1, 7}, false}, // octets in pieces
        {{0xA0, 2, 0x05, 0}, true},
        {{0xA0, 2, 0x05, 1}, false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(isDER(row.bytes), row.isDER) << testing::PrintToString(row.bytes);
    Bytes deep;
    for (int level = 0; level < 32; ++level) {
        EXPECT_TRUE(level == 0 || isDER(deep)) << level;
        deep.insert(deep.begin(), {0x30, static_cast<std::uint8_t>(deep.size())});
    }
    deep.insert(deep.begin(), {0x30, static_cast<std::uint8_t>(deep.size())});
    EXPECT_FALSE(isDER(deep)) << "33 levels";
}

TEST(SecTrust, ManyThreadsJudgeOneChainAndTakeItsKey) {
    const auto root = selfSigned(authority("Root"));
    const SecCertificate anchor = root.certificate();
    const SecCertificate leaf = root.issue({}).certificate();
    std::optional<SecTrust> trust;
    ASSERT_EQ(SecTrustCreateWithCertificates({&leaf, 1}, SecPolicyCreateBasicX509(), trust), 0);
    SecTrustSetAnchorCertificates(*trust, {&anchor, 1});
    std::atomic<int> trusted = 0;
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index)
        threads.emplace_back([&] {
            for (int round = 0; round < 25; ++round)
                if (!SecTrustEvaluateWithError(*trust) && SecCertificateCopyKey(leaf)) ++trusted;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(trusted, 100);
    EXPECT_EQ(&SecCertificateCopyKey(leaf)->material(), &SecCertificateCopyKey(leaf)->material());
}

} // namespace
} // namespace korvane
