#include "Crypt/Serializer.h"

#include "Platform/Failure.h"

namespace korvane {

void CompactSerializer::serialize(DataConvertible object) {
    if (count_ == components_.size()) fatalError("A compact serialization has at most five components.");
    components_[count_++] = object;
}

} // namespace korvane
