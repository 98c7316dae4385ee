#include "Sdk/Events/SdkError.h"

namespace korvane {

std::string SdkError::localizedDescription() const {
    return std::string(Traits::cases[static_cast<std::size_t>(caseIndex())]) + ": " + message();
}

} // namespace korvane
