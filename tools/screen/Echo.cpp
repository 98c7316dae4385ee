#include "tools/screen/Echo.h"

#include "Platform/Platform.h"
#include "tools/common/Terminal.h"

#include <iostream>

namespace korvane::screen {

namespace {

void say(JSON sent, std::optional<YesNoSelector> whitelisting = std::nullopt) {
    if (whitelisting) sent["whitelistingDataEntry"] = std::string(rawValue(*whitelisting));
    std::cout << tools::jsonLine(sent) << std::flush;
}

} // namespace

void Echo::resendOtp() {
    say({{"resendChallenge", "Y"}});
    goOn();
}

void Echo::sendChallengeDataToAcs(const std::string& data,
                                  std::optional<YesNoSelector> whitelistingDataEntry) {
    say({{"challengeDataEntry", data}}, whitelistingDataEntry);
    goOn();
}

void Echo::sendOobContinue(std::optional<YesNoSelector> whitelistingDataEntry) {
    say({{"oobContinue", true}}, whitelistingDataEntry);
    goOn();
}

void Echo::sendHtmlChallengeDataToAcs(const std::string& data) {
    say({{"challengeHTMLDataEntry", data}});
    goOn();
}

void Echo::cancelChallenge() {
    say({{"challengeCancel", "01"}});
    goOn();
}

void Echo::sendRuntimeErrorToApp(const std::string& text) {
    say({{"runtimeError", text}});
}

void Echo::goOn() const {
    Platform::current().dispatch().mainQueue().async(done_);
}

} // namespace korvane::screen
