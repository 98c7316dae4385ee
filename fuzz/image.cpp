// The heads of pictures, and what is left of one that came over the network.

#include "Platform/View/ImageHeads.h"
#include "fuzz/support/Fuzz.h"

namespace korvane::fuzzing {

namespace {

bool isDrawable(double side) {
    return side > 0 && side <= 4096;
}

} // namespace

void run(ByteView input) {
    const auto head = imageHead(input);
    require(!head || (isDrawable(head->size.width) && isDrawable(head->size.height)),
            "A size cannot be drawn.");
    const auto part = decodablePart(toBytes(input));
    if (!part) return;
    require(head && head->format != UIImageFormat::svg, "What is no picture is decoded, or a drawing.");
    require(part->size() <= input.size() + 1, "A picture grows.");
    require(imageHead(*part) == head, "What is decoded is another picture.");
    require(decodablePart(*part) == part, "What is decodable is not, the second time.");
}

} // namespace korvane::fuzzing
