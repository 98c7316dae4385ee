#include "C/Objects.h"
#include "Platform/JSON.h"
#include "Sdk/Events/SdkError.h"
#include "Ui/Customisation/Theme.h"

#include <map>

using namespace korvane;
using namespace korvane::c;

namespace {

constexpr std::size_t kMostServers = 1'000;
constexpr std::size_t kLongestCertificate = std::size_t{64} * 1024;

/// The certificates of a configuration.
class GivenCertificates final : public TransactionCertsProducerProtocol {
public:
    explicit GivenCertificates(const korvane_configuration& configuration) {
        if (configuration.server_count > kMostServers)
            throw CallError(KORVANE_TOO_LARGE, "There are too many servers.");
        if (configuration.server_count > 0) require(configuration.servers, "servers");
        for (std::size_t index = 0; index < configuration.server_count; ++index)
            add(configuration.servers[index]);
    }

    [[nodiscard]] TransactionCerts getCerts(const std::string& directoryServerID) override {
        const auto found = all_.find(directoryServerID);
        if (found == all_.end())
            KORVANE_RAISE("getCerts(directoryServerID:)", SdkErrorCase::InvalidInputException,
                          "Missing certificates for " + directoryServerID);
        return found->second;
    }

private:
    void add(const korvane_directory_server& given) {
        if (given.algorithm != KORVANE_RSA && given.algorithm != KORVANE_EC)
            throw CallError(KORVANE_BAD_ARGUMENT, "algorithm is none.");
        std::string identifier = textOf(given.identifier, "identifier");
        TransactionCerts certificates{
            bytesOf(given.certificate, given.certificate_length, kLongestCertificate, "certificate"),
            bytesOf(given.root, given.root_length, kLongestCertificate, "root"),
            given.algorithm == KORVANE_EC ? CertAlgorithm::EC : CertAlgorithm::RSA, identifier};
        if (!all_.emplace(std::move(identifier), std::move(certificates)).second)
            throw CallError(KORVANE_BAD_ARGUMENT, "Two servers have one identifier.");
    }

    std::map<std::string, TransactionCerts> all_;
};

Theme themeOf(const char* json) {
    const auto text = textIfPresent(json, "theme");
    if (!text) return {};
    try {
        return readTheme(*text);
    } catch (const FaultyText& fault) {
        throw CallError(KORVANE_BAD_ARGUMENT, fault.what());
    }
}

std::string_view nameOf(Severity severity) {
    switch (severity) {
    case Severity::LOW: return "LOW";
    case Severity::MEDIUM: return "MEDIUM";
    case Severity::HIGH: return "HIGH";
    }
    return "HIGH";
}

} // namespace

korvane_result korvane_service_create(korvane_platform* platform, const korvane_configuration* configuration,
                                      korvane_service** service, korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        static_cast<void>(visit.find<PlatformObject>(platform, "platform"));
        visit.requireMain();
        require(service, "service");
        const korvane_configuration given = copyOf(configuration, "configuration");
        auto certificates = std::make_shared<GivenCertificates>(given);
        const auto locale = textIfPresent(given.locale, "locale");
        const Theme theme = themeOf(given.theme);
        const auto made = std::make_shared<ServiceObject>();
        made->service.setCertProducer(std::move(certificates));
        made->service.initialize(std::make_shared<ConfigParameters>(ConfigParameters::DevInfoCerts{}),
                                 theme.customization, theme.constraints, Logger::shared().debug(),
                                 locale ? Locale{*locale} : visit.platform().locales().current());
        *service = Handles::shared().add<korvane_service>(made);
    });
}

korvane_result korvane_service_version(korvane_service* service, char** version, korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        const auto found = visit.find<ServiceObject>(service, "service");
        require(version, "version");
        const ServiceObject::Turn turn(*found);
        *version = givenAway(found->service.getSDKVersion());
    });
}

korvane_result korvane_service_warnings(korvane_service* service, char** json, korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        const auto found = visit.find<ServiceObject>(service, "service");
        require(json, "json");
        const ServiceObject::Turn turn(*found);
        JSON all = JSON::array();
        for (const Warning& warning : found->service.getWarnings())
            all.push_back({{"id", warning.getId()},
                           {"message", warning.getMessage()},
                           {"severity", nameOf(warning.getSeverity())}});
        *json = givenAway(all.dump());
    });
}
