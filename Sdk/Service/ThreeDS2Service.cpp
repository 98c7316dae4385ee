#include "Sdk/Service/ThreeDS2Service.h"

#include "Platform/Logger.h"
#include "Platform/Platform.h"
#include "Sdk/DeviceData/DeviceDataCollection.h"
#include "Sdk/DeviceData/DeviceIdentity.h"
#include "Sdk/DeviceData/IntegrityWarnings.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/Transaction/TransactionArguments.h"

#include <optional>
#include <string_view>

namespace korvane {

namespace {

using enum SdkErrorCase;

constexpr const char* kSdkVersion = "1.0.0";
constexpr const char* kSdkReferenceNum = "3DS_LOA_SDK_QXRV_020200_00417";

constexpr const char* kCreate = "createTransaction(directoryServerID:messageVersion:)";

MessageVersion requiredMessageVersion(const std::string& text) {
    const auto version = fromRawValue<MessageVersion>(text);
    if (!version) KORVANE_RAISE(kCreate, InvalidInputException, "Message version " + text + " not supported");
    return *version;
}

std::string sealed(std::string_view document, KeysContainer& keysContainer) {
    try {
        return keysContainer.getEncryptedDeviceInfo(asBytes(document));
    } catch (const std::exception&) {
        KORVANE_RAISE(kCreate, SDKRuntimeException, "Can not create DeviceInfo Jwe");
    }
}

} // namespace

struct ThreeDS2Service::State {
    const ConfigParameters& requireConfigParameters(const char* function) const;
    /// The device document of a transaction, with the identifier of the installation that is
    /// given along with it.
    [[nodiscard]] std::string documentWith(const std::string& sdkAppID) const;
    [[nodiscard]] std::unique_ptr<KeysContainer>
    makeKeysContainer(const std::string& directoryServerID) const;

    std::shared_ptr<const ConfigParameters> configParameters;
    std::shared_ptr<TransactionCertsProducerProtocol> certsProducer;
    ChallengeLook look;
    std::optional<Locale> locale;
    std::vector<Warning> warnings;
    DeviceData deviceData;
    /// The JSON text that transactions seal: written once, since it can have thousands of characters.
    std::string deviceDocument;
};

/// The identifier follows vendor and store; the rest of the data is that of the last `initialize`.
std::string ThreeDS2Service::State::documentWith(const std::string& sdkAppID) const {
    const std::string key(rawValue(DeviceInfoParameter::SDK_APP_ID));
    const auto collected = deviceData.deviceData.find(key);
    if (collected != deviceData.deviceData.end() && collected->second == sdkAppID) return deviceDocument;
    DeviceData data = deviceData;
    data.deviceData.insert_or_assign(key, sdkAppID);
    return makeDeviceInfo(data, warnings).jsonString();
}

const ConfigParameters& ThreeDS2Service::State::requireConfigParameters(const char* function) const {
    if (!configParameters)
        KORVANE_RAISE(function, SDKNotInitializedException, "Can not get ConfigParameters.");
    return *configParameters;
}

std::unique_ptr<KeysContainer>
ThreeDS2Service::State::makeKeysContainer(const std::string& directoryServerID) const {
    const ConfigParameters& parameters = requireConfigParameters(kCreate);
    if (certsProducer) return std::make_unique<KeysContainer>(certsProducer->getCerts(directoryServerID));
    const auto certificates = parameters.devInfoCerts.find(directoryServerID);
    if (certificates == parameters.devInfoCerts.end())
        KORVANE_RAISE(kCreate, InvalidInputException, "Missing DevInfoCert for " + directoryServerID);
    return std::make_unique<KeysContainer>(certificates->second);
}

ThreeDS2Service::ThreeDS2Service() : state_(std::make_unique<State>()) {}

ThreeDS2Service::~ThreeDS2Service() = default;

void ThreeDS2Service::setCertProducer(std::shared_ptr<TransactionCertsProducerProtocol> producer) {
    state_->certsProducer = std::move(producer);
}

void ThreeDS2Service::setSpinnerProducer(std::shared_ptr<SpinnerProducerProtocol> producer) {
    state_->look.extSpinnerProducer = std::move(producer);
}

void ThreeDS2Service::cleanup() noexcept {
    state_->configParameters = nullptr;
}

void ThreeDS2Service::initialize(std::shared_ptr<const ConfigParameters> configParameters,
                                 std::shared_ptr<const UiCustomization> uiCustomization,
                                 std::shared_ptr<const UiCustomizationConstraints> uiCustomizationConstraints,
                                 std::shared_ptr<IKorvaneLogger> logger, Locale locale) {
    state_->look.uiCustomizationConstraints = std::move(uiCustomizationConstraints);
    initialize(std::move(configParameters), std::move(uiCustomization), std::move(logger), std::move(locale));
}

void ThreeDS2Service::initialize(std::shared_ptr<const ConfigParameters> configParameters,
                                 std::shared_ptr<const UiCustomization> uiCustomization,
                                 std::shared_ptr<IKorvaneLogger> logger, Locale locale) {
    state_->configParameters = std::move(configParameters);
    state_->look.uiCustomization = std::move(uiCustomization);
    state_->locale = std::move(locale);
    Logger::shared().setDebug(std::move(logger));
    Platform& platform = Platform::current();
    for (Warning& warning : findIntegrityWarnings(platform.integrityChecks()))
        state_->warnings.push_back(std::move(warning));
    collectDeviceData(platform, {.locale = state_->locale, .sdkVersion = kSdkVersion}, state_->deviceData);
    state_->deviceDocument = makeDeviceInfo(state_->deviceData, state_->warnings).jsonString();
}

std::string ThreeDS2Service::getSDKVersion() const {
    state_->requireConfigParameters("getSDKVersion()");
    return kSdkVersion;
}

std::vector<Warning> ThreeDS2Service::getWarnings() const {
    state_->requireConfigParameters("getWarnings()");
    return state_->warnings;
}

std::shared_ptr<Transaction> ThreeDS2Service::createTransaction(const std::string& directoryServerID,
                                                                const std::string& messageVersion) const {
    auto keysContainer = state_->makeKeysContainer(directoryServerID);
    const MessageVersion version = requiredMessageVersion(messageVersion);
    std::string sdkAppID = appID(Platform::current());
    std::string deviceData = sealed(state_->documentWith(sdkAppID), *keysContainer);
    return Transaction::make({.deviceData = std::move(deviceData),
                              .sdkAppID = std::move(sdkAppID),
                              .sdkReferenceNum = kSdkReferenceNum,
                              .messageVersion = version,
                              .keysContainer = std::move(keysContainer),
                              .look = state_->look});
}

} // namespace korvane
