#include "Platform/JSON.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

std::string nested(int depth, const std::string& innermost = "") {
    const auto count = static_cast<std::size_t>(depth);
    return std::string(count, '[') + innermost + std::string(count, ']');
}

TEST(JSONReading, NestingIsTakenUpToItsLimit) {
    EXPECT_TRUE(JSONSerialization::jsonObject(nested(JSONSerialization::kDepthLimit)));
    EXPECT_FALSE(JSONSerialization::jsonObject(nested(JSONSerialization::kDepthLimit + 1)));
    EXPECT_TRUE(JSONSerialization::jsonObject(nested(JSONSerialization::kDepthLimit, "1")));
    EXPECT_FALSE(JSONSerialization::jsonObject(nested(JSONSerialization::kDepthLimit + 1, "1")));
    EXPECT_FALSE(JSONSerialization::jsonObject(nested(100000)));
    const std::string bigNumber = "123456789012345678901234567890";
    EXPECT_TRUE(JSONSerialization::jsonObject(nested(JSONSerialization::kDepthLimit, bigNumber)));
    EXPECT_FALSE(JSONSerialization::jsonObject(nested(JSONSerialization::kDepthLimit + 1, bigNumber)));
}

} // namespace
} // namespace korvane
