#include "Sdk/Events/KorvaneError.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(ProtocolErrors, UnknownCodesBecomeASystemFailureAndTheRuntimeFormDropsTheDetails) {
    EXPECT_EQ(KorvaneError::getErrorByCode(0),
              (KorvaneError{404, "Permanent system failure.", "Unknown code 0"}));
    const RuntimeErrorEvent event = convertKorvaneErrorToRuntimeError({203, "description", "details"});
    EXPECT_EQ(event.getErrorCode() + " " + event.getErrorMessage(), "203 description");
}

} // namespace
} // namespace korvane
