#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/Security/SecTrust.h"
#include "tests/support/CannedServer.h"
#include "tests/support/TestPki.h"

#include <gmock/gmock.h>

#include <atomic>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace korvane {
namespace {

constexpr Seconds kLong{60};

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
        ASSERT_EQ(ended->wait(kLong), DispatchTimeoutResult::success);
    EXPECT_NE(error.value_or(""), "");
}

/// Answers do not need one of those that wait for them.
TEST(NativeThreads, AllThatThereMayBeCanWaitForAnswersAtOnce) {
    constexpr int kMost = 64;
    const CannedServer server("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\nanswer");
    HeadlessPlatform platform;
    Dispatch& dispatch = platform.dispatch();
    const auto session = platform.makeURLSession({});
    const auto running = dispatch.makeSemaphore(0), go = dispatch.makeSemaphore(0),
               ended = dispatch.makeSemaphore(0);
    std::atomic<int> answered = 0;
    for (int count = 0; count < kMost; ++count)
        dispatch.globalQueue().async([&] {
            const auto answer = dispatch.makeSemaphore(0);
            running->signal();
            static_cast<void>(go->wait(kLong));
            session->dataTask({*URL::make(server.url())}, [answer](auto, auto) { answer->signal(); })
                ->resume();
            answered += answer->wait(Seconds{20}) == DispatchTimeoutResult::success;
            ended->signal();
        });
    for (int count = 0; count < kMost; ++count)
        ASSERT_EQ(running->wait(kLong), DispatchTimeoutResult::success);
    for (int count = 0; count < kMost; ++count)
        go->signal();
    for (int count = 0; count < kMost; ++count)
        ASSERT_EQ(ended->wait(kLong), DispatchTimeoutResult::success);
    EXPECT_EQ(answered, kMost);
}

} // namespace
} // namespace korvane
