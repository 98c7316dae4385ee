#include "Sdk/Events/SdkError.h"

namespace korvane {

std::string SdkError::localizedDescription() const {
    return std::string(rawValue(kind())) + ": " + message();
}

} // namespace korvane
