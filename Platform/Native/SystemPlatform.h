#pragma once

#include "Platform/Export.h"
#include "Platform/Platform.h"

#include <memory>
#include <string>

namespace korvane {

/// What the operating system gives every filling that runs on it, whatever the filling shows its screens on.
class KORVANE_EXPORT SystemPlatform : public Platform {
public:
    ~SystemPlatform() override;

    [[nodiscard]] LocaleServices& locales() override;
    [[nodiscard]] TimeZone& timeZone() override;
    [[nodiscard]] CLLocationManager& locationManager() override;
    [[nodiscard]] ASIdentifierManager& identifierManager() override;
    [[nodiscard]] NSUserDefaults& userDefaults() override;
    [[nodiscard]] NSBundle& mainBundle() override;
    [[nodiscard]] NetworkInterfaces& networkInterfaces() override;
    [[nodiscard]] NSProcessInfo& processInfo() override;
    [[nodiscard]] IntegrityChecks& integrityChecks() override;
    [[nodiscard]] std::shared_ptr<URLSession>
    makeURLSession(const URLSessionConfiguration& configuration) override;

    /// Trusts further authorities in every session made from now on, as a test bed needs. Before other
    /// threads use the platform.
    /// @param pem  certificates in PEM, one after the other.
    void addCertificateAuthorities(const std::string& pem);

protected:
    SystemPlatform();

    /// Ends the network: exchanges under way and those to come end with an error, so that no work
    /// waits for them. A filling's first act at its end, while the platform is still whole, since what
    /// waits may ask for it.
    void endNetwork();

private:
    struct Services;

    std::unique_ptr<Services> services_;
};

} // namespace korvane
