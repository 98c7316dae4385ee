#pragma once

#include "Crypt/DeflateWrapper.h"
#include "Platform/Bytes.h"
#include "Platform/Security/Secret.h"

#include <optional>
#include <utility>

namespace korvane {

/// The plaintext bytes of a JWE or JWS. They are overwritten when the payload dies; who moves them out of it
/// answers for them.
class Payload {
public:
    explicit Payload(Bytes payload) : payload_(std::move(payload)) {}
    Payload(const Payload&) = default;
    Payload(Payload&&) noexcept = default;
    Payload& operator=(Payload other) noexcept {
        payload_.swap(other.payload_);
        return *this;
    }
    ~Payload() { cleanse(payload_); }

    [[nodiscard]] const Bytes& payload() const& noexcept { return payload_; }
    [[nodiscard]] Bytes payload() && noexcept { return std::move(payload_); }
    [[nodiscard]] const Bytes& data() const noexcept { return payload_; }

    /// The payload as it goes into a message under the "zip" value of its header (RFC 7516 section 4.1.3).
    /// @throws JOSEError compressionAlgorithmNotSupported for no value, rawDataMustBeGreaterThanZero,
    ///         compressionFailed.
    [[nodiscard]] Payload compressed(std::optional<CompressionAlgorithm> algorithm) const;

    friend bool operator==(const Payload&, const Payload&) = default;

private:
    Bytes payload_;
};

} // namespace korvane
