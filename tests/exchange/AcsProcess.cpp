#include "tests/exchange/AcsProcess.h"

#include "Platform/Failure.h"

#include <array>
#include <cstdlib>

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace korvane {

namespace {

void must(bool isDone, std::string_view reason) {
    if (!isDone) fatalError(reason);
}

/// Starts the tool with nothing to read and its standard output in `output`.
pid_t spawnAcs(const std::string& pkiFolder, const std::string& scenario, int output) {
    std::string program = KORVANE_ACS;
    const std::string scenarios = KORVANE_SCENARIOS;
    std::string pki = "--pki=" + pkiFolder;
    std::string file = "--scenario=" + scenarios + "/" + scenario + ".json";
    std::array<char*, 4> arguments{program.data(), pki.data(), file.data(), nullptr};
    posix_spawn_file_actions_t actions;
    must(posix_spawn_file_actions_init(&actions) == 0 &&
             posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0) == 0 &&
             posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO) == 0,
         "No file actions for korvane-acs.");
    pid_t process = -1;
    const int failure = posix_spawn(&process, program.c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    must(failure == 0, "korvane-acs cannot be started.");
    return process;
}

} // namespace

std::vector<JSON> AcsEnding::messages(const std::string& event) const {
    std::vector<JSON> found;
    for (const JSON& line : events)
        if (line["event"] == event) found.push_back(line.value("message", JSON()));
    return found;
}

AcsProcess::AcsProcess(const std::string& pkiFolder, const std::string& scenario) {
    std::array<int, 2> ends{};
    must(::pipe2(ends.data(), O_CLOEXEC) == 0, "No pipe for korvane-acs.");
    process_ = spawnAcs(pkiFolder, scenario, ends[1]);
    ::close(ends[1]);
    output_.reset(::fdopen(ends[0], "r"));
    auto first = readEvent();
    must(first && first->value("event", "") == "listening", "korvane-acs ended without a first line.");
    listening_ = std::move(*first);
    reader_ = std::thread([this] {
        while (auto event = readEvent())
            events_.push_back(std::move(*event));
    });
}

AcsProcess::~AcsProcess() {
    if (process_ > 0) stop();
}

AcsEnding AcsProcess::stop() {
    ::kill(process_, SIGTERM);
    reader_.join();
    int status = 0;
    must(::waitpid(process_, &status, 0) == process_, "korvane-acs is not our process.");
    process_ = -1;
    constexpr int kSignalled = 128;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status), std::move(events_)};
}

std::optional<JSON> AcsProcess::readEvent() {
    char* line = nullptr;
    std::size_t capacity = 0;
    const ssize_t length = ::getline(&line, &capacity, output_.get());
    const std::unique_ptr<char, decltype(&std::free)> owned(line, &std::free);
    if (length <= 0) return std::nullopt;
    auto event = JSONSerialization::jsonObject({line, static_cast<std::size_t>(length)});
    must(event.has_value(), line);
    return event;
}

} // namespace korvane
