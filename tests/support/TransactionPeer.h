#pragma once

#include "Sdk/Transaction/Transaction.h"
#include "Ui/Screens/ViewControllerContainer.h"

#include <memory>
#include <utility>

namespace korvane {

/// Reaches into a transaction for tests of its steps one by one.
struct TransactionPeer {
    std::shared_ptr<Transaction> transaction;

    void setParameters(ChallengeParameters parameters) const {
        transaction->challengeParameters_.set(std::make_shared<ChallengeParameters>(std::move(parameters)));
    }
    void removeParameters() const { transaction->challengeParameters_.set(nullptr); }

    void openSecureChannel() const { transaction->openSecureChannel(); }
    [[nodiscard]] Bytes getInitCReqData() const { return transaction->getInitCReqData(); }

    [[nodiscard]] CReqSendingResult sendCReq(const Bytes& data,
                                             CResPosition position = CResPosition::initial) const {
        return transaction->sendCReq(data, position);
    }
    void sendErroToAcs(const Erro& erro) const { transaction->sendErroToAcs(erro); }

    /// Screens as after a response, of which there are none.
    void setScreens() const {
        transaction->lastCResViewControllerContainer_.set(std::make_shared<ViewControllerContainer>(
            CRes{}, false, ViewControllerContainer::ControllersMap{}));
    }

    void interrupt() const { transaction->challengeInterrupted_ = true; }
    void setCounter(int counter) const { transaction->sdkToAcsCounter_ = counter; }
    [[nodiscard]] bool hasCResTimer() const { return transaction->cResTimeoutTask_.get() != nullptr; }

    /// Whether the time of a response had run out before; asking takes the signal away.
    [[nodiscard]] bool takesTimeoutSignal() const {
        return transaction->initCReqErrorSendCompletetionSemaphore_->wait(Seconds{0}) ==
               DispatchTimeoutResult::success;
    }
    /// Of the pair that the ACS agrees with, in Base64URL; before the agreement.
    [[nodiscard]] SecretString privateNumber() const {
        return transaction->keysContainer_->ephemeralKeyPair_.value().privateKey();
    }
    [[nodiscard]] const std::string& sdkTransactionID() const { return transaction->sdkTransactionID_; }
};

} // namespace korvane
