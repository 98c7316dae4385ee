#include "tools/screen/Script.h"

#include "Sdk/Messages/MessageValues.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "tools/common/CResCheck.h"
#include "tools/common/InputFile.h"
#include "tools/common/UsageError.h"

#include <cstdlib>

#include <unistd.h>

namespace korvane::screen {

namespace {

/// Of the kinds of screens there is a message without any: it ends the challenge.
void requireScreen(const CRes& cRes, const std::string& file) {
    if (cRes.challengeCompletionInd == rawValue(YesNoSelector::Y))
        throw NotDone(file + ": This CRes ends the challenge and shows no screen.");
}

/// As root the web engine ends the whole program, with a line that only its developers understand.
void requireEngine(const CRes& cRes, const std::string& file) {
    if (cRes.acsUiType != rawValue(UiType::HTML_OTHER)) return;
    if (!ChallengeWebViewController::isAvailable())
        throw NotDone(file +
                      ": This CRes is a web page, and this program was built without an engine for them.");
    if (::geteuid() == 0 && !std::getenv("QTWEBENGINE_DISABLE_SANDBOX"))
        throw tools::UsageError(
            "A bank's page is not drawn as root. Run this as another user, or, for pages that "
            "you trust, set QTWEBENGINE_DISABLE_SANDBOX=1.");
}

CRes readCRes(const std::string& file) {
    const std::string json = tools::readInputFile(file);
    try {
        CheckedText text(json, file);
        CRes cRes;
        text.attempt([&] { cRes = tools::checkCRes(text); });
        text.requireNoFault();
        requireScreen(cRes, file);
        requireEngine(cRes, file);
        return cRes;
    } catch (const FaultyText& error) {
        throw NotDone(error.what());
    }
}

} // namespace

Theme readThemeIfAny(const std::string& file) {
    return file.empty() ? Theme{} : readThemeFile(file);
}

Script readScript(const std::string& cres, const std::string& theme) {
    return {readCRes(cres), readThemeIfAny(theme)};
}

} // namespace korvane::screen
