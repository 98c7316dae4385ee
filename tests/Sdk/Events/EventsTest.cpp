#include "Sdk/Events/KorvaneError.h"
#include "Sdk/Events/SdkError.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(SdkErrors, DescriptionIsTheirNameAndMessage) {
    const SdkError error(SdkErrorCase::SDKRuntimeException, "text");
    EXPECT_EQ(error.localizedDescription(), "SDKRuntimeException: text");
    EXPECT_EQ(genericDescription(error),
              "The operation couldn\u2019t be completed. (Korvane.SdkError error 5.)");
    EXPECT_STREQ(error.what(), "SdkError.SDKRuntimeException");
    EXPECT_EQ(SdkError(SdkErrorCase::httpRequestException, "").localizedDescription(),
              "httpRequestException: ");
}

TEST(ProtocolErrors, UnknownCodesBecomeASystemFailureAndTheRuntimeFormDropsTheDetails) {
    for (const int code : {999, 404, 0, -1}) {
        const std::string details = "Unknown code " + std::to_string(code);
        EXPECT_EQ(KorvaneError::getErrorByCode(code),
                  (KorvaneError{404, "Permanent system failure.", details}));
    }
    const RuntimeErrorEvent event = convertKorvaneErrorToRuntimeError({203, "description", "details"});
    EXPECT_EQ(event.getErrorCode(), "203");
    EXPECT_EQ(event.getErrorMessage(), "description");
}

} // namespace
} // namespace korvane
