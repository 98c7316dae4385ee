#include "tools/acs/ScreenCheck.h"

#include "Crypt/DataExtensions.h"
#include "Sdk/Messages/CRes.h"
#include "Sdk/Messages/MessageVersion.h"
#include "tools/acs/Messages.h"

namespace korvane::acs {

std::vector<std::string_view> screenMembers() {
    std::vector<std::string_view> names;
    for (const CRes::Field& field : CRes::fields())
        if (!field.isRequired()) names.push_back(field.name);
    return names;
}

JSON messageOf(const JSON& screen) {
    JSON message = {{"threeDSServerTransID", makeTransactionID()},
                    {"acsCounterAtoS", counterAtoS(0)},
                    {"acsTransID", makeTransactionID()},
                    {"challengeCompletionInd", "N"},
                    {"messageType", "CRes"},
                    {"messageVersion", rawValue(MessageVersion::v2_2_0)},
                    {"sdkTransID", makeTransactionID()}};
    message.update(screen);
    for (const char* name : {"acsHTML", "acsHTMLRefresh"})
        if (const auto html = message.find(name); html != message.end() && html->is_string())
            *html = base64URLEncodedString(toBytes(html->get<std::string>()));
    return message;
}

} // namespace korvane::acs
