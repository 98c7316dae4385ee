#include "tools/challenge/play/Report.h"

#include "tools/common/Terminal.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <ostream>
#include <sstream>

namespace korvane::challenge {

namespace {

constexpr std::size_t kBarWidth = 40;

std::string seconds(double value) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(2) << value << " s";
    return text.str();
}

/// "3 failed (6f1c...): screen 1: ..." with a line for each further difference.
std::string lineOf(const Outcome& outcome) {
    std::string line = std::to_string(outcome.number);
    if (outcome.hasPassed()) return line + " passed, " + seconds(outcome.time.count()) + "\n";
    line += " failed";
    if (!outcome.sdkTransactionID.empty()) line += " (sdkTransID " + outcome.sdkTransactionID + ")";
    line += ":\n";
    for (const std::string& difference : outcome.differences)
        line += "    " + difference + "\n";
    return tools::printable(line);
}

/// The smallest of the values that so many of a hundred do not exceed (nearest rank).
double percentile(const std::vector<double>& sorted, double share) {
    const auto rank = static_cast<std::size_t>(std::ceil(share / 100 * static_cast<double>(sorted.size())));
    return sorted[std::max<std::size_t>(rank, 1) - 1];
}

} // namespace

Report::Report(std::ostream& out, Display display, std::size_t total)
    : out_(out), display_(display), total_(total) {}

void Report::begin() {
    if (display_ == Display::bar) drawBar();
}

void Report::add(const Outcome& outcome) {
    outcomes_.push_back(outcome);
    if (!outcome.hasPassed()) ++failures_;
    if (display_ == Display::bar) eraseBar();
    if (display_ == Display::lines || !outcome.hasPassed()) out_ << lineOf(outcome) << std::flush;
    if (display_ == Display::bar) drawBar();
}

void Report::summarise(std::size_t parallel, std::chrono::duration<double> wallTime) {
    if (display_ == Display::bar) eraseBar();
    std::vector<double> times;
    for (const Outcome& outcome : outcomes_)
        if (outcome.hasPassed()) times.push_back(outcome.time.count());
    std::sort(times.begin(), times.end());
    out_ << total_ << (total_ == 1 ? " challenge, " : " challenges, ") << parallel << " at a time, in "
         << seconds(wallTime.count()) << ": " << times.size() << " passed, " << failures_ << " failed\n";
    if (!times.empty())
        out_ << "Time of a challenge that passed: median " << seconds(percentile(times, 50))
             << ", 95th percentile " << seconds(percentile(times, 95)) << ", longest "
             << seconds(times.back()) << "\n";
    out_ << std::flush;
}

void Report::drawBar() {
    const std::size_t filled = kBarWidth * outcomes_.size() / total_;
    out_ << "[" << std::string(filled, '#') << std::string(kBarWidth - filled, ' ') << "] "
         << outcomes_.size() << "/" << total_ << ", " << failures_ << " failed" << std::flush;
}

/// Back to the start of the line, and the line cleared.
void Report::eraseBar() {
    out_ << "\r\x1b[K";
}

} // namespace korvane::challenge
