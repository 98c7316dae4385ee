#include "tools/acs/Check.h"

#include "tools/acs/Scenario.h"
#include "tools/common/CResCheck.h"
#include "tools/common/InputFile.h"
#include "tools/common/Terminal.h"

namespace korvane::acs {

namespace {

/// A message has members that no scenario has.
bool isMessage(const JSON& root) {
    return root.contains("messageType") || root.contains("acsTransID") || root.contains("acsUiType");
}

std::string reportOn(const std::string& file, bool& isUsable) {
    CheckedText text(tools::readInputFile(file), file);
    const bool isCRes = isMessage(text.root().json());
    text.attempt([&] {
        if (isCRes)
            static_cast<void>(tools::checkCRes(text));
        else
            static_cast<void>(readScenario(text));
    });
    isUsable = !text.hasFault();
    std::string report;
    for (const Remark& remark : text.remarks())
        report += remark.text + "\n";
    return report.empty() ? file + ": This " + (isCRes ? "CRes" : "scenario") + " is good.\n" : report;
}

} // namespace

bool checkFiles(const std::vector<std::string>& files, std::ostream& out) {
    bool areUsable = true;
    for (const std::string& file : files) {
        bool isUsable = false;
        try {
            out << tools::printable(reportOn(file, isUsable));
        } catch (const std::runtime_error& error) {
            out << tools::printable(error.what()) << "\n";
        }
        areUsable = areUsable && isUsable;
    }
    out << std::flush;
    return areUsable;
}

} // namespace korvane::acs
