#include "Sdk/Service/ConfigParameters.h"

#include "Sdk/Events/SdkError.h"
#include "tests/support/Failures.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using testing::ElementsAre;

TEST(ConfigParameters, KnowsTwoTestDirectoryServersUnlessTheApplicationHasItsOwn) {
    const auto row = [](const ConfigParameters& parameters, const char* id) {
        const DevInfoCert& cert = parameters.devInfoCerts.at(id);
        EXPECT_EQ(cert.bundle, nullptr);
        const char* algorithm = cert.certAlgorithm == CertAlgorithm::RSA ? "RSA" : "EC";
        return cert.certFilename + " " + cert.rootCACertFilename + " " + cert.directoryServerIDAkaRID + " " +
               algorithm;
    };
    const ConfigParameters defaults;
    EXPECT_EQ(defaults.devInfoCerts.size(), 2U);
    EXPECT_EQ(row(defaults, "F070738365"), "rsaFimeCert.cer rootCa.cer F070738365 RSA");
    EXPECT_EQ(row(defaults, "F170738365"), "ecFimeCert.cer rootCa.cer F170738365 EC");
    EXPECT_TRUE(ConfigParameters(ConfigParameters::DevInfoCerts()).devInfoCerts.empty());
}

TEST(ConfigParameters, AbsentGroupIsTheDefaultOneAndAnEmptyTextIsAGroupOfItsOwn) {
    ConfigParameters parameters;
    parameters.addParam(std::nullopt, "name", "of the default group");
    parameters.addParam("", "name", "of the empty group");
    EXPECT_EQ(parameters.getParamValue("default", "name"), "of the default group");
    EXPECT_EQ(parameters.getParamValue(std::nullopt, "name"), "of the default group");
    EXPECT_EQ(parameters.getParamValue("", "name"), "of the empty group");
    EXPECT_EQ(parameters.getParamValue("other", "name"), std::nullopt);
    EXPECT_EQ(parameters.getParamValue("default", "other"), std::nullopt);
    EXPECT_EQ(parameters.paramDictionary.size(), 2U);
}

TEST(ConfigParameters, LastValueCountsAndAnAbsentOneRemoves) {
    ConfigParameters parameters;
    parameters.addParam("group", "name", "first");
    parameters.addParam("group", "name", "second");
    EXPECT_EQ(parameters.getParamValue("group", "name"), "second");
    parameters.addParam("group", "name", std::nullopt);
    EXPECT_EQ(parameters.getParamValue("group", "name"), std::nullopt);
    parameters.addParam("new", "name", std::nullopt);
    EXPECT_TRUE(parameters.paramDictionary.at("new").empty());
}

TEST(ConfigParameters, RemovingGivesTheValueOnceAndKeepsTheGroup) {
    ConfigParameters parameters;
    parameters.addParam("group", "name", "value");
    EXPECT_EQ(parameters.removeParam("group", "name"), "value");
    EXPECT_EQ(parameters.removeParam("group", "name"), std::nullopt);
    EXPECT_EQ(parameters.removeParam("other", "name"), std::nullopt);
    EXPECT_EQ(parameters.paramDictionary.size(), 1U);
}

TEST(ConfigParameters, EmptyNameIsLoggedAndRefusedEverywhere) {
    const RecordingLogger log;
    ConfigParameters parameters;
    const auto refused = [](auto action) {
        return raises(SdkErrorCase::InvalidInputException, action, "Param name can not be empty");
    };
    EXPECT_TRUE(refused([&] { return parameters.addParam("group", "", "value"), 0; }));
    EXPECT_TRUE(refused([&] { return parameters.getParamValue("group", ""); }));
    EXPECT_TRUE(refused([&] { return parameters.removeParam(std::nullopt, ""); }));
    EXPECT_TRUE(parameters.paramDictionary.empty());
    const std::string file = "Sdk/Service/ConfigParameters.cpp ";
    const std::string text = ": Param name can not be empty";
    EXPECT_THAT(log.lines(), ElementsAre(file + "addParam(group:paramName:paramValue:)" + text,
                                         file + "getParamValue(group:paramName:)" + text,
                                         file + "removeParam(group:paramName:)" + text));
}

} // namespace
} // namespace korvane
