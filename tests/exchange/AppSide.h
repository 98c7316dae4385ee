#pragma once

#include "Platform/JSON.h"
#include "Platform/Native/NativePlatform.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/TransactionPeer.h"

#include <functional>
#include <optional>
#include <string>

namespace korvane {

/// The two ways on which an application gives its certificates.
enum class CertificateSource { configuredFiles, producer };

/// An application on the native platform, on its way from the service object to the first answer of an ACS.
/// Its thread is the main one. Each step fails the test program where the test bed itself is broken.
class AppSide {
public:
    struct Options {
        CertAlgorithm algorithm = CertAlgorithm::EC;
        std::string messageVersion = "2.2.0";
        CertificateSource source = CertificateSource::configuredFiles;
    };

    /// Initialises the service and creates the transaction.
    /// @param listening  the first line of the ACS.
    AppSide(const JSON& listening, const Options& options);

    [[nodiscard]] const AuthenticationRequestParameters& request() const noexcept { return *request_; }

    /// Sends the authentication request, and hands the transaction what came back.
    /// @return the answer.
    JSON authenticate();

    void openSecureChannel();
    /// Seals the first CReq and sends it. The channel is open.
    [[nodiscard]] CReqSendingResult sendFirstCReq();
    void sendErroToAcs(const Erro& erro);

    [[nodiscard]] const TransactionPeer& transaction() const noexcept { return peer_; }

private:
    /// Runs the work there and the main queue meanwhile; what it raises is raised here.
    void onQueue(DispatchQueue& queue, const std::function<void()>& work);
    [[nodiscard]] Bytes post(const std::string& url, const std::string& body);

    /// What the platform saves goes with the test.
    TemporaryFolder settings_;
    std::optional<NativePlatform> platform_;
    JSON listening_;
    ThreeDS2Service service_;
    TransactionPeer peer_;
    std::optional<AuthenticationRequestParameters> request_;
};

} // namespace korvane
