#include "Platform/Security/SecTrust.h"
#include "tests/support/TestPki.h"

#include <gmock/gmock.h>

#include <atomic>
#include <optional>
#include <thread>
#include <vector>

namespace korvane {
namespace {

/// What several threads may use at once: the thread sanitizer judges it.
TEST(NativeThreads, OneKeyAndOneChainServeMany) {
    const auto es256 = SecKeyAlgorithm::kSecKeyAlgorithmECDSASignatureMessageX962SHA256;
    const TestIdentity root = selfSigned(authority("Root")), identity = root.issue({});
    const SecKey key = identity.privateKey();
    const SecCertificate anchor = root.certificate(), leaf = identity.certificate();
    std::optional<SecTrust> trust;
    ASSERT_EQ(SecTrustCreateWithCertificates({&leaf, 1}, SecPolicyCreateBasicX509(), trust), 0);
    SecTrustSetAnchorCertificates(*trust, {&anchor, 1});
    std::atomic<int> good = 0;
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index)
        threads.emplace_back([&] {
            for (int round = 0; round < 25; ++round) {
                const Bytes signature = SecKeyCreateSignature(key, es256, Bytes(10));
                const SecKey publicKey = *SecCertificateCopyKey(leaf);
                const bool isVerified = SecKeyVerifySignature(publicKey, es256, Bytes(10), signature);
                good += isVerified && !SecTrustEvaluateWithError(*trust);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, 100);
    EXPECT_EQ(&SecCertificateCopyKey(leaf)->material(), &SecCertificateCopyKey(leaf)->material());
}

} // namespace
} // namespace korvane
