#include "Sdk/Service/ConfigParameters.h"

#include "Sdk/Events/SdkError.h"
#include "tests/support/Failures.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(ConfigParameters, KnowsTwoTestDirectoryServersUnlessTheApplicationHasItsOwn) {
    const auto row = [](const DevInfoCert& cert) {
        const char* algorithm = cert.certAlgorithm == CertAlgorithm::RSA ? "RSA" : "EC";
        return cert.certFilename + " " + cert.rootCACertFilename + " " + cert.directoryServerIDAkaRID + " " +
               algorithm + (cert.bundle ? " bundle" : "");
    };
    const ConfigParameters defaults;
    EXPECT_EQ(defaults.devInfoCerts.size(), 2U);
    EXPECT_EQ(row(defaults.devInfoCerts.at("F070738365")), "rsaFimeCert.cer rootCa.cer F070738365 RSA");
    EXPECT_EQ(row(defaults.devInfoCerts.at("F170738365")), "ecFimeCert.cer rootCa.cer F170738365 EC");
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
    EXPECT_EQ(parameters.getParamValue("default", "other"), std::nullopt);
    EXPECT_EQ(parameters.removeParam(std::nullopt, "name"), "second");
    EXPECT_EQ(parameters.removeParam(std::nullopt, "name"), std::nullopt);
    EXPECT_EQ(parameters.removeParam("other", "name"), std::nullopt);
    parameters.addParam("", "name", std::nullopt);
    parameters.addParam("new", "name", std::nullopt);
    const decltype(parameters.paramDictionary) emptied{{"default", {}}, {"", {}}, {"new", {}}};
    EXPECT_EQ(parameters.paramDictionary, emptied);
}

TEST(ConfigParameters, EmptyNameIsLoggedAndRefusedEverywhere) {
    const RecordingLogger log;
    ConfigParameters parameters;
    const std::string text = "Param name can not be empty";
    EXPECT_RAISES_SAYING(SdkErrorCase::InvalidInputException, text, parameters.addParam("group", "", "value"),
                         0);
    EXPECT_RAISES_SAYING(SdkErrorCase::InvalidInputException, text, parameters.getParamValue("group", ""));
    EXPECT_RAISES_SAYING(SdkErrorCase::InvalidInputException, text, parameters.removeParam(std::nullopt, ""));
    EXPECT_TRUE(parameters.paramDictionary.empty());
    const std::string file = "Sdk/Service/ConfigParameters.cpp ";
    EXPECT_THAT(log.lines(), testing::ElementsAre(file + "addParam(group:paramName:paramValue:): " + text,
                                                  file + "getParamValue(group:paramName:): " + text,
                                                  file + "removeParam(group:paramName:): " + text));
}

} // namespace
} // namespace korvane
