#include "Platform/Failure.h"

#include <cstdio>
#include <cstdlib>

namespace korvane {

std::string Failure::localizedDescription() const {
    return genericDescription();
}

std::string Failure::genericDescription() const {
    return "The operation couldn\u2019t be completed. (Korvane." + std::string(domain()) + " error " +
           std::to_string(caseIndex()) + ".)";
}

std::string genericDescription(const std::exception& error) {
    if (const auto* failure = dynamic_cast<const Failure*>(&error)) return failure->genericDescription();
    return "The operation couldn\u2019t be completed.";
}

std::string localizedDescription(const std::exception& error) {
    if (const auto* failure = dynamic_cast<const Failure*>(&error)) return failure->localizedDescription();
    return genericDescription(error);
}

void fatalError(std::string_view text) {
    std::fprintf(stderr, "Fatal error: %.*s\n", static_cast<int>(text.size()), text.data());
    std::abort();
}

} // namespace korvane
