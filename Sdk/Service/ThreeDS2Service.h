#pragma once

#include "Platform/Locale.h"
#include "Platform/Logger.h"
#include "Sdk/DeviceData/DeviceDataCollection.h"
#include "Sdk/Events/Warning.h"
#include "Sdk/Service/ConfigParameters.h"
#include "Sdk/Service/TransactionCertsProducerProtocol.h"
#include "Sdk/Transaction/Transaction.h"
#include "Ui/Customisation/UiCustomization.h"
#include "Ui/Customisation/UiCustomizationConstraints.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvane {

class KeysContainer;

/// The way into the library: an application makes one, initialises it, and lets it create transactions. It
/// works on the current platform and keeps no reference to its transactions. It has no lock: one thread at a
/// time. Each text that it raises has been logged before.
class ThreeDS2Service {
public:
    ThreeDS2Service() = default;
    ThreeDS2Service(const ThreeDS2Service&) = delete;
    ThreeDS2Service& operator=(const ThreeDS2Service&) = delete;

    /// Takes the place of the configured certificates in every transaction that is created from now on. May
    /// be called at any time; null gives the configured ones back.
    void setCertProducer(std::shared_ptr<TransactionCertsProducerProtocol> producer) {
        certsProducer_ = std::move(producer);
    }

    /// Takes the place of the library's spinner in every transaction that is created from now on. May be
    /// called at any time; null gives the library's back.
    void setSpinnerProducer(std::shared_ptr<SpinnerProducerProtocol> producer) {
        spinnerProducer_ = std::move(producer);
    }

    /// Stores what it is given, runs the checks of the device's integrity and collects the device data. May
    /// be called again: what it is given then takes the place of what it was given before, and the warnings
    /// are added to those that are there. Main queue only, since it reads the screen.
    /// @param configParameters  the service counts as initialised while it has them.
    /// @param uiCustomization  the look of the screens; null for the library's own.
    /// @param logger  receives the log lines of the whole process; null silences them.
    /// @param locale  for the device data.
    void initialize(std::shared_ptr<const ConfigParameters> configParameters,
                    std::shared_ptr<const UiCustomization> uiCustomization,
                    std::shared_ptr<IKorvaneLogger> logger, Locale locale);

    /// The same with places for the screens' controls; null for the library's own. The shorter form leaves
    /// the places of an earlier call.
    void initialize(std::shared_ptr<const ConfigParameters> configParameters,
                    std::shared_ptr<const UiCustomization> uiCustomization,
                    std::shared_ptr<const UiCustomizationConstraints> uiCustomizationConstraints,
                    std::shared_ptr<IKorvaneLogger> logger, Locale locale);

    /// Takes the configuration away, so that the service counts as not initialised. All else stays, and
    /// transactions go on.
    void cleanup() noexcept { configParameters_ = nullptr; }

    /// @throws SdkError SDKNotInitializedException
    [[nodiscard]] std::string getSDKVersion() const;

    /// What the checks found, once for each `initialize`.
    /// @throws SdkError SDKNotInitializedException
    [[nodiscard]] std::vector<Warning> getWarnings() const;

    /// Seals the device data for a directory server, with a fresh identifier and a fresh key for the ACS.
    /// @param messageVersion  "2.1.0" or "2.2.0".
    /// @throws SdkError SDKNotInitializedException; InvalidInputException for an unknown directory server or
    ///         another version, in this order; SDKRuntimeException where the device data cannot be sealed.
    ///         Whatever the certificates' producer throws passes unchanged.
    [[nodiscard]] std::shared_ptr<Transaction> createTransaction(const std::string& directoryServerID,
                                                                 const std::string& messageVersion) const;

private:
    const ConfigParameters& requireConfigParameters(const char* function) const;
    /// The device document of a transaction, with the identifier of the installation that is given along with
    /// it.
    [[nodiscard]] std::string deviceDocument(const std::string& sdkAppID) const;
    [[nodiscard]] std::unique_ptr<KeysContainer>
    makeKeysContainer(const ConfigParameters& configParameters, const std::string& directoryServerID) const;

    std::shared_ptr<const ConfigParameters> configParameters_;
    std::shared_ptr<const UiCustomization> uiCustomization_;
    std::shared_ptr<const UiCustomizationConstraints> uiCustomizationConstraints_;
    std::shared_ptr<TransactionCertsProducerProtocol> certsProducer_;
    std::shared_ptr<SpinnerProducerProtocol> spinnerProducer_;
    std::optional<Locale> locale_;
    std::vector<Warning> warnings_;
    DeviceData deviceData_;
    /// The JSON text that transactions seal: written once, since it can have thousands of characters.
    std::string deviceDocument_;
};

} // namespace korvane
