#include "tools/challenge/Wire.h"

#include "Platform/JSON.h"
#include "Platform/Text.h"
#include "Sdk/Messages/UiUtils.h"

#include <algorithm>

namespace korvane::challenge {

std::string describeAnswer(int status, ByteView body) {
    constexpr std::size_t kShown = 80;
    const std::string head = "status " + std::to_string(status) + ", ";
    if (body.empty()) return head + "no body.";
    const std::string first = repairedUtf8(asText(body.first(std::min(kShown, body.size()))));
    return head + std::to_string(body.size()) + " bytes, which begin with " + JSON(first).dump() + ".";
}

void Wire::watch(const URLRequest& request, int status, ByteView body) {
    const bool isSealed = request.httpBody && validateJWE(asText(*request.httpBody));
    const std::lock_guard lock(mutex_);
    if (!isSealed)
        lastStatus_ = status;
    else if (validateJWE(asText(body)))
        complaint_.clear();
    else
        complaint_ = "The ACS's answer is no JWE: " + describeAnswer(status, body);
}

int Wire::lastStatus() const {
    const std::lock_guard lock(mutex_);
    return lastStatus_;
}

std::string Wire::complaint() const {
    const std::lock_guard lock(mutex_);
    return complaint_;
}

} // namespace korvane::challenge
