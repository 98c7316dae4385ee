#include "Sdk/Service/ThreeDS2Service.h"

#include "Platform/Platform.h"
#include "Sdk/DeviceData/DeviceIdentity.h"
#include "Sdk/DeviceData/IntegrityWarnings.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/Transaction/TransactionArguments.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace korvane {

namespace {

using enum SdkErrorCase;

constexpr const char* kSdkVersion = "1.0.0";
constexpr const char* kSdkReferenceNum = "3DS_LOA_SDK_QXRV_020200_00417";
constexpr std::array<std::string_view, 2> kMessageVersions{"2.1.0", "2.2.0"};

constexpr const char* kCreate = "createTransaction(directoryServerID:messageVersion:)";

void requireMessageVersion(const std::string& version) {
    if (std::find(kMessageVersions.begin(), kMessageVersions.end(), version) == kMessageVersions.end())
        KORVANE_RAISE(kCreate, InvalidInputException, "Message version " + version + " not supported");
}

std::string sealed(std::string_view document, KeysContainer& keysContainer) {
    try {
        return keysContainer.getEncryptedDeviceInfo(asBytes(document));
    } catch (const std::exception&) {
        KORVANE_RAISE(kCreate, SDKRuntimeException, "Can not create DeviceInfo Jwe");
    }
}

} // namespace

void ThreeDS2Service::initialize(std::shared_ptr<const ConfigParameters> configParameters,
                                 std::shared_ptr<const UiCustomization> uiCustomization,
                                 std::shared_ptr<const UiCustomizationConstraints> uiCustomizationConstraints,
                                 std::shared_ptr<IKorvaneLogger> logger, Locale locale) {
    uiCustomizationConstraints_ = std::move(uiCustomizationConstraints);
    initialize(std::move(configParameters), std::move(uiCustomization), std::move(logger), std::move(locale));
}

void ThreeDS2Service::initialize(std::shared_ptr<const ConfigParameters> configParameters,
                                 std::shared_ptr<const UiCustomization> uiCustomization,
                                 std::shared_ptr<IKorvaneLogger> logger, Locale locale) {
    configParameters_ = std::move(configParameters);
    uiCustomization_ = std::move(uiCustomization);
    locale_ = std::move(locale);
    Logger::shared().setDebug(std::move(logger));
    Platform& platform = Platform::current();
    for (Warning& warning : findIntegrityWarnings(platform.integrityChecks()))
        warnings_.push_back(std::move(warning));
    collectDeviceData(platform, {.locale = locale_, .sdkVersion = kSdkVersion}, deviceData_);
    deviceDocument_ = makeDeviceInfo(deviceData_, warnings_).jsonString();
}

std::string ThreeDS2Service::getSDKVersion() const {
    requireConfigParameters("getSDKVersion()");
    return kSdkVersion;
}

std::vector<Warning> ThreeDS2Service::getWarnings() const {
    requireConfigParameters("getWarnings()");
    return warnings_;
}

std::shared_ptr<Transaction> ThreeDS2Service::createTransaction(const std::string& directoryServerID,
                                                                const std::string& messageVersion) const {
    auto keysContainer = makeKeysContainer(requireConfigParameters(kCreate), directoryServerID);
    requireMessageVersion(messageVersion);
    std::string sdkAppID = appID(Platform::current());
    std::string deviceData = sealed(deviceDocument(sdkAppID), *keysContainer);
    return Transaction::make({.deviceData = std::move(deviceData),
                              .sdkAppID = std::move(sdkAppID),
                              .sdkReferenceNum = kSdkReferenceNum,
                              .messageVersion = messageVersion,
                              .keysContainer = std::move(keysContainer),
                              .look = {.uiCustomization = uiCustomization_,
                                       .uiCustomizationConstraints = uiCustomizationConstraints_,
                                       .extSpinnerProducer = spinnerProducer_}});
}

/// The identifier follows vendor and store; the rest of the data is that of the last `initialize`.
std::string ThreeDS2Service::deviceDocument(const std::string& sdkAppID) const {
    const std::string key(rawValue(DeviceInfoParameter::SDK_APP_ID));
    const auto collected = deviceData_.deviceData.find(key);
    if (collected != deviceData_.deviceData.end() && collected->second == sdkAppID) return deviceDocument_;
    DeviceData data = deviceData_;
    data.deviceData.insert_or_assign(key, sdkAppID);
    return makeDeviceInfo(data, warnings_).jsonString();
}

const ConfigParameters& ThreeDS2Service::requireConfigParameters(const char* function) const {
    if (!configParameters_)
        KORVANE_RAISE(function, SDKNotInitializedException, "Can not get ConfigParameters.");
    return *configParameters_;
}

std::unique_ptr<KeysContainer>
ThreeDS2Service::makeKeysContainer(const ConfigParameters& configParameters,
                                   const std::string& directoryServerID) const {
    if (certsProducer_) return std::make_unique<KeysContainer>(certsProducer_->getCerts(directoryServerID));
    const auto certificates = configParameters.devInfoCerts.find(directoryServerID);
    if (certificates == configParameters.devInfoCerts.end())
        KORVANE_RAISE(kCreate, InvalidInputException, "Missing DevInfoCert for " + directoryServerID);
    return std::make_unique<KeysContainer>(certificates->second);
}

} // namespace korvane
