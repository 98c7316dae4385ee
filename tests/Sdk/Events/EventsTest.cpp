#include "Sdk/Events/KorvaneError.h"
#include "Sdk/Events/SdkError.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(SdkErrors, DescriptionIsTheirNameAndMessage) {
    const SdkError error(SdkErrorCase::SDKRuntimeException, "text");
    EXPECT_EQ(error.localizedDescription(), "SDKRuntimeException: text");
    EXPECT_EQ(SdkError(SdkErrorCase::httpRequestException, "").localizedDescription(),
              "httpRequestException: ");
    EXPECT_EQ(genericDescription(error),
              "The operation couldn\u2019t be completed. (Korvane.SdkError error 5.)");
    EXPECT_STREQ(error.what(), "SdkError.SDKRuntimeException");
}

TEST(ProtocolErrors, UnknownCodesBecomeASystemFailure) {
    const KorvaneError known = KorvaneError::getErrorByCode(203);
    EXPECT_EQ(known.code, 203);
    EXPECT_EQ(known.details, "List of erroneous fields.");
    for (const int code : {999, 404, 0, -1}) {
        const KorvaneError error = KorvaneError::getErrorByCode(code);
        EXPECT_EQ(error,
                  (KorvaneError{404, "Permanent system failure.", "Unknown code " + std::to_string(code)}));
    }
}

TEST(ProtocolErrors, RuntimeFormDropsTheDetails) {
    const RuntimeErrorEvent event = convertKorvaneErrorToRuntimeError({203, "description", "details"});
    EXPECT_EQ(event.getErrorCode(), "203");
    EXPECT_EQ(event.getErrorMessage(), "description");
}

} // namespace
} // namespace korvane
