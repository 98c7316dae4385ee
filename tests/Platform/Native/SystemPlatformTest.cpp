#include "Platform/Headless/HeadlessPlatform.h"
#include "Sdk/Exchange/HttpClient.h"
#include "tests/support/Files.h"
#include "tests/support/LocalServer.h"

#include <gmock/gmock.h>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>

namespace korvane {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Field;

TEST(NativeServices, TellsAboutThisMachine) {
    HeadlessPlatform platform;
    EXPECT_THAT(platform.networkInterfaces().list(),
                Contains(AllOf(Field(&NetworkInterface::name, "lo"), Field(&NetworkInterface::family, 2),
                               Field(&NetworkInterface::address, "127.0.0.1"))));
    setenv("TZ", "KRV-2", 1);
    EXPECT_EQ(platform.timeZone().abbreviation(), "KRV");
    unsetenv("TZ");
}

TEST(NativeLocales, FollowTheEnvironment) {
    const struct {
        const char *language, *lcAll, *lang, *current;
        std::vector<std::string> preferred;
    } rows[] = {
        {"fr_CA:de", "", "en_GB.UTF-8", "en_GB", {"fr-CA", "de"}},
        {"", "pt_BR.UTF-8", "de_DE@euro", "pt_BR", {"pt-BR"}},
        {"C::POSIX", "", "", "en_US_POSIX", {"en-US"}},
        {"", "", "zh_Hant_TW@x", "zh_Hant_TW", {"zh-Hant-TW"}},
    };
    unsetenv("LC_MESSAGES");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.current);
        setenv("LANGUAGE", row.language, 1);
        setenv("LC_ALL", row.lcAll, 1);
        setenv("LANG", row.lang, 1);
        HeadlessPlatform platform;
        EXPECT_EQ(platform.locales().current().identifier, row.current);
        EXPECT_EQ(platform.locales().preferredLanguages(), row.preferred);
    }
}

TEST(NativeIntegrityChecks, FindADebugger) {
    HeadlessPlatform platform;
    EXPECT_FALSE(platform.integrityChecks().isDebuggerAttached());
    const pid_t traced = fork();
    if (traced == 0) {
        const bool isTraced = ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0;
        _exit(isTraced && platform.integrityChecks().isDebuggerAttached() ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(traced, &status, 0), traced);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

/// A process of its own, since libcurl reads the variable when it starts.
TEST(NativeSecrets, AreNotWrittenToTheFileThatTheEnvironmentNames) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ::setenv("no_proxy", "*", 1);
    const std::string file = testing::TempDir() + "korvane-tls-secrets";
    ::setenv("SSLKEYLOGFILE", file.c_str(), 1);
    EXPECT_EXIT(
        {
            LocalServer secure(LocalServer::Transport::tls);
            HeadlessPlatform platform;
            platform.addCertificateAuthorities(LocalServer::authority());
            const HttpAnswer answer = HttpClient(secure.url("/echo")).sendCReqData(toBytes("sealed"));
            std::_Exit(answer.data == toBytes("sealed") ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    ::unsetenv("SSLKEYLOGFILE");
    EXPECT_TRUE(!std::filesystem::exists(file) || readFile(file).empty());
    std::filesystem::remove(file);
}

} // namespace
} // namespace korvane
