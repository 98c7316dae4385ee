#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/Security/SecTrust.h"
#include "tests/support/TestPki.h"

#include <gmock/gmock.h>

#include <atomic>
#include <optional>
#include <system_error>
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
                const bool doAgree = SecKeyCopyKeyExchangeResult(key, publicKey).size() == 32;
                good += isVerified && doAgree && !SecTrustEvaluateWithError(*trust);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, 100);
    EXPECT_EQ(&SecCertificateCopyKey(leaf)->material(), &SecCertificateCopyKey(leaf)->material());
}

/// No thread can be made in its lifetime: their stacks would be larger than all addresses.
class NoMoreThreads {
public:
    NoMoreThreads() {
        pthread_getattr_default_np(&usual_);
        pthread_attr_t huge = usual_;
        pthread_attr_setstacksize(&huge, std::size_t{1} << 50U);
        pthread_setattr_default_np(&huge);
    }
    NoMoreThreads(const NoMoreThreads&) = delete;
    NoMoreThreads& operator=(const NoMoreThreads&) = delete;
    ~NoMoreThreads() { pthread_setattr_default_np(&usual_); }

private:
    pthread_attr_t usual_{};
};

TEST(NativeThreads, WorkWaitsForThoseThatThereAreWhereNoneCanBeMade) {
    HeadlessPlatform platform;
    Dispatch& dispatch = platform.dispatch();
    const auto ended = dispatch.makeSemaphore(0);
    const auto signal = [ended] { ended->signal(); };
    const NoMoreThreads limit;
    ASSERT_THROW(std::thread([] {}).join(), std::system_error);
    for (int count = 0; count < 3; ++count)
        dispatch.globalQueue().async(signal);
    dispatch.makeSerialQueue("patient")->async(signal);
    dispatch.globalQueue().asyncAfter(Seconds{0.01}, std::make_shared<DispatchWorkItem>(signal));
    std::optional<std::string> error;
    const auto end = [&](auto, auto text) {
        error = std::move(text);
        ended->signal();
    };
    platform.makeURLSession({})->dataTask({*URL::make("http://127.0.0.1/")}, end)->resume();
    for (int count = 0; count < 6; ++count)
        ASSERT_EQ(ended->wait(Seconds{60}), DispatchTimeoutResult::success);
    EXPECT_NE(error.value_or(""), "");
}

} // namespace
} // namespace korvane
