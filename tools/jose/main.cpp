#include "tools/common/Tool.h"
#include "tools/jose/Batch.h"
#include "tools/jose/Inspect.h"
#include "tools/jose/OperationTable.h"

#include <ios>
#include <iostream>

namespace {

using namespace korvane::jose;
using korvane::tools::kDone;
using korvane::tools::kNotDone;

int complain(const std::string& text) {
    korvane::tools::complain("korvane-jose", text);
    return kNotDone;
}

int inspectForPerson(const std::string& compact) {
    try {
        std::cout << inspect(compact) << std::flush;
    } catch (const Complaint& complaint) {
        return complain(complaint.what());
    }
    return std::cout ? kDone : complain("The output cannot be written.");
}

int serve() {
    std::ios::sync_with_stdio(false);
    try {
        switch (serveBatch(std::cin, std::cout)) {
        case BatchEnd::allServed: return kDone;
        case BatchEnd::someRefused: return kNotDone;
        case BatchEnd::outputLost: break;
        }
        return complain("The output cannot be written.");
    } catch (const std::ios_base::failure& failure) {
        return complain("The input cannot be read: " + failure.code().message() + ".");
    }
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("Seals, opens, signs and verifies JOSE messages.\n"
                 "Without a subcommand it reads operations from standard input, one JSON object a line, and "
                 "answers each "
                 "with a line.",
                 "korvane-jose");
    app.footer("Operations and their members; bytes are Base64URL without padding, a key is a JWK, {\"pem\": "
               "...} or "
               "{\"cert\": ...}:\n" +
               operationHelp() + "\nExit: 0 when all was done, 1 when something was not, 2 on wrong usage.");
    std::string compact;
    CLI::App* inspecting =
        app.add_subcommand("inspect", "Describes a compact JWE or JWS without opening it.");
    inspecting->add_option("COMPACT", compact, "The message.")->required();
    return korvane::tools::runTool(app, argc, argv,
                                   [&] { return *inspecting ? inspectForPerson(compact) : serve(); });
}
