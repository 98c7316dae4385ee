#include "Sdk/Transaction/Transaction.h"

#include "Platform/LetterCase.h"
#include "Platform/Platform.h"
#include "Platform/UUID.h"
#include "Sdk/DeviceData/DeviceIdentity.h"
#include "Sdk/Events/SdkError.h"

#include <cstdio>

namespace korvane {

std::shared_ptr<Transaction> Transaction::make(TransactionArguments arguments) {
    return std::make_shared<Transaction>(Private{}, std::move(arguments));
}

Transaction::Transaction(Private, TransactionArguments arguments)
    : messageVersion_(std::move(arguments.messageVersion)), sdkTransactionID_(makeUUIDString()),
      deviceData_(std::move(arguments.deviceData)), sdkAppID_(appID(Platform::current())),
      sdkReferenceNum_(std::move(arguments.sdkReferenceNum)),
      keysContainer_(std::move(arguments.keysContainer)),
      initCReqErrorSendCompletetionSemaphore_(Platform::current().dispatch().makeSemaphore(0)) {
    KORVANE_LOG("init(deviceData:sdkReferenceNum:messageVersion:keysContainer:uiCustomization:"
                "extSpinnerProducer:)",
                "Transaction messageVersion=" + messageVersion_ + ", sdkReferenceNum=" + sdkReferenceNum_ +
                    ", keysContainer=KeysContainer");
}

Transaction::~Transaction() {
    std::puts("Transaction deinit");
}

AuthenticationRequestParameters Transaction::getAuthenticationRequestParameters() const {
    std::optional<std::string> key;
    try {
        key = keysContainer_->getEphemeralPublicKey();
    } catch (const std::exception&) {
        // Told below, as the key that is missing.
    }
    if (!key)
        KORVANE_RAISE("getAuthenticationRequestParameters()", SdkErrorCase::InvalidInputException,
                      "Can not get SDK ephemeral public key.");
    return AuthenticationRequestParameters({.deviceData = deviceData_,
                                            .sdkTransId = lowercased(sdkTransactionID_),
                                            .sdkAppID = sdkAppID_,
                                            .sdkReferenceNum = sdkReferenceNum_,
                                            .ephemeralPublic = std::move(*key),
                                            .messageVersion = messageVersion_});
}

std::shared_ptr<ChallengeParameters> Transaction::requireChallengeParameters(const char* function) const {
    auto parameters = challengeParameters_.get();
    if (!parameters)
        KORVANE_RAISE(function, SdkErrorCase::InvalidInputException, "Challenge parameters must be present.");
    return parameters;
}

} // namespace korvane
