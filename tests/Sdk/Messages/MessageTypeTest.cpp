#include "Sdk/Messages/MessageType.h"

#include "Sdk/Messages/UiUtils.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

TEST(MessageTypeRecognition, TakesTheFirstFourWordCharactersThatFollowTheName) {
    using enum MessageType;
    const std::pair<std::string, MessageType> rows[] = {
        {R"({"messageType":"CRes"})", CRes},
        {R"({"messageType" : "ErroXYZ"})", Erro},
        {R"({"a":"\"messageType":"CRes"})", CRes},
        {R"({"messageType":"CReq","messageType":"CRes"})", unknown},
        {R"({"messageType":"CRe-","messageType":"CRes"})", CRes},
        {R"({"messageType"  :"CRes"})", unknown},
        {"messageType\"\u00A0:\u3000\"CRes", CRes},
        {"messageType\":\"CRe\u20AC messageType\":\"CRes", CRes},
        {"messageType\":\"CRe", unknown},
    };
    for (const auto& [text, type] : rows)
        EXPECT_EQ(recognizeMessageType(text), type) << testing::PrintToString(text);
}

/// What the scan stands for: the first group of the pattern's first match.
RC_GTEST_PROP(MessageTypeRecognitionProperty, ScanAnswersAsItsPattern, ()) {
    const std::vector<std::string> pieces{"messageType\"", ":",      "\"",   " ", "\t",
                                          "CRes",          "Erro",   "C",    "-", "\u00A0",
                                          "\u00E9",        "\u20AC", "\xFF", "_9"};
    const auto parts = *rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(pieces));
    std::string text;
    for (const std::string& part : parts)
        text += part;
    const auto matches = matchingStrings(text, "messageType\"\\s?:\\s?\"(\\w{4})");
    const std::string type = matches.empty() ? "" : matches[0][1];
    RC_ASSERT((recognizeMessageType(text) == MessageType::CRes) == (type == "CRes"));
    RC_ASSERT((recognizeMessageType(text) == MessageType::Erro) == (type == "Erro"));
}

} // namespace
} // namespace korvane
