#include "tools/acs/Check.h"
#include "tools/acs/Embedded.h"
#include "tools/acs/EventLog.h"
#include "tools/acs/HttpServer.h"
#include "tools/acs/Page.h"
#include "tools/acs/Pki.h"
#include "tools/acs/ReadyFile.h"
#include "tools/acs/Scenarios.h"
#include "tools/acs/Sealing.h"
#include "tools/acs/Service.h"
#include "tools/common/Manual.h"
#include "tools/common/Terminal.h"
#include "tools/common/Tool.h"
#include "tools/common/UsageError.h"

#include <cmath>
#include <csignal>
#include <iostream>
#include <thread>

namespace {

using namespace korvane::acs;
using korvane::tools::UsageError;

struct Options {
    std::string pki;
    std::string listen = "127.0.0.1:0";
    /// Empty where the option is absent, as below.
    std::string scenario;
    std::string scenarios;
    std::string log;
    std::string directoryServerID = "A999999999";
    double forgetAfter = 600;
    std::vector<std::string> check;
    std::string expose;
    std::string readyFile;
    bool isQuiet = false;
};

struct Address {
    std::string host;
    int port;
};

Address addressOf(const Options& options) {
    const std::string& text = options.listen;
    const bool isExposed = !options.expose.empty();
    const std::size_t colon = text.rfind(':');
    const std::string host = text.substr(0, colon);
    const std::string port = colon == std::string::npos ? "" : text.substr(colon + 1);
    const bool isNumber =
        !port.empty() && port.size() <= 5 && port.find_first_not_of("0123456789") == std::string::npos;
    if (!isNumber || std::stoi(port) > 65535 || (!isExposed && host != "127.0.0.1" && host != "localhost"))
        throw UsageError("--listen: " + text +
                         " is no address of this kind: 127.0.0.1:PORT or localhost:PORT" +
                         (isExposed ? ", or another HOST:PORT." : "; others need --expose."));
    return {host, std::stoi(port)};
}

std::chrono::milliseconds lifetimeOf(double seconds) {
    constexpr double kShortest = 0.001;
    constexpr double kLongest = 86400;
    // What is not a number is in no range either.
    const bool isInRange = seconds >= kShortest && seconds <= kLongest;
    if (!isInRange) throw UsageError("--forget-after: must lie between 0.001 and 86400.");
    return std::chrono::milliseconds(std::lround(seconds * 1000));
}

std::string faultHelp() {
    std::string text;
    for (const FaultRow& row : allFaults()) {
        std::string line = "  " + std::string(row.name);
        line.resize(std::max<std::size_t>(line.size() + 1, 24), ' ');
        text += line + std::string(row.effect) + ".\n";
    }
    return text;
}

std::string footer() {
    return "Endpoints: POST /authenticate, POST /challenge/<acsTransID>, GET "
           "/logo/{issuer,ps}-{medium,high,extraHigh}"
           ".png; GET / is a page that shows the transactions and steers them.\n"
           "The header field Korvane-Scenario of POST /authenticate names the scenario of that transaction.\n"
           "The first line on stdout has the event \"listening\", the url, and the certificates that a "
           "client needs; "
           "then comes a line per message, opened.\n\n"
           "A scenario is a JSON object:\n"
           "  description             for people\n"
           "  signature               PS256 (default), RS256 or ES256\n"
           "  threeDSRequestorAppURL  passed on by /authenticate\n"
           "  authentication          {\"fault\": {...}}: spoils acsSignedContent\n"
           "  steps                   list of screens, in their order\n"
           "  success, failure        {\"transStatus\": \"Y\" or \"N\", \"fault\": {...}}: the last CRes\n"
           "A step:\n"
           "  screen      members of the CRes; {url} in a text is this server, acsHTML is plain HTML\n"
           "  accepts     members of the CReq, each with the list of values that pass\n"
           "  attempts    answers before the challenge fails (1)\n"
           "  passesFrom  the first of them that can pass (1)\n"
           "  retry       members that replace the screen's after a wrong answer\n"
           "  fault       {\"name\": ..., parameters}: spoils the CRes that shows the screen\n\n"
           "Faults, with their parameters in quotes; the first two are for authentication, the others for "
           "steps:\n" +
           faultHelp() +
           "\nExit: 0 when a signal ended it or all files can be used, 1 when not, 2 on wrong usage.";
}

void addOptions(CLI::App& app, Options& options) {
    app.add_option("--pki", options.pki, "Folder of certificates and keys; filled when absent or empty.")
        ->type_name(korvane::tools::kFolder)
        ->check(korvane::tools::notEmpty());
    app.add_option(
           "--check", options.check,
           "Files to look at, scenarios or CRes, in place of serving: all that is wrong with them, and "
           "what surely is not meant.")
        ->type_name(korvane::tools::kFile);
    app.add_option("--listen", options.listen, "Where to listen; port 0 takes a free one.")
        ->capture_default_str();
    app.add_option("--scenario", options.scenario,
                   "The scenario to play; without it a text screen that takes 1234.")
        ->type_name(korvane::tools::kFile)
        ->check(korvane::tools::notEmpty());
    app.add_option("--scenarios", options.scenarios,
                   "A folder of scenarios that can be asked for by name, beside those that are built in.")
        ->type_name(korvane::tools::kFolder)
        ->check(korvane::tools::notEmpty());
    app.add_option("--log", options.log, "A file that gets the lines too.")
        ->type_name(korvane::tools::kFile)
        ->check(korvane::tools::notEmpty());
    app.add_option("--directory-server", options.directoryServerID,
                   "Directory server identifier that EC device data is bound to.")
        ->check(korvane::tools::notEmpty())
        ->capture_default_str();
    app.add_option("--forget-after", options.forgetAfter,
                   "Seconds until a challenge is forgotten: 0.001 to 86400.")
        ->capture_default_str();
    app.add_option(
           "--expose", options.expose,
           "Serve other machines: --listen may be any address, as 0.0.0.0:8443; they reach it by this "
           "name or IPv4 address, which the certificate is for. The page stays on this machine.")
        ->check(korvane::tools::notEmpty());
    app.add_option("--ready-file", options.readyFile,
                   "A file that is there, with what the first line says, while the tool serves.")
        ->type_name(korvane::tools::kFile)
        ->check(korvane::tools::notEmpty());
    app.add_flag("--quiet", options.isQuiet, "Nothing on stdout but the first line.");
    app.footer(footer());
}

korvane::JSON listeningEvent(const Options& options, const Pki& pki, const std::string& url) {
    const auto path = [&](std::string_view name, const char* extension) {
        return pki.file(name, extension).string();
    };
    return {{"event", "listening"},
            {"url", url},
            {"tlsRoot", path(Pki::tlsRoot, ".pem")},
            {"directoryServerID", options.directoryServerID},
            {"directoryServerRoot", path(Pki::directoryServerRoot, ".der")},
            {"deviceDataRSA", path(Pki::deviceDataRSA, ".der")},
            {"deviceDataEC", path(Pki::deviceDataEC, ".der")}};
}

/// Blocks the two signals, for the threads that start later too, so that `sigwait` gets them.
sigset_t blockStopSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

int check(const Options& options) {
    const bool areUsable = checkFiles(options.check, std::cout);
    if (!std::cout) throw std::runtime_error("The output cannot be written.");
    return areUsable ? korvane::tools::kDone : korvane::tools::kNotDone;
}

int serve(const Options& options) {
    if (options.pki.empty()) throw CLI::RequiredError("--pki");
    const Address address = addressOf(options);
    const std::chrono::milliseconds lifetime = lifetimeOf(options.forgetAfter);
    const Scenarios scenarios(options.scenarios);
    const Play standing = options.scenario.empty()
                              ? Play::read("text", std::string(embeddedText("scenarios/text.json")))
                              : Play::load(options.scenario);
    const sigset_t signals = blockStopSignals();
    const Pki pki(options.pki, options.expose);
    const KeyRing keys(pki, options.directoryServerID);
    ReadyFile ready(options.readyFile);
    EventLog log(options.log.empty() ? std::nullopt : std::optional(options.log));
    HttpServer server(pki.file(Pki::tlsServer, ".pem"), pki.file(Pki::tlsServer, ".key"));
    const int port = server.bind(address.host, address.port);
    const std::string host = options.expose.empty() ? address.host : options.expose;
    const std::string url = "https://" + host + ":" + std::to_string(port);
    Desk desk;
    Service service({standing, scenarios, url, lifetime}, keys, log, desk);
    Page page(port, standing, scenarios, log.journal(), desk);
    const korvane::JSON listening = listeningEvent(options, pki, url);
    ready.write(korvane::tools::jsonLine(listening));
    log.write(listening);
    if (options.isQuiet) log.keepFromStandardOutput();
    std::thread serving([&] {
        server.run([&](const Request& request) {
            auto answer = page.answer(request);
            return answer ? std::move(*answer) : service.answer(request);
        });
    });
    int signal = 0;
    sigwait(&signals, &signal);
    server.stop();
    serving.join();
    return korvane::tools::kDone;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Plays the 3DS server, the directory server and the ACS of a test, over HTTPS on loopback.",
                 "korvane-acs");
    addOptions(app, options);
    return korvane::tools::runTool(app, argc, argv,
                                   [&] { return options.check.empty() ? serve(options) : check(options); });
}
