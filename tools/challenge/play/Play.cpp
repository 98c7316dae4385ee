#include "tools/challenge/play/Play.h"

#include "tools/challenge/play/Child.h"
#include "tools/challenge/play/JUnit.h"
#include "tools/challenge/play/Report.h"
#include "tools/common/Terminal.h"
#include "tools/common/Tool.h"
#include "tools/common/UsageError.h"

#include <cerrno>
#include <fstream>
#include <iostream>
#include <list>
#include <optional>
#include <system_error>

#include <poll.h>
#include <unistd.h>

namespace korvane::challenge {

namespace {

/// A challenge under way.
class Performance {
public:
    Performance(const Plan& plan, std::size_t number, const std::function<int()>& session)
        : child_(session), follower_(plan, number) {}

    [[nodiscard]] int source() const noexcept { return child_.output(); }

    /// Takes what has come.
    /// @return whether the process has ended.
    bool advance() {
        lastHeard_ = PlayClock::now();
        for (const std::string& line : child_.read())
            takeLine(line);
        if (!child_.hasEnded()) return false;
        const std::string manner = child_.manner();
        follower_.end(isKilled_ ? "it was silent for too long" : manner);
        return true;
    }

    void endIfSilent(std::chrono::minutes limit) {
        if (PlayClock::now() - lastHeard_ < limit) return;
        isKilled_ = true;
        child_.kill();
    }

    [[nodiscard]] const Outcome& outcome() const noexcept { return follower_.outcome(); }

private:
    void takeLine(const std::string& line) {
        const auto event = JSONSerialization::jsonObject(line);
        if (!event || !event->is_object()) return;
        if (const auto action = follower_.take(*event)) child_.write(tools::jsonLine(*action));
        // The end of the input cancels, so that the ACS hears of it.
        if (follower_.hasLeftPlan()) child_.closeInput();
    }

    Child child_;
    Follower follower_;
    PlayClock::time_point lastHeard_ = PlayClock::now();
    bool isKilled_ = false;
};

/// The challenges that run side by side.
class Round {
public:
    Round(const PlayOptions& options, const Plan& plan, const std::function<int()>& session)
        : options_(options), plan_(plan), session_(session) {}

    void run(Report& report) {
        while (started_ < options_.repeat || !running_.empty()) {
            while (started_ < options_.repeat && running_.size() < options_.parallel)
                running_.emplace_back(plan_, ++started_, session_);
            advance(report);
        }
    }

private:
    void advance(Report& report) {
        constexpr int kPatience = 1000;
        std::vector<pollfd> sources;
        for (const Performance& performance : running_)
            sources.push_back({performance.source(), POLLIN, 0});
        if (::poll(sources.data(), sources.size(), kPatience) < 0 && errno != EINTR)
            throw std::system_error(errno, std::generic_category());
        auto source = sources.begin();
        for (auto performance = running_.begin(); performance != running_.end(); ++source) {
            const bool hasEnded = source->revents != 0 && performance->advance();
            if (hasEnded) report.add(performance->outcome());
            if (!hasEnded) performance->endIfSilent(options_.silence);
            performance = hasEnded ? running_.erase(performance) : std::next(performance);
        }
    }

    const PlayOptions& options_;
    const Plan& plan_;
    const std::function<int()>& session_;
    std::size_t started_ = 0;
    std::list<Performance> running_;
};

/// Opened before anything is played, so that a path of no use costs no challenges.
std::optional<std::ofstream> openJUnit(const std::string& path) {
    if (path.empty()) return std::nullopt;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file)
        throw tools::UsageError("--junit: " + path + ": The file cannot be written: " +
                                std::generic_category().message(errno) + ".");
    return file;
}

int complain(const std::string& reason) {
    tools::complain("korvane-challenge", reason);
    return tools::kNotDone;
}

} // namespace

int play(const PlayOptions& options, const std::function<int()>& session) {
    const Plan plan = loadPlan(options.plan);
    std::optional<std::ofstream> junit = openJUnit(options.junit);
    Report report(std::cout, ::isatty(STDOUT_FILENO) == 1 ? Display::bar : Display::lines, options.repeat);
    report.begin();
    const auto begin = PlayClock::now();
    Round(options, plan, session).run(report);
    const std::chrono::duration<double> wallTime = PlayClock::now() - begin;
    report.summarise(std::min(options.parallel, options.repeat), wallTime);
    if (junit) *junit << junitXML(options.plan, report.outcomes(), wallTime) << std::flush;
    if (junit && !*junit) return complain("--junit: " + options.junit + ": The file cannot be written.");
    if (!std::cout) return complain("The output cannot be written.");
    return report.failures() == 0 ? tools::kDone : tools::kNotDone;
}

} // namespace korvane::challenge
