#include "tools/jose/Inspect.h"

#include "Crypt/DataExtensions.h"
#include "Platform/JSON.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <span>
#include <sstream>
#include <vector>

namespace korvane::jose {

namespace {

/// A serialization: what its parts are, the header first, and what its header must name.
struct Kind {
    std::string_view name;
    std::span<const std::string_view> parts;
    std::span<const std::string_view> required;
};

constexpr std::array<std::string_view, 5> kJWEParts{"header", "encrypted key", "initialization vector",
                                                    "ciphertext", "authentication tag"};
constexpr std::array<std::string_view, 3> kJWSParts{"header", "payload", "signature"};
constexpr std::array<std::string_view, 2> kRequired{"alg", "enc"};
constexpr std::array<Kind, 2> kKinds{
    {{"JWE", kJWEParts, kRequired}, {"JWS", kJWSParts, std::span(kRequired).first(1)}}};

std::vector<std::string_view> split(std::string_view text) {
    std::vector<std::string_view> parts;
    for (std::size_t end = 0; (end = text.find('.')) != std::string_view::npos; text.remove_prefix(end + 1))
        parts.push_back(text.substr(0, end));
    parts.push_back(text);
    return parts;
}

const Kind& kindOf(std::size_t partCount) {
    const auto* kind = std::find_if(kKinds.begin(), kKinds.end(),
                                    [partCount](const Kind& row) { return row.parts.size() == partCount; });
    if (kind == kKinds.end())
        throw Complaint("The text has " + std::to_string(partCount) + (partCount == 1 ? " part" : " parts") +
                        "; a compact JWE has 5 and a compact JWS 3, with full stops between them.");
    return *kind;
}

std::vector<Bytes> decodeParts(const Kind& kind, std::span<const std::string_view> texts) {
    std::vector<Bytes> parts;
    for (std::size_t index = 0; index < texts.size(); ++index) {
        std::optional<Bytes> part = fromBase64URL(texts[index]);
        if (!part)
            throw Complaint("Part " + std::to_string(index + 1) + ", the " + std::string(kind.parts[index]) +
                            ", is not Base64URL.");
        parts.push_back(std::move(*part));
    }
    return parts;
}

JSON readHeader(const Kind& kind, ByteView bytes) {
    std::optional<JSON> header = JSONSerialization::jsonObject(asText(bytes));
    if (!header || !header->is_object()) throw Complaint("The header is not a JSON object.");
    for (const std::string_view name : kind.required) {
        const auto member = header->find(name);
        if (member == header->end() || !member->is_string())
            throw Complaint("The header has no \"" + std::string(name) + "\" of text, which a " +
                            std::string(kind.name) + " must have.");
    }
    return std::move(*header);
}

std::string describe(const Kind& kind, const JSON& header, std::span<const Bytes> parts) {
    // A header is a stranger's text: what is not ASCII is escaped, so that it cannot play
    // tricks on a terminal.
    std::ostringstream text;
    text << "kind: " << kind.name << "\nheader:\n" << header.dump(2, ' ', true) << "\nsizes in bytes:\n";
    for (std::size_t index = 0; index < parts.size(); ++index)
        text << "  " << std::left << std::setw(24) << kind.parts[index] << parts[index].size() << '\n';
    return text.str();
}

} // namespace

std::string inspect(std::string_view compact) {
    const std::vector<std::string_view> texts = split(compact);
    const Kind& kind = kindOf(texts.size());
    const std::vector<Bytes> parts = decodeParts(kind, texts);
    return describe(kind, readHeader(kind, parts.front()), parts);
}

} // namespace korvane::jose
