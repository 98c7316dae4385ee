#include "Sdk/Messages/MessageType.h"

#include "Sdk/Messages/UiUtils.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

/// What the scan stands for: the first group of the pattern's first match.
MessageType typeByPattern(const std::string& text) {
    const auto matches = matchingStrings(text, "messageType\"\\s?:\\s?\"(\\w{4})");
    if (matches.empty()) return MessageType::unknown;
    if (matches[0][1] == "CRes") return MessageType::CRes;
    return matches[0][1] == "Erro" ? MessageType::Erro : MessageType::unknown;
}

TEST(MessageTypeRecognition, ScanAnswersAsItsPattern) {
    using enum MessageType;
    const std::pair<std::string, MessageType> rows[] = {
        {R"({"messageType":"CRes"})", CRes},
        {R"({"messageType" : "Erro"})", Erro},
        {R"({"messageType":"ErroXYZ"})", Erro},
        {R"({"a":"\"messageType":"CRes"})", CRes},
        {R"({"messageType":1,"messageType":"CRes"})", CRes},
        {R"({"messageType":"CReq","messageType":"CRes"})", unknown},
        {R"({"messageType":"CRe-","messageType":"CRes"})", CRes},
        {R"({"messageType"  :"CRes"})", unknown},
        {"messageType\"\n:\v\"CRes", CRes},
        {"messageType\"\u00A0:\u3000\"CRes", CRes},
        {"messageType\"\u200B:\"CRes", unknown},
        {"messageType\":\"CR\u00E9s messageType\":\"CRes", unknown},
        {"messageType\":\"CRe\u20AC messageType\":\"CRes", CRes},
        {"messageType\":\"CRe\xFF messageType\":\"CRes", CRes},
        {"messageType\":\"CRe", unknown},
        {"messageType\"", unknown},
        {"", unknown},
    };
    for (const auto& [text, type] : rows) {
        SCOPED_TRACE(testing::PrintToString(text));
        EXPECT_EQ(recognizeMessageType(text), type);
        EXPECT_EQ(typeByPattern(text), type);
    }
}

RC_GTEST_PROP(MessageTypeRecognitionProperty, ScanAnswersAsItsPattern, ()) {
    const std::vector<std::string> pieces{"messageType\"", ":",      "\"",   " ", "\t",
                                          "CRes",          "Erro",   "C",    "-", "\u00A0",
                                          "\u00E9",        "\u20AC", "\xFF", "_9"};
    const auto parts = *rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(pieces));
    std::string text;
    for (const std::string& part : parts)
        text += part;
    RC_ASSERT(recognizeMessageType(text) == typeByPattern(text));
}

} // namespace
} // namespace korvane
