#include "Platform/Headless/HeadlessPlatform.h"
#include "Sdk/Exchange/Exchange.h"
#include "tests/support/Messages.h"
#include "tests/support/PlayedAcs.h"

#include <atomic>
#include <thread>

namespace korvane {
namespace {

/// The application may ask on one thread while the agreement uses the pair up on another.
TEST(NativeTransaction, ValuesOfTheRequestStayTheSameBesideTheAgreement) {
    HeadlessPlatform platform;
    const PlayedAcs acs;
    ChallengeParameters parameters = validParameters();
    parameters.setAcsSignedContent(acs.signedContent());
    for (int round = 0; round < 20; ++round) {
        const auto exchange =
            std::make_shared<Exchange>(MessageVersion::v2_2_0, kReferenceNumber,
                                       std::make_unique<KeysContainer>(certsWithRoot(acs.root)));
        exchange->setChallengeParameters(std::make_shared<ChallengeParameters>(parameters));
        const auto key = [&exchange] { return exchange->ephemeralPublicKey().value(); };
        const std::string published = key();
        std::atomic<bool> isOpen{false};
        std::thread asking([&] {
            do
                EXPECT_EQ(key(), published);
            while (!isOpen);
        });
        exchange->openSecureChannel();
        isOpen = true;
        asking.join();
    }
}

} // namespace
} // namespace korvane
