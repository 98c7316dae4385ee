#include "Platform/Native/NativePlatform.h"
#include "tests/support/Messages.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/TransactionPeer.h"

#include <atomic>
#include <thread>

namespace korvane {
namespace {

/// The application may ask on one thread while the agreement uses the pair up on another.
TEST(NativeTransaction, ValuesOfTheRequestStayTheSameBesideTheAgreement) {
    NativePlatform platform;
    const PlayedAcs acs;
    ChallengeParameters parameters = validParameters();
    parameters.setAcsSignedContent(acs.signedContent());
    for (int round = 0; round < 20; ++round) {
        const TransactionPeer peer{
            Transaction::make({.deviceData = "sealed",
                               .sdkAppID = "application",
                               .sdkReferenceNum = kReferenceNumber,
                               .messageVersion = "2.2.0",
                               .keysContainer = std::make_unique<KeysContainer>(certsWithRoot(acs.root))})};
        peer.setParameters(parameters);
        const auto key = [&peer] {
            return peer.transaction->getAuthenticationRequestParameters().getSDKEphemeralPublicKey();
        };
        const std::string published = key();
        std::atomic<bool> isOpen{false};
        std::thread asking([&] {
            do
                EXPECT_EQ(key(), published);
            while (!isOpen);
        });
        peer.openSecureChannel();
        isOpen = true;
        asking.join();
    }
}

} // namespace
} // namespace korvane
