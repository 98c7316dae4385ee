// Protected headers: what is read keeps its bytes, reads never fail, and writes can be read back.

#include "Crypt/JWEHeader.h"
#include "Crypt/JWSHeader.h"
#include "fuzz/support/Fuzz.h"
#include "fuzz/support/Keys.h"

#include <functional>
#include <vector>

namespace korvane::fuzzing {

namespace {

void readEverything(const JOSEHeader& header) {
    for (const auto& url : {header.jku(), header.x5u()})
        require(!url || URL::make(url->absoluteString()) == url, "A URL of a header is none.");
    for (const auto& text :
         {header.jwk(), header.kid(), header.x5t(), header.x5tS256(), header.typ(), header.cty()})
        require(!text || isUtf8(*text), "A text of a header is not UTF-8.");
    for (const auto& texts : {header.x5c(), header.crit()})
        require(!texts || texts->size() <= header.data().size(), "A header has more texts than bytes.");
    const auto key = header.jwkTyped();
    require(!key || key->jsonString().has_value(), "The key of a header cannot be written.");
}

void readEverything(const JWEHeader& header) {
    readEverything(static_cast<const JOSEHeader&>(header));
    require(header.algorithm() == header.keyManagementAlgorithm() &&
                header.encryptionAlgorithm() == header.contentEncryptionAlgorithm(),
            "Two names of one parameter differ.");
    require(header.compressionAlgorithm() != CompressionAlgorithm::DEFLATE || header.zip() == "DEF",
            "A header is compressed without saying so.");
    const auto epk = header.epk();
    require(!epk || fromRawValue<ECCurveType>(rawValue(epk->crv())) == epk->crv(),
            "An \"epk\" has no curve.");
    require(!header.apu() || !header.apv() || isUtf8(*header.apu() + *header.apv()),
            "A party value is not UTF-8.");
}

void readEverything(const JWSHeader& header) {
    readEverything(static_cast<const JOSEHeader&>(header));
    const auto algorithm = header.algorithm();
    require(!algorithm || header.parameters()["alg"] == rawValue(*algorithm), "An algorithm has two names.");
}

/// Writes with the texts of the header itself, so that strange ones come by.
template <class Header>
std::vector<std::function<void(Header&)>> writes() {
    const auto odd = [](const Header& header) { return header.typ().value_or("a\"\\\x01"); };
    return {
        [odd](Header& header) { header.setKid(odd(header)); },
        [](Header& header) { header.setJku(URL::make("https://example.com/%41")); },
        [odd](Header& header) {
            header.setX5c(std::vector{odd(header), std::string()});
        },
        [odd](Header& header) { header.setCrit(std::vector{odd(header)}); },
        [](Header& header) { header.setJwkTyped(&keys().ec); },
        [](Header& header) { header.setParameters(header.parameters()); },
    };
}

template <class Header>
void checkWriting(const Header& original) {
    for (const auto& write : writes<Header>()) {
        Header header = original;
        write(header);
        const auto again = Header::make(Bytes(header.data()));
        require(again && again->parameters() == header.parameters(),
                "A written header does not read as itself.");
        readEverything(*again);
    }
    Header untouched = original;
    untouched.setKid(std::nullopt);
    untouched.setX5c(std::nullopt);
    untouched.setJwkTyped(nullptr);
    require(untouched == original, "A write of no value changes a header.");
}

template <class Header>
void check(ByteView input) {
    Bytes data = toBytes(input);
    const auto header = Header::make(std::move(data));
    if (!header) {
        require(asText(data) == asText(input), "The bytes of no header are lost.");
        return;
    }
    require(asText(header->data()) == asText(input), "The bytes of a header change.");
    readEverything(*header);
    checkWriting(*header);
}

} // namespace

void run(ByteView input) {
    check<JWEHeader>(input);
    check<JWSHeader>(input);
}

} // namespace korvane::fuzzing
