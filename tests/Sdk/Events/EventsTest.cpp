#include "Sdk/Events/KorvaneError.h"
#include "Sdk/Events/SdkError.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(SdkErrors, DescriptionIsTheirNameAndMessage) {
    const SdkError error(SdkErrorCase::SDKRuntimeException, "text");
    EXPECT_EQ(error.localizedDescription(), "SDKRuntimeException: text");
    EXPECT_EQ(genericDescription(error),
              "The operation couldn\u2019t be completed. (Korvane.SdkError error 5.)");
    EXPECT_STREQ(error.what(), "SdkError.SDKRuntimeException");
}

TEST(ProtocolErrors, UnknownCodesBecomeASystemFailureAndTheRuntimeFormDropsTheDetails) {
    EXPECT_EQ(KorvaneError::getErrorByCode(0),
              (KorvaneError{404, "Permanent system failure.", "Unknown code 0"}));
    const RuntimeErrorEvent event = convertKorvaneErrorToRuntimeError({203, "description", "details"});
    EXPECT_EQ(event.getErrorCode() + " " + event.getErrorMessage(), "203 description");
}

} // namespace
} // namespace korvane
