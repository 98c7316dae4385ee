#include "Sdk/Transaction/ChallengeFlow.h"

#include "Platform/Logger.h"
#include "Sdk/Events/ForeignText.h"
#include "Ui/Screens/Later.h"

namespace korvane {

namespace {

constexpr const char* kSendVCCReq = "sendVCCReq(_:)";
constexpr const char* kProcess = "processCResResult(_:)";

} // namespace

const ChallengeFlow::Action ChallengeFlow::kResend{"resendOtp()", "Can not resend otp: "};
const ChallengeFlow::Action ChallengeFlow::kSendData{"sendChallengeDataToAcs(_:whitelistingDataEntry:)",
                                                     "Can not send challengeData: "};
const ChallengeFlow::Action ChallengeFlow::kCancel{"cancelChallenge()", "Can not send cancel CReq: "};
const ChallengeFlow::Action ChallengeFlow::kOob{"sendOobContinue(whitelistingDataEntry:)",
                                                "Can not send sendOobContinue request: "};
const ChallengeFlow::Action ChallengeFlow::kHtml{"sendHtmlChallengeDataToAcs(_:)",
                                                 "Can not send htmlChallengeData: "};

void ChallengeFlow::resendOtp() {
    act(kResend, [](CReq& cReq) { cReq.resendChallenge = YesNoSelector::Y; });
}

void ChallengeFlow::sendChallengeDataToAcs(const std::string& data,
                                           std::optional<YesNoSelector> whitelistingDataEntry) {
    if (!isInterrupted()) challengeData_.set(std::make_shared<const SecretString>(data));
    act(kSendData, [&](CReq& cReq) {
        if (data.empty())
            cReq.challengeNoEntry = YesNoSelector::Y;
        else
            cReq.challengeDataEntry = data;
        cReq.whitelistingDataEntry = whitelistingDataEntry;
    });
}

void ChallengeFlow::sendOobContinue(std::optional<YesNoSelector> whitelistingDataEntry) {
    act(kOob, [&](CReq& cReq) {
        cReq.oobContinue = true;
        cReq.whitelistingDataEntry = whitelistingDataEntry;
    });
}

void ChallengeFlow::sendHtmlChallengeDataToAcs(const std::string& data) {
    act(kHtml, [&](CReq& cReq) { cReq.challengeHTMLDataEntry = data; });
}

/// The ACS's answer to a cancellation changes nothing, but it is waited for.
void ChallengeFlow::cancelChallenge() {
    perform(
        kCancel,
        [](CReq& cReq) { cReq.challengeCancel = ChallengeCancelationInd::CARDHOLDER_SELECTED_CANCEL; },
        [this](const CReq& cReq) {
            const Bytes data = exchange_->seal(cReq, kCancel.function);
            static_cast<void>(exchange_->sendCReq(data, CResPosition::later));
            completeChallengeWithCancel();
        });
}

void ChallengeFlow::act(const Action& action, const Fill& fill) {
    perform(action, fill, [this](const CReq& cReq) { sendVCCReq(cReq); });
}

/// The frame of all actions: counts, builds the request, and sends it in the action's own way.
void ChallengeFlow::perform(const Action& action, const Fill& fill, const Send& send) {
    if (isInterrupted()) return;
    exchange_->countRequest();
    try {
        CReq cReq = exchange_->makeCReq(action.function);
        fill(cReq);
        KORVANE_LOG(action.function, cReq.jsonString());
        send(cReq);
    } catch (const std::exception& error) {
        endWithError(action.function, action.failure + genericDescription(error));
    }
}

void ChallengeFlow::sendVCCReq(const CReq& cReq) {
    go(State::standing, State::asking);
    Bytes data;
    try {
        data = exchange_->seal(cReq, kSendVCCReq);
    } catch (const std::exception& error) {
        onMainQueue([self = shared_from_this(), text = genericDescription(error)] {
            self->endWithError(kSendVCCReq, "Can not encrypt CReq: " + text);
        });
        return;
    }
    const CReqSendingResult result = exchange_->sendCReq(data, CResPosition::later);
    if (isInterrupted()) return;
    onMainQueue([self = shared_from_this(), result] { self->processCResResult(result); });
}

void ChallengeFlow::processCResResult(const CReqSendingResult& result) {
    if (result.cres) {
        if (result.cres->transStatus)
            completeWithStatus(*result.cres->transStatus);
        else
            continueChallenge(*result.cres);
    } else if (result.erro) {
        KORVANE_LOG(kProcess, "cRes Result with errors.");
        if (!result.receivedError) exchange_->sendErroIfPossible(result.erro);
        completeChallengeWithProtocolError(*result.erro);
    } else {
        endWithError(kProcess, result.errorDescription.value_or("Receive empty CRes."));
    }
    go(State::asking, State::standing);
}

/// Every status ends the challenge, also one that asks for another.
void ChallengeFlow::completeWithStatus(const std::string& value) {
    const auto status = fromRawValue<TransactionStatus>(value);
    if (!status) {
        endWithError(kProcess, "Can not recognize transStatus. Got value " + foreignText(value) + ".");
        return;
    }
    KORVANE_LOG(kProcess, "Transaction status is " + value);
    completeChallengeSuccessfully(*status);
}

} // namespace korvane
