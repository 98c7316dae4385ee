#pragma once

#include "Platform/Export.h"
#include "Platform/Locale.h"
#include "Sdk/Events/Warning.h"
#include "Sdk/Service/ConfigParameters.h"
#include "Sdk/Service/TransactionCertsProducerProtocol.h"
#include "Sdk/Transaction/Transaction.h"

#include <memory>
#include <string>
#include <vector>

namespace korvane {

class IKorvaneLogger;
class UiCustomization;
class UiCustomizationConstraints;

/// The way into the library: an application makes one, initialises it, and lets it create transactions. It
/// works on the current platform and keeps no reference to its transactions. It has no lock: one thread at a
/// time. Each text that it raises has been logged before.
class KORVANE_EXPORT ThreeDS2Service {
public:
    ThreeDS2Service();
    ThreeDS2Service(const ThreeDS2Service&) = delete;
    ThreeDS2Service& operator=(const ThreeDS2Service&) = delete;
    ~ThreeDS2Service();

    /// Takes the place of the configured certificates in every transaction that is created from now on. May
    /// be called at any time; null gives the configured ones back.
    void setCertProducer(std::shared_ptr<TransactionCertsProducerProtocol> producer);

    /// Takes the place of the library's spinner in every transaction that is created from now on. May be
    /// called at any time; null gives the library's back.
    void setSpinnerProducer(std::shared_ptr<SpinnerProducerProtocol> producer);

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
    void cleanup() noexcept;

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
    struct State;
    const std::unique_ptr<State> state_;
};

} // namespace korvane
