#pragma once

#include "Platform/Bytes.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace korvane::acs {

/// The certificates and keys of the test: a folder that is filled once and only read from then on.
///
/// A certificate NAME lies in NAME.der and NAME.pem, its private key (PKCS#8, mode 0600) in NAME.key. The
/// keys of the authorities are not kept: nothing can be issued later.
class Pki {
public:
    static constexpr std::string_view tlsRoot = "tls-root";
    static constexpr std::string_view tlsServer = "tls-server";
    static constexpr std::string_view directoryServerRoot = "ds-root";
    static constexpr std::string_view directoryServerIntermediate = "ds-intermediate";
    static constexpr std::string_view foreignIntermediate = "foreign-intermediate";
    static constexpr std::string_view signingRSA = "acs-rsa";
    static constexpr std::string_view signingEC = "acs-ec";
    /// Certificates of the signing keys by an authority that the directory server does not know.
    static constexpr std::string_view foreignRSA = "foreign-rsa";
    static constexpr std::string_view foreignEC = "foreign-ec";
    static constexpr std::string_view deviceDataRSA = "device-data-rsa";
    static constexpr std::string_view deviceDataEC = "device-data-ec";

    /// Fills the folder where it is absent or empty. Two processes may start on one folder:
    /// the first to end wins.
    /// @param host  that others reach the server by, beside this machine's names for itself; empty for none.
    /// @throws UsageError when the folder cannot be filled, for what is no name or IPv4 address of a host, and for a
    ///         server's certificate that is there and is not for this host.
    Pki(const std::filesystem::path& folder, const std::string& host);

    [[nodiscard]] std::filesystem::path file(std::string_view name, std::string_view extension) const;

    /// The certificate as DER.
    /// @throws UsageError naming a file that cannot be read, here and below.
    [[nodiscard]] Bytes certificate(std::string_view name) const;

    /// The private key as PEM.
    [[nodiscard]] std::string key(std::string_view name) const;

private:
    void requireServerFor(const std::string& host) const;

    std::filesystem::path folder_;
};

} // namespace korvane::acs
