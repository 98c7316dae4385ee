#include "Sdk/Transaction/Transaction.h"

#include "Platform/LetterCase.h"
#include "Platform/Logger.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/Transaction/TransactionArguments.h"
#include "Ui/Screens/ChallengeStoryboard.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "Ui/Screens/ProgressView.h"
#include "Ui/Screens/TopController.h"

namespace korvane {

struct Transaction::Parts {
    explicit Parts(TransactionArguments arguments)
        : deviceData(std::move(arguments.deviceData)), sdkAppID(std::move(arguments.sdkAppID)),
          exchange(std::make_shared<Exchange>(arguments.messageVersion, std::move(arguments.sdkReferenceNum),
                                              std::move(arguments.keysContainer))),
          flow(ChallengeFlow::make(exchange, std::move(arguments.look))) {}

    const std::string deviceData;
    const std::string sdkAppID;
    const std::shared_ptr<Exchange> exchange;
    const std::shared_ptr<ChallengeFlow> flow;
};

std::shared_ptr<Transaction> Transaction::make(TransactionArguments arguments) {
    return std::make_shared<Transaction>(Private{}, std::move(arguments));
}

Transaction::Transaction(Private, TransactionArguments arguments)
    : parts_(std::make_unique<const Parts>(std::move(arguments))) {
    KORVANE_LOG("init(deviceData:sdkReferenceNum:messageVersion:keysContainer:uiCustomization:"
                "extSpinnerProducer:)",
                "Transaction messageVersion=" + parts_->exchange->messageVersion() + ", sdkReferenceNum=" +
                    parts_->exchange->sdkReferenceNum() + ", keysContainer=KeysContainer");
}

Transaction::~Transaction() = default;

AuthenticationRequestParameters Transaction::getAuthenticationRequestParameters() const {
    const Exchange& exchange = *parts_->exchange;
    if (!exchange.ephemeralPublicKey())
        KORVANE_RAISE("getAuthenticationRequestParameters()", SdkErrorCase::InvalidInputException,
                      "Can not get SDK ephemeral public key.");
    return AuthenticationRequestParameters({.deviceData = parts_->deviceData,
                                            .sdkTransId = lowercased(exchange.sdkTransactionID()),
                                            .sdkAppID = parts_->sdkAppID,
                                            .sdkReferenceNum = exchange.sdkReferenceNum(),
                                            .ephemeralPublic = *exchange.ephemeralPublicKey(),
                                            .messageVersion = exchange.messageVersion()});
}

void Transaction::doChallenge(std::shared_ptr<ChallengeParameters> challengeParameters,
                              std::shared_ptr<ChallengeStatusReceiver> challengeStatusReceiver,
                              std::int64_t timeout) {
    parts_->flow->doChallenge(std::move(challengeParameters), std::move(challengeStatusReceiver), timeout);
}

std::shared_ptr<ProgressDialog> Transaction::getProgressView() const {
    constexpr double kAlpha = 0.8;
    if (const auto producer = parts_->flow->spinnerProducer())
        if (auto top = getTopController()) return producer->getSpinner(std::move(top));
    return ProgressView::make(kAlpha, nullptr);
}

std::optional<std::string> Transaction::challengeData() const {
    return parts_->flow->challengeData();
}

void Transaction::presentWeb(const std::string& html) {
    std::shared_ptr<ChallengeWebViewController> screen;
    try {
        const UIStoryboard storyboard = challengeStoryboard();
        screen = std::dynamic_pointer_cast<ChallengeWebViewController>(
            storyboard.instantiateViewController(kHtmlChallengeScene));
    } catch (const UIStoryboardError&) {
        // Told below, as the screen that is missing.
    }
    if (!screen) {
        KORVANE_LOG("presentWeb(html:)", "Can not get VC for htmlChallengeVc.");
        return;
    }
    static_cast<void>(screen->view());
    screen->pageString = html;
    screen->challengeWebView->loadHTMLString(html);
    if (const auto top = getTopController()) top->present(screen, UIAnimated::yes);
}

void Transaction::presentRoot(ByteView CResData) {
    try {
        parts_->flow->processInitCRes(CRes::decode(asText(CResData)));
    } catch (const std::exception& error) {
        fatalError(error.what());
    }
}

} // namespace korvane
