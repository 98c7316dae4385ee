#include "tests/challenge/SimulatedApplication.h"

#include "Sdk/Events/ChallengeStatusReceiver.h"

namespace korvane {

namespace {

class Certificates final : public TransactionCertsProducerProtocol {
public:
    [[nodiscard]] TransactionCerts getCerts(const std::string& /*directoryServerID*/) override {
        return SimulatedAcs::certificates();
    }
};

struct Receiver final : ChallengeStatusReceiver {
    explicit Receiver(SimulatedApplication& itsApplication) : application(itsApplication) {}

    void completed(const CompletionEvent& event) override {
        application.hear("completed(" + event.getSdkTransactionID() + ", " + event.getTransactionStatus() +
                         ")");
    }
    void cancelled() override { application.hear("cancelled"); }
    void timedout() override { application.hear("timedout"); }
    void protocolError(const ProtocolErrorEvent& event) override {
        const ErrorMessage& error = event.getErrorMessage();
        application.hear("protocolError(" + event.getSdkTransactionID() + ", " + error.getErrorCode() + ", " +
                         error.getErrorDetails() + ")");
    }
    void runtimeError(const RuntimeErrorEvent& event) override {
        application.hear("runtimeError(" + event.getErrorCode() + ", " + event.getErrorMessage() + ")");
    }

    SimulatedApplication& application;
};

} // namespace

SimulatedApplication::SimulatedApplication(std::uint64_t seed, UIDeviceOrientation held) : platform(seed) {
    platform.script().mainBundlePath = KORVANE_MAIN_BUNDLE;
    hold(UIDeviceOrientation::portrait);
    hold(held);
    window = std::make_shared<UIWindow>();
    host = std::make_shared<UIViewController>();
    window->setRootViewController(host);
    window->makeKeyAndVisible();
    window->setFrameRequest([this] {
        if (!platform.dispatch().mainQueue().isCurrent()) ++strayChanges;
        window->frameTaken();
    });
    service_.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{"en-GB"});
    service_.setCertProducer(std::make_shared<Certificates>());
}

/// The window is UIApplication's too, and lives on.
SimulatedApplication::~SimulatedApplication() {
    window->setFrameRequest(nullptr);
}

void SimulatedApplication::create(const std::string& messageVersion) {
    take(service_.createTransaction("any", messageVersion));
}

void SimulatedApplication::take(std::shared_ptr<Transaction> made) {
    transaction = std::move(made);
    parameters =
        std::make_shared<ChallengeParameters>(acs.accept(transaction->getAuthenticationRequestParameters()));
}

void SimulatedApplication::start(std::int64_t minutes) {
    auto itsReceiver = std::make_shared<Receiver>(*this);
    receiver = itsReceiver;
    transaction->doChallenge(parameters, std::move(itsReceiver), minutes);
}

void SimulatedApplication::hold(UIDeviceOrientation orientation) {
    using enum UIDeviceOrientation;
    constexpr CGSize kUpright{390, 844};
    DeviceScript& script = platform.script();
    script.orientation = orientation;
    if (orientation == portrait) script.bounds = {{0, 0}, kUpright};
    if (orientation == landscapeLeft || orientation == landscapeRight)
        script.bounds = {{0, 0}, {kUpright.height, kUpright.width}};
}

} // namespace korvane
