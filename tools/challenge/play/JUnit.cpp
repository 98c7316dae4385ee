#include "tools/challenge/play/JUnit.h"

#include "tools/common/Terminal.h"

#include <algorithm>

namespace korvane::challenge {

namespace {

/// A text as it may stand in an attribute. Control characters, which XML cannot hold at all, leave as they do
/// on a terminal.
std::string attribute(const std::string& text) {
    std::string result;
    for (const char character : tools::printable(text)) {
        switch (character) {
        case '&': result += "&amp;"; break;
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '"': result += "&quot;"; break;
        case '\n': result += "&#10;"; break;
        default: result += character;
        }
    }
    return '"' + result + '"';
}

std::string joinedLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += (text.empty() ? "" : "\n") + line;
    return text;
}

std::string timeOf(std::chrono::duration<double> time) {
    return attribute(std::to_string(time.count()));
}

std::string testCase(const std::string& plan, const Outcome& outcome) {
    const std::string name = "challenge " + std::to_string(outcome.number);
    const std::string head = "  <testcase classname=" + attribute(plan) + " name=" + attribute(name) +
                             " time=" + timeOf(outcome.time);
    if (outcome.hasPassed()) return head + "/>\n";
    const std::string told = "sdkTransID " + outcome.sdkTransactionID;
    return head +
           ">\n    <failure type=\"difference\" message=" + attribute(joinedLines(outcome.differences)) +
           "/>\n    <system-out>" + told + "</system-out>\n  </testcase>\n";
}

} // namespace

std::string junitXML(const std::string& plan, std::vector<Outcome> outcomes,
                     std::chrono::duration<double> wallTime) {
    std::sort(outcomes.begin(), outcomes.end(),
              [](const Outcome& left, const Outcome& right) { return left.number < right.number; });
    const auto failures = std::count_if(outcomes.begin(), outcomes.end(),
                                        [](const Outcome& outcome) { return !outcome.hasPassed(); });
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=" + attribute(plan) +
                      " tests=\"" + std::to_string(outcomes.size()) + "\" failures=\"" +
                      std::to_string(failures) + "\" errors=\"0\" time=" + timeOf(wallTime) + ">\n";
    for (const Outcome& outcome : outcomes)
        xml += testCase(plan, outcome);
    return xml + "</testsuite>\n";
}

} // namespace korvane::challenge
