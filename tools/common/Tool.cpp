#include "tools/common/Tool.h"

#include "Platform/Failure.h"
#include "Platform/FaultyText.h"
#include "Platform/LetterCase.h"
#include "Platform/URL.h"
#include "tools/common/Manual.h"
#include "tools/common/Terminal.h"
#include "tools/common/UsageError.h"

#include <csignal>
#include <iostream>
#include <sstream>

#include <fcntl.h>
#include <unistd.h>

namespace korvane::tools {

namespace {

/// The number of a closed stream would go to the next file or connection, which would then get what is meant
/// for the stream. The file in its place is open in the wrong direction, so that its use fails as before.
void holdStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(stream, F_GETFD) < 0)
            static_cast<void>(::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    // A write to nobody is a failed write, of which the tool can tell.
    std::signal(SIGPIPE, SIG_IGN);
}

/// What the command line has wrong, or the help that it asks for.
int answer(const CLI::App& app, const CLI::ParseError& error) {
    std::ostringstream output;
    std::ostringstream errors;
    const bool isAsked = app.exit(error, output, errors) == 0;
    std::cerr << printable(errors.str());
    std::cout << output.str() << std::flush;
    if (!isAsked) return kWrongUsage;
    if (std::cout) return kDone;
    complain(app.get_name(), "The output cannot be written.");
    return kNotDone;
}

/// `--version`, and what the build asks a tool for. They are answered before anything is found missing.
void addPages(CLI::App& app) {
    app.set_version_flag("--version", app.get_name() + " " + KORVANE_VERSION, "Print the version and exit");
    const auto add = [&app](const char* name, const std::function<std::string()>& make) {
        const auto print = [make] { throw CLI::CallForVersion(make(), 0); };
        // In no group, so that nothing lists it.
        app.add_flag_callback(name, print)->trigger_on_parse()->group("");
    };
    add("--manual-page", [&app] { return manualPage(app, KORVANE_VERSION); });
    add("--bash-completion", [&app] { return bashCompletion(app); });
}

} // namespace

int runTool(CLI::App& app, int argc, char** argv, const std::function<int()>& run) {
    holdStandardStreams();
    addPages(app);
    try {
        app.parse(argc, argv);
        return run();
    } catch (const CLI::ParseError& error) {
        return answer(app, error);
    } catch (const UsageError& error) {
        complain(app.get_name(), error.what());
        return kWrongUsage;
    } catch (const FaultyText& error) {
        complain(app.get_name(), error.what());
        return kWrongUsage;
    } catch (const std::exception& error) {
        complain(app.get_name(), localizedDescription(error));
        return kNotDone;
    }
}

void complain(std::string_view tool, std::string_view reason) {
    std::cerr << printable(std::string(tool) + ": " + std::string(reason)) + "\n";
}

CLI::Validator notEmpty() {
    return CLI::Validator(
        [](std::string& text) { return text.empty() ? "must not be empty." : std::string(); }, "");
}

CLI::Validator isHTTP() {
    return CLI::Validator(
        [](std::string& text) {
            const std::string small = lowercased(text);
            const bool isFit =
                (small.starts_with("https://") || small.starts_with("http://")) && URL::make(text);
            return isFit ? std::string() : "must be a URL of https or http, and is " + text;
        },
        "");
}

} // namespace korvane::tools
