#include "tests/challenge/ChallengeSupport.h"

#include "Platform/LetterCase.h"

namespace korvane {

class ChallengeTest::Certificates final : public TransactionCertsProducerProtocol {
public:
    [[nodiscard]] TransactionCerts getCerts(const std::string& /*directoryServerID*/) override {
        return SimulatedAcs::certificates();
    }
};

ChallengeTest::ChallengeTest() {
    platform.script().mainBundlePath = KORVANE_MAIN_BUNDLE;
    platform.script().bounds = {{0, 0}, {390, 844}};
    window = std::make_shared<UIWindow>();
    host = std::make_shared<UIViewController>();
    window->setRootViewController(host);
    window->makeKeyAndVisible();
    service_.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{"en-GB"});
    service_.setCertProducer(std::make_shared<Certificates>());
}

/// Whatever a test does, nothing of its challenge lives on.
ChallengeTest::~ChallengeTest() {
    const std::weak_ptr<Transaction> transaction = peer.transaction;
    peer.transaction = nullptr;
    host->dismiss(UIAnimated::no);
    platform.runUntilIdle();
    EXPECT_TRUE(transaction.expired());
    EXPECT_EQ(platform.leftAlive(), LeftAlive{});
}

void ChallengeTest::create(const std::string& messageVersion) {
    peer.transaction = service_.createTransaction("any", messageVersion);
    parameters = std::make_shared<ChallengeParameters>(
        acs.accept(peer.transaction->getAuthenticationRequestParameters()));
}

void ChallengeTest::start(Answers answers, std::int64_t minutes) {
    if (!peer.transaction) create();
    acs.answers = std::move(answers);
    peer.transaction->doChallenge(parameters, receiver, minutes);
    runFor(3);
}

void ChallengeTest::startWithScreens(const std::vector<std::string>& uiTypes) {
    Answers answers;
    for (const std::string& uiType : uiTypes)
        answers.push_back(SimulatedAcs::showing(uiType));
    answers.push_back(SimulatedAcs::endingWith("Y"));
    start(std::move(answers));
}

void ChallengeTest::submit(const std::string& code) {
    const auto screen = top<ChallengeTextNativeViewController>();
    screen->otp->setText(code);
    tap(*screen->submitButton.get());
}

void ChallengeTest::turn(UIDeviceOrientation orientation) {
    platform.script().orientation = orientation;
    UIApplication::shared().deviceDidRotate();
    runFor(0.5);
}

std::string ChallengeTest::lowerId() const {
    return lowercased(id());
}

std::vector<std::string> ChallengeTest::errorCodes() const {
    std::vector<std::string> codes;
    for (const Erro& erro : acs.errors())
        codes.push_back(erro.errorCode.value_or("none"));
    return codes;
}

} // namespace korvane
