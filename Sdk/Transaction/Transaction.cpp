#include "Sdk/Transaction/Transaction.h"

#include "Platform/LetterCase.h"
#include "Platform/Platform.h"
#include "Platform/UUID.h"
#include "Sdk/Events/SdkError.h"
#include "Ui/Screens/ProgressView.h"
#include "Ui/Screens/TopController.h"
#include "Ui/Screens/VCFactory.h"

#include <cstdio>

namespace korvane {

namespace {

/// Told where the key is asked for.
std::optional<std::string> ephemeralPublicKeyIfPossible(KeysContainer& keysContainer) {
    try {
        return keysContainer.getEphemeralPublicKey();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

std::shared_ptr<Transaction> Transaction::make(TransactionArguments arguments) {
    return std::make_shared<Transaction>(Private{}, std::move(arguments));
}

Transaction::Transaction(Private, TransactionArguments arguments)
    : messageVersion_(std::move(arguments.messageVersion)), sdkTransactionID_(makeUUIDString()),
      deviceData_(std::move(arguments.deviceData)), sdkAppID_(std::move(arguments.sdkAppID)),
      sdkReferenceNum_(std::move(arguments.sdkReferenceNum)),
      keysContainer_(std::move(arguments.keysContainer)),
      ephemeralPublicKey_(ephemeralPublicKeyIfPossible(*keysContainer_)),
      uiCustomization_(std::move(arguments.uiCustomization)),
      uiCustomizationConstraints_(std::move(arguments.uiCustomizationConstraints)),
      spinnerProducer_(std::move(arguments.extSpinnerProducer)),
      changeOrientationQueue_(Platform::current().dispatch().makeSerialQueue("Change orientation queue")),
      initCReqErrorSendCompletetionSemaphore_(Platform::current().dispatch().makeSemaphore(0)) {
    KORVANE_LOG("init(deviceData:sdkReferenceNum:messageVersion:keysContainer:uiCustomization:"
                "extSpinnerProducer:)",
                "Transaction messageVersion=" + messageVersion_ + ", sdkReferenceNum=" + sdkReferenceNum_ +
                    ", keysContainer=KeysContainer");
}

/// The last to let go may stand on any queue; views go on the main queue. After the platform there is none.
Transaction::~Transaction() {
    if (auto screens = lastCResViewControllerContainer_.exchange(nullptr); screens && Platform::isInstalled())
        onMainQueue([screens = std::move(screens)] {});
    std::puts("Transaction deinit");
}

AuthenticationRequestParameters Transaction::getAuthenticationRequestParameters() const {
    if (!ephemeralPublicKey_)
        KORVANE_RAISE("getAuthenticationRequestParameters()", SdkErrorCase::InvalidInputException,
                      "Can not get SDK ephemeral public key.");
    return AuthenticationRequestParameters({.deviceData = deviceData_,
                                            .sdkTransId = lowercased(sdkTransactionID_),
                                            .sdkAppID = sdkAppID_,
                                            .sdkReferenceNum = sdkReferenceNum_,
                                            .ephemeralPublic = *ephemeralPublicKey_,
                                            .messageVersion = messageVersion_});
}

std::shared_ptr<ProgressDialog> Transaction::getProgressView() const {
    constexpr double kAlpha = 0.8;
    if (spinnerProducer_)
        if (auto top = getTopController()) return spinnerProducer_->getSpinner(std::move(top));
    return ProgressView::make(kAlpha, nullptr);
}

std::optional<std::string> Transaction::challengeData() const {
    const auto data = challengeData_.get();
    return data ? std::optional(data->text()) : std::nullopt;
}

void Transaction::onMainQueue(std::function<void()> work) {
    Platform::current().dispatch().mainQueue().async(std::move(work));
}

std::shared_ptr<ChallengeParameters> Transaction::requireChallengeParameters(const char* function) const {
    auto parameters = challengeParameters_.get();
    if (!parameters)
        KORVANE_RAISE(function, SdkErrorCase::InvalidInputException, "Challenge parameters must be present.");
    return parameters;
}

} // namespace korvane
