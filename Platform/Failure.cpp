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

std::string failureName(std::string_view domain, std::string_view name) {
    std::string text(domain);
    text += '.';
    text += name;
    return text;
}

void fatalError(std::string_view text) {
    std::fprintf(stderr, "Fatal error: %.*s\n", static_cast<int>(text.size()), text.data());
    std::abort();
}

} // namespace korvane
