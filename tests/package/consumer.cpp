#include <korvane/korvane.h>

#include <cstdio>

using namespace korvane;

int main() {
    HeadlessPlatform platform;
    ThreeDS2Service service;
    const Theme theme = readTheme(R"({"toolbar": {"headerText": "Pay"}})");
    service.initialize(std::make_shared<ConfigParameters>(), theme.customization, theme.constraints, nullptr,
                       Locale{"en-GB"});
    try {
        const auto transaction = service.createTransaction("F170738365", "2.2.0");
        const auto request = transaction->getAuthenticationRequestParameters();
        std::puts(request.getSDKTransactionID().c_str()); // goes through the 3DS server with the other values
    } catch (const SdkError& error) {
        std::puts(error.localizedDescription().c_str());
    }
}
