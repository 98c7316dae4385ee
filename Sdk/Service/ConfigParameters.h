#pragma once

#include "Platform/Export.h"
#include "Sdk/SecureChannel/DevInfoCert.h"

#include <map>
#include <optional>
#include <string>

namespace korvane {

/// The application's configuration: the certificates of the directory servers, and named texts in groups. It
/// has no lock: the texts belong to the thread that sets them.
class KORVANE_EXPORT ConfigParameters {
public:
    using DevInfoCerts = std::map<std::string, DevInfoCert>;
    using Group = std::map<std::string, std::string>;

    /// Knows the two test directory servers, whose files lie in the application's main bundle.
    ConfigParameters();

    /// @param devInfoCerts  directory server identifier to certificates: the whole table, to which nothing is
    ///                      added.
    explicit ConfigParameters(DevInfoCerts devInfoCerts);

    ConfigParameters(const ConfigParameters&) = delete;
    ConfigParameters& operator=(const ConfigParameters&) = delete;

    /// Sets a text, or removes it where there is no value. The group exists afterwards either way.
    /// @param group  no value is `defaultGroup`; an empty text is a group of its own.
    /// @throws SdkError InvalidInputException for an empty name, here and below.
    void addParam(const std::optional<std::string>& group, const std::string& paramName,
                  const std::optional<std::string>& paramValue);

    /// @return no value for an unknown group or name.
    [[nodiscard]] std::optional<std::string> getParamValue(const std::optional<std::string>& group,
                                                           const std::string& paramName) const;

    /// Removes a text; its group stays, even when it is empty.
    /// @return the removed text, or no value.
    std::optional<std::string> removeParam(const std::optional<std::string>& group,
                                           const std::string& paramName);

    const std::string defaultGroup = "default";
    const DevInfoCerts devInfoCerts;
    std::map<std::string, Group> paramDictionary;
};

} // namespace korvane
