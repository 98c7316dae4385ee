#include "tools/screen/Script.h"

#include "Platform/Failure.h"
#include "Platform/NSBundle.h"
#include "Sdk/Messages/MessageValues.h"
#include "tools/common/CResCheck.h"
#include "tools/common/InputFile.h"
#include "tools/common/UsageError.h"

namespace korvane::screen {

namespace {

/// Of the kinds of screens there is a message without any: it ends the challenge.
void requireScreen(const CRes& cRes, const std::string& file) {
    if (cRes.challengeCompletionInd == rawValue(YesNoSelector::Y))
        throw NotDone(file + ": This CRes ends the challenge and shows no screen.");
}

CRes readCRes(const std::string& file) {
    const std::string json = tools::readInputFile(file);
    try {
        CheckedText text(json, file);
        CRes cRes;
        text.attempt([&] { cRes = tools::checkCRes(text); });
        text.requireNoFault();
        requireScreen(cRes, file);
        return cRes;
    } catch (const FaultyText& error) {
        throw NotDone(error.what());
    }
}

Theme readThemeIfAny(const std::string& file) {
    if (file.empty()) return {};
    try {
        return readThemeFile(file);
    } catch (const Failure& error) {
        throw tools::UsageError(file + ": " + error.localizedDescription());
    }
}

} // namespace

Script readScript(const std::string& cres, const std::string& theme) {
    return {readCRes(cres), readThemeIfAny(theme)};
}

} // namespace korvane::screen
