#include "Cardholder/Actions.h"
#include "tools/challenge/Certificates.h"
#include "tools/challenge/Session.h"
#include "tools/challenge/play/Plan.h"
#include "tools/common/Manual.h"
#include "tools/common/Tool.h"

#include <functional>

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
           "cannot be served is answered by an error event. The end of the input cancels.\n"
           "An ending has a hint where the tool knows more of its reason than the library tells.\n\n"
           "Actions, as in {\"action\":\"submit\",\"data\":\"1234\"}; members in brackets may be absent:\n" +
           cardholder::actionHelp() + "\n" + planHelp() +
           "The first difference cancels the challenge. Times run from the authentication request to the "
           "ending, the\n"
           "server's answer included; where many run at a time they wait for this machine's processors too.\n"
           "\nExit: 0 when an ending was told, and with --play when all challenges passed; 1 else; 2 on "
           "wrong usage.";
}

/// What many challenges need, which ask a server themselves.
void definePlay(CLI::App& app, PlayOptions& options, CLI::Option* authenticate) {
    CLI::Option* plan =
        app.add_option("--play", options.plan, "A plan to play: what comes is compared with what it expects.")
            ->type_name(tools::kFile)
            ->check(tools::notEmpty())
            ->needs(authenticate);
    app.add_option("--repeat", options.repeat, "How many challenges to play by it.")
        ->capture_default_str()
        ->check(CLI::Range(1, 1000000))
        ->needs(plan);
    app.add_option("--parallel", options.parallel,
                   "How many of them run side by side, each in a process of its own.")
        ->capture_default_str()
        ->check(CLI::Range(1, 256))
        ->needs(plan);
    app.add_option("--junit", options.junit, "A file for the outcomes, as XML for build servers.")
        ->type_name(tools::kFile)
        ->check(tools::notEmpty())
        ->needs(plan);
}

void define(CLI::App& app, Options& options) {
    app.add_option("--directory-server", options.server.identifier, "Identifier of the directory server.")
        ->required();
    app.add_option("--algorithm", options.server.algorithm, "Kind of key in its certificate.")
        ->required()
        ->check(CLI::IsMember({"EC", "RSA"}));
    app.add_option("--ds-certificate", options.server.certificate,
                   "Its certificate for device data, in DER or PEM.")
        ->type_name(tools::kFile)
        ->required()
        ->check(tools::notEmpty());
    app.add_option("--ds-root", options.server.root, "The root of the ACS's chain, in DER or PEM.")
        ->type_name(tools::kFile)
        ->required()
        ->check(tools::notEmpty());
    app.add_option("--message-version", options.messageVersion, "Version of the protocol's messages.")
        ->capture_default_str();
    app.add_option("--timeout", options.timeout, "Time for the whole challenge, in minutes.")
        ->capture_default_str()
        ->check(CLI::Range(std::int64_t{0}, std::int64_t{1000000}));
    app.add_option("--locale", options.locale, "Locale for the device data.")->capture_default_str();
    app.add_option("--ca", options.certificateAuthority, "Further authorities for HTTPS, in DER or PEM.")
        ->type_name(tools::kFile)
        ->check(tools::notEmpty());
    CLI::Option* authenticate =
        app.add_option(
               "--authenticate", options.authenticate,
               "URL of a 3DS server that takes the authenticationRequest event and answers the values, "
               "in place of the standard streams.")
            ->type_name("URL")
            ->check(tools::isHTTP());
    definePlay(app, options.play, authenticate);
    app.add_flag("--log", options.isLogging, "Print the library's log lines on standard error.");
    app.footer(footer());
}

/// What the files that the options name hold.
struct Given {
    TransactionCerts certificates;
    /// As PEM; empty for none.
    std::string authorities;
};

Given readFiles(const Options& options) {
    const std::string& authorities = options.certificateAuthority;
    return {readTransactionCerts(options.server),
            authorities.empty() ? std::string() : readAuthorities(authorities)};
}

int playChallenge(const Options& options, const Given& given) {
    // Many at a time have one standard error, and the report on it.
    EventWriter events(options.play.plan.empty() ? StrayOutput::standardError : StrayOutput::nowhere);
    HeadlessPlatform platform;
    if (!given.authorities.empty()) platform.addCertificateAuthorities(given.authorities);
    const auto wire = std::make_shared<Wire>();
    platform.watchAnswers(std::bind_front(&Wire::watch, wire));
    const auto session = std::make_shared<Session>(platform, options, given.certificates, events, wire);
    platform.dispatch().mainQueue().async([session] { session->begin(); });
    platform.runMain();
    if (!events.isGood()) tools::complain("korvane-challenge", "The output cannot be written.");
    return session->hasEnded() && events.isGood() ? tools::kDone : tools::kNotDone;
}

int run(Options options) {
    const Given given = readFiles(options);
    const auto challenge = [&] { return playChallenge(options, given); };
    if (options.play.plan.empty()) return challenge();
    // The challenge's own limit comes first, if only it is kept.
    options.play.silence = std::chrono::minutes(options.timeout + 2);
    return play(options.play, challenge);
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Plays a cardholder without a screen: the library's own challenge screens as JSON lines.",
                 "korvane-challenge");
    define(app, options);
    return tools::runTool(app, argc, argv, [&] { return run(options); });
}
