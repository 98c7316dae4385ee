#include "Platform/Failure.h"
#include "Crypt/JOSEError.h"
#include "Platform/Logger.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(Failures, GenericDescriptionTellsNothingThatIsCarried) {
    const JOSEError described(JOSEErrorCase::decryptingFailed, Description{"the reason"});
    EXPECT_EQ(described.localizedDescription(), "the reason");
    EXPECT_EQ(genericDescription(described),
              "The operation couldn\u2019t be completed. (Korvane.JOSEError error 3.)");
    EXPECT_STREQ(described.what(), "JOSEError.decryptingFailed");
    const JOSEError component(JOSEErrorCase::componentNotValidBase64URL, std::string("secret part"));
    EXPECT_THAT(component.localizedDescription() + component.what(), Not(HasSubstr("secret")));
    EXPECT_EQ(genericDescription(std::runtime_error("secret")), "The operation couldn\u2019t be completed.");
}

TEST(Logging, TextIsBuiltForALoggerAlone) {
    int built = 0;
    const auto log = [&built] { KORVANE_LOG("f(_:)", std::to_string(++built)); };
    log();
    const RecordingLogger logger;
    log();
    EXPECT_THAT(logger.lines(), ElementsAre("tests/Platform/FailureTest.cpp f(_:): 1"));
}

/// An application's logger may end with a line.
struct LastWords final : IKorvaneLogger {
    ~LastWords() override { KORVANE_LOG("deinit()", "last words"); }
    void log(const std::string&, const char*, const char*, unsigned) override {}
};

TEST(NativeLogging, LoggersMayLogAtTheirEndAndComeAndGoWhileOthersLog) {
    Logger::shared().setDebug(std::make_shared<LastWords>());
    const RecordingLogger heir;
    EXPECT_THAT(heir.lines(), ElementsAre(HasSubstr("last words")));
    std::atomic<bool> isDone = false;
    std::thread writer([&isDone] {
        while (!isDone)
            KORVANE_LOG("f()", "line");
    });
    for (int count = 0; count < 200; ++count)
        Logger::shared().setDebug(std::make_shared<LastWords>());
    isDone = true;
    writer.join();
}

} // namespace
} // namespace korvane
