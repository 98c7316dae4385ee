#include "tests/challenge/simulation/Story.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace korvane::simulation {

namespace {

constexpr std::string_view kRequest = "ACS: {";
constexpr std::string_view kErro = "ACS: Erro";
constexpr std::string_view kInterruption = "ACS: Erro 402";
constexpr std::string_view kEnding = "application: ";

Record only(const Record& record, std::string_view beginning) {
    Record found;
    std::ranges::copy_if(record, std::back_inserter(found),
                         [beginning](const Line& line) { return line.text.starts_with(beginning); });
    return found;
}

std::string lineAt(const Record& record, std::size_t index) {
    return index < record.size() ? textOf(record[index]) : "nothing";
}

void compare(const char* about, const Record& actual, const Record& expected,
             std::vector<std::string>& faults) {
    const auto [one, other] = std::ranges::mismatch(actual, expected);
    if (one == actual.end() && other == expected.end()) return;
    const auto index = static_cast<std::size_t>(one - actual.begin());
    faults.push_back(std::string(about) + " " + std::to_string(index) + ": " + lineAt(actual, index) +
                     " instead of " + lineAt(expected, index));
}

} // namespace

std::string textOf(const Line& line) {
    char time[32];
    std::snprintf(time, sizeof time, "%11.6f  ", std::chrono::duration<double>(line.at).count());
    return time + line.text;
}

std::vector<std::string> differences(const Record& actual, const Record& expected) {
    std::vector<std::string> faults;
    if (actual == expected) return faults;
    compare("ending", only(actual, kEnding), only(expected, kEnding), faults);
    compare("request", only(actual, kRequest), only(expected, kRequest), faults);
    compare("Erro", only(actual, kErro), only(expected, kErro), faults);
    if (faults.empty()) compare("order of events", actual, expected, faults);
    return faults;
}

std::vector<std::string> brokenRules(const Record& record, std::size_t allowedEndings) {
    std::vector<std::string> faults;
    const Record endings = only(record, kEnding);
    if (endings.size() > allowedEndings)
        faults.push_back("endings: " + textOf(endings.back()) + " is number " +
                         std::to_string(endings.size()) + " where " + std::to_string(allowedEndings) +
                         " may come");
    const Record requests = only(record, kRequest);
    for (std::size_t index = 0; index < requests.size(); ++index) {
        const std::string counter = R"("sdkCounterStoA":"00)" + std::to_string(index) + "\"";
        if (requests[index].text.find(counter) == std::string::npos)
            faults.push_back("counter: request " + std::to_string(index) + " is " + textOf(requests[index]));
    }
    const Record interruptions = only(record, kInterruption);
    if (interruptions.size() > 1) faults.emplace_back("interruption: the ACS heard of it twice");
    if (!interruptions.empty() && !requests.empty() && requests.back().at > interruptions.front().at)
        faults.push_back("request after the interruption: " + textOf(requests.back()));
    return faults;
}

} // namespace korvane::simulation
