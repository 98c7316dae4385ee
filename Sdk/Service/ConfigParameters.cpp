#include "Sdk/Service/ConfigParameters.h"

#include "Sdk/Events/SdkError.h"

namespace korvane {

namespace {

void requireName(const std::string& paramName, const char* function) {
    if (paramName.empty())
        KORVANE_RAISE(function, SdkErrorCase::InvalidInputException, "Param name can not be empty");
}

ConfigParameters::DevInfoCerts testDirectoryServers() {
    return {{"F070738365", {"rsaFimeCert.cer", "rootCa.cer", "F070738365", CertAlgorithm::RSA, nullptr}},
            {"F170738365", {"ecFimeCert.cer", "rootCa.cer", "F170738365", CertAlgorithm::EC, nullptr}}};
}

} // namespace

ConfigParameters::ConfigParameters() : ConfigParameters(testDirectoryServers()) {}

ConfigParameters::ConfigParameters(DevInfoCerts certs) : devInfoCerts(std::move(certs)) {}

void ConfigParameters::addParam(const std::optional<std::string>& group, const std::string& paramName,
                                const std::optional<std::string>& paramValue) {
    requireName(paramName, "addParam(group:paramName:paramValue:)");
    Group& parameters = paramDictionary[group.value_or(defaultGroup)];
    if (paramValue)
        parameters.insert_or_assign(paramName, *paramValue);
    else
        parameters.erase(paramName);
}

std::optional<std::string> ConfigParameters::getParamValue(const std::optional<std::string>& group,
                                                           const std::string& paramName) const {
    requireName(paramName, "getParamValue(group:paramName:)");
    const auto parameters = paramDictionary.find(group.value_or(defaultGroup));
    if (parameters == paramDictionary.end()) return std::nullopt;
    const auto parameter = parameters->second.find(paramName);
    if (parameter == parameters->second.end()) return std::nullopt;
    return parameter->second;
}

std::optional<std::string> ConfigParameters::removeParam(const std::optional<std::string>& group,
                                                         const std::string& paramName) {
    requireName(paramName, "removeParam(group:paramName:)");
    const auto parameters = paramDictionary.find(group.value_or(defaultGroup));
    if (parameters == paramDictionary.end()) return std::nullopt;
    auto removed = parameters->second.extract(paramName);
    return removed.empty() ? std::nullopt : std::optional(std::move(removed.mapped()));
}

} // namespace korvane
