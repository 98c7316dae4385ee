// Both Base64 codecs against a second implementation.

#include "Crypt/DataExtensions.h"
#include "Platform/JSON.h"
#include "fuzz/support/Fuzz.h"
#include "fuzz/support/ReferenceBase64.h"

#include <array>

namespace korvane::fuzzing {

namespace {

void checkDecoding(std::string_view text) {
    const auto url = fromBase64URL(text);
    require(url == referenceDecode(text, Alphabet::url), "Base64URL decodes differently.");
    require(fromBase64URL(asBytes(text)) == (isUtf8(text) ? url : std::nullopt), "Bytes decode unlike text.");
    const auto ordinary = fromBase64(text);
    require(ordinary == referenceDecode(text, Alphabet::ordinary), "Base64 decodes differently.");
}

void checkEncoding(ByteView bytes) {
    const std::string url = base64URLEncodedString(bytes);
    require(url == referenceEncode(bytes, Alphabet::url), "Base64URL encodes differently.");
    require(url.size() == base64URLLength(bytes.size()), "The length of a text is foretold wrongly.");
    require(asText(base64URLEncodedData(bytes)) == url, "Encoded bytes are not the encoded text.");
    require(fromBase64URL(url) == toBytes(bytes), "Encoded Base64URL does not decode.");
    const std::string ordinary = base64EncodedString(bytes);
    require(ordinary == referenceEncode(bytes, Alphabet::ordinary), "Base64 encodes differently.");
    require(fromBase64(ordinary) == toBytes(bytes), "Encoded Base64 does not decode.");
}

void checkJoining(ByteView bytes) {
    const std::size_t middle = bytes.size() / 3;
    const std::array<DataConvertible, 3> parts{bytes.first(middle), ByteView(), bytes.subspan(middle)};
    const std::string expected = referenceEncode(bytes.first(middle), Alphabet::url) + ".." +
                                 referenceEncode(bytes.subspan(middle), Alphabet::url);
    require(joinedBase64URL(parts) == expected, "Joined parts differ from their texts.");
}

} // namespace

void run(ByteView input) {
    checkDecoding(asText(input));
    checkEncoding(input);
    checkJoining(input);
}

} // namespace korvane::fuzzing
