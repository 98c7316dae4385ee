#include "Sdk/Transaction/Transaction.h"

#include "Platform/Logger.h"
#include "Sdk/Events/ForeignText.h"
#include "Ui/Screens/ChallengeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"

namespace korvane {

namespace {

constexpr const char* kSendVCCReq = "sendVCCReq(_:)";
constexpr const char* kProcess = "processCResResult(_:)";
constexpr const char* kContinue = "continueChallenge(_:)";
constexpr const char* kUpdateHtml = "updateHtml(_:)";

} // namespace

const Transaction::Action Transaction::kResend{"resendOtp()", "Can not resend otp: "};
const Transaction::Action Transaction::kSendData{"sendChallengeDataToAcs(_:whitelistingDataEntry:)",
                                                 "Can not send challengeData: "};
const Transaction::Action Transaction::kCancel{"cancelChallenge()", "Can not send cancel CReq: "};
const Transaction::Action Transaction::kOob{"sendOobContinue(whitelistingDataEntry:)",
                                            "Can not send sendOobContinue request: "};
const Transaction::Action Transaction::kHtml{"sendHtmlChallengeDataToAcs(_:)",
                                             "Can not send htmlChallengeData: "};

void Transaction::resendOtp() {
    act(kResend, [](CReq& cReq) { cReq.resendChallenge = YesNoSelector::Y; });
}

void Transaction::sendChallengeDataToAcs(const std::string& data,
                                         std::optional<YesNoSelector> whitelistingDataEntry) {
    if (!challengeInterrupted_) challengeData_.set(std::make_shared<const SecretString>(data));
    act(kSendData, [&](CReq& cReq) {
        if (data.empty())
            cReq.challengeNoEntry = YesNoSelector::Y;
        else
            cReq.challengeDataEntry = data;
        cReq.whitelistingDataEntry = whitelistingDataEntry;
    });
}

void Transaction::sendOobContinue(std::optional<YesNoSelector> whitelistingDataEntry) {
    act(kOob, [&](CReq& cReq) {
        cReq.oobContinue = true;
        cReq.whitelistingDataEntry = whitelistingDataEntry;
    });
}

void Transaction::sendHtmlChallengeDataToAcs(const std::string& data) {
    act(kHtml, [&](CReq& cReq) { cReq.challengeHTMLDataEntry = data; });
}

/// The ACS's answer to a cancellation changes nothing, but it is waited for.
void Transaction::cancelChallenge() {
    perform(
        kCancel,
        [](CReq& cReq) { cReq.challengeCancel = ChallengeCancelationInd::CARDHOLDER_SELECTED_CANCEL; },
        [this](const CReq& cReq, const ChallengeParameters& parameters) {
            const Bytes data = keysContainer_->encryptCReq(toBytes(cReq.jsonString().text()),
                                                           parameters.getAcsTransactionId());
            static_cast<void>(sendCReq(data, CResPosition::later));
            completeChallengeWithCancel();
        });
}

void Transaction::act(const Action& action, const Fill& fill) {
    perform(action, fill, [this](const CReq& cReq, const ChallengeParameters&) { sendVCCReq(cReq); });
}

/// The frame of all actions: counts, builds the request, and sends it in the action's own way.
void Transaction::perform(const Action& action, const Fill& fill, const Send& send) {
    if (challengeInterrupted_) return;
    ++sdkToAcsCounter_;
    try {
        const auto parameters = requireChallengeParameters(action.function);
        CReq cReq = makeCReq(*parameters);
        fill(cReq);
        KORVANE_LOG(action.function, cReq.jsonString());
        send(cReq, *parameters);
    } catch (const std::exception& error) {
        endWithError(action.function, action.failure + genericDescription(error));
    }
}

void Transaction::sendVCCReq(const CReq& cReq) {
    updatingOfLastCResViewControllerContainerInProgress_ = true;
    Bytes data;
    try {
        const auto parameters = requireChallengeParameters(kSendVCCReq);
        data =
            keysContainer_->encryptCReq(toBytes(cReq.jsonString().text()), parameters->getAcsTransactionId());
    } catch (const std::exception& error) {
        onMainQueue([self = shared_from_this(), text = genericDescription(error)] {
            self->endWithError(kSendVCCReq, "Can not encrypt CReq: " + text);
        });
        return;
    }
    const CReqSendingResult result = sendCReq(data, CResPosition::later);
    if (challengeInterrupted_) return;
    onMainQueue([self = shared_from_this(), result] { self->processCResResult(result); });
}

void Transaction::processCResResult(const CReqSendingResult& result) {
    if (result.cres) {
        if (result.cres->transStatus)
            completeWithStatus(*result.cres->transStatus);
        else
            continueChallenge(*result.cres);
    } else if (result.erro) {
        KORVANE_LOG(kProcess, "cRes Result with errors.");
        if (!result.receivedError) sendErroIfPossible(result.erro);
        completeChallengeWithProtocolError(*result.erro);
    } else {
        endWithError(kProcess, result.errorDescription.value_or("Receive empty CRes."));
    }
    updatingOfLastCResViewControllerContainerInProgress_ = false;
}

/// Every status ends the challenge, also one that asks for another.
void Transaction::completeWithStatus(const std::string& value) {
    const auto status = fromRawValue<TransactionStatus>(value);
    if (!status) {
        endWithError(kProcess, "Can not recognize transStatus. Got value " + foreignText(value) + ".");
        return;
    }
    KORVANE_LOG(kProcess, "Transaction status is " + value);
    completeChallengeSuccessfully(*status);
}

void Transaction::continueChallenge(const CRes& cRes) {
    try {
        updateViewControllerContainer(cRes);
    } catch (const std::exception& error) {
        endWithError(kContinue, "Can not create challenge VC: " + genericDescription(error));
        return;
    }
    if (channelgeFlowType_ == UiType::HTML_OTHER) {
        updateHtml(cRes);
        return;
    }
    if (const auto orientation = getOrientation()) lastPresentedOrientation_ = *orientation;
    const auto controller = controllerFor(lastPresentedOrientation_);
    if (!controller) {
        endWithError(kContinue, "Can not get challenge VC from ViewControllerContainer.");
        return;
    }
    onMainQueue([self = shared_from_this(), controller] {
        self->hideSpinner();
        if (const auto root = self->challengeRootVC_.lock())
            root->setViewControllers({controller}, UIAnimated::yes);
    });
}

/// The screen stays, and shows another page; its spinner goes, or nobody could use that page.
void Transaction::updateHtml(const CRes& cRes) {
    const auto page = decodedPage(cRes.acsHTML.value_or(""));
    if (!page || page->empty()) {
        endWithError(kUpdateHtml, "Can not get HTML from CRes.");
        return;
    }
    const auto screen = topController<ChallengeWebViewController>();
    if (!screen) {
        endWithError(kUpdateHtml, "Can not get top challenge HTML view controller.");
        return;
    }
    screen->externalAppWasPresented = false;
    screen->pageString = *page;
    screen->challengeWebView->loadHTMLString(*page);
    screen->hideSpinner();
    if (cRes.acsHTMLRefresh)
        if (auto refresh = decodedPage(*cRes.acsHTMLRefresh)) screen->returnFromOobPage = std::move(*refresh);
}

} // namespace korvane
