#include "tools/challenge/Actions.h"
#include "tools/challenge/Certificates.h"
#include "tools/challenge/Session.h"
#include "tools/common/Tool.h"

namespace {

using namespace korvane;
using namespace korvane::challenge;

std::string footer() {
    return "It writes an authenticationRequest event, reads one line with the answer's values "
           "(threeDSServerTransID,\n"
           "acsTransID, acsRefNumber, acsSignedContent, threeDSRequestorAppURL; each may be absent), then "
           "writes a\n"
           "screen event for each screen and reads one action for it, up to the one ending: completed, "
           "cancelled,\n"
           "timedout, protocolError or runtimeError. A failure before the challenge is an sdkError event. A "
           "line that\n"
           "cannot be served is answered by an error event. The end of the input cancels.\n\n"
           "Actions, as in {\"action\":\"submit\",\"data\":\"1234\"}; members in brackets may be absent:\n" +
           actionHelp() + "\nExit: 0 when an ending was told, 1 without one, 2 on wrong usage.";
}

void define(CLI::App& app, Options& options) {
    app.add_option("--directory-server", options.directoryServer, "Identifier of the directory server.")
        ->required();
    app.add_option("--algorithm", options.algorithm, "Kind of key in its certificate.")
        ->required()
        ->check(CLI::IsMember({"EC", "RSA"}));
    app.add_option("--ds-certificate", options.directoryServerCertificate,
                   "Its certificate for device data, in DER or PEM.")
        ->required()
        ->check(tools::notEmpty());
    app.add_option("--ds-root", options.directoryServerRoot, "The root of the ACS's chain, in DER or PEM.")
        ->required()
        ->check(tools::notEmpty());
    app.add_option("--message-version", options.messageVersion, "Version of the protocol's messages.")
        ->capture_default_str();
    app.add_option("--timeout", options.timeout, "Time for the whole challenge, in minutes.")
        ->capture_default_str()
        ->check(CLI::Range(std::int64_t{0}, std::int64_t{1000000}));
    app.add_option("--locale", options.locale, "Locale for the device data.")->capture_default_str();
    app.add_option("--ca", options.certificateAuthority, "Further authorities for HTTPS, in DER or PEM.")
        ->check(tools::notEmpty());
    app.add_flag("--log", options.isLogging, "Print the library's log lines on standard error.");
    app.footer(footer());
}

TransactionCerts certificatesOf(const Options& options) {
    const bool isEC = options.algorithm == "EC";
    const SecKeyType type = isEC ? SecKeyType::kSecAttrKeyTypeEC : SecKeyType::kSecAttrKeyTypeRSA;
    return {readCertificate(options.directoryServerCertificate, type),
            readCertificate(options.directoryServerRoot), isEC ? CertAlgorithm::EC : CertAlgorithm::RSA,
            options.directoryServer};
}

int run(const Options& options) {
    EventWriter events;
    TransactionCerts certificates = certificatesOf(options);
    HeadlessPlatform platform;
    if (!options.certificateAuthority.empty())
        platform.addCertificateAuthorities(readAuthorities(options.certificateAuthority));
    const auto session = std::make_shared<Session>(platform, options, std::move(certificates), events);
    platform.dispatch().mainQueue().async([session] { session->begin(); });
    platform.runMain();
    if (!events.isGood()) tools::complain("korvane-challenge", "The output cannot be written.");
    return session->hasEnded() && events.isGood() ? tools::kDone : tools::kNotDone;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Plays a cardholder without a screen: the library's own challenge screens as JSON lines.",
                 "korvane-challenge");
    define(app, options);
    return tools::runTool(app, argc, argv, [&] { return run(options); });
}
