#include "Sdk/Service/ConfigParameters.h"

#include "Sdk/Events/SdkError.h"
#include "tests/support/Failures.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(ConfigParameters, KnowsTwoTestDirectoryServersUnlessTheApplicationHasItsOwn) {
    const ConfigParameters defaults;
    const std::tuple<const char*, const char*, CertAlgorithm> rows[] = {
        {"F070738365", "rsaFimeCert.cer", CertAlgorithm::RSA},
        {"F170738365", "ecFimeCert.cer", CertAlgorithm::EC}};
    for (const auto& [identifier, file, algorithm] : rows) {
        const DevInfoCert& cert = defaults.devInfoCerts.at(identifier);
        EXPECT_EQ(std::tuple(cert.directoryServerIDAkaRID, cert.certFilename, cert.certAlgorithm),
                  std::tuple(identifier, file, algorithm));
    }
    EXPECT_TRUE(ConfigParameters(ConfigParameters::DevInfoCerts()).devInfoCerts.empty());
}

TEST(ConfigParameters, ParametersStandInGroupsOfWhichOneIsTheDefault) {
    ConfigParameters parameters;
    parameters.addParam(std::nullopt, "name", "first");
    parameters.addParam("default", "name", "second");
    parameters.addParam("", "name", "of the empty group");
    EXPECT_EQ(parameters.getParamValue(std::nullopt, "name"), "second");
    EXPECT_EQ(parameters.getParamValue("", "name"), "of the empty group");
    EXPECT_EQ(parameters.getParamValue("other", "name"), std::nullopt);
    EXPECT_EQ(parameters.removeParam(std::nullopt, "name"), "second");
    EXPECT_EQ(parameters.removeParam("default", "name"), std::nullopt);
    EXPECT_EQ(parameters.removeParam("other", "name"), std::nullopt);
    parameters.addParam("", "name", std::nullopt);
    EXPECT_EQ(parameters.getParamValue("", "name"), std::nullopt);
    const auto kind = SdkErrorCase::InvalidInputException;
    EXPECT_RAISES(kind, parameters.addParam("group", "", "value"), 0);
    EXPECT_RAISES(kind, parameters.getParamValue("group", ""));
    EXPECT_RAISES(kind, parameters.removeParam("group", ""));
}

} // namespace
} // namespace korvane
