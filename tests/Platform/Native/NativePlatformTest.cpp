#include "Platform/Native/NativePlatform.h"

#include "Platform/Native/NativeDevice.h"

#include <gmock/gmock.h>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace korvane {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Field;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

TEST(NativePlatform, IsThePlatformOfTheProcessWhileItLives) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    {
        NativePlatform platform;
        EXPECT_EQ(&Platform::current(), &platform);
        EXPECT_DEATH(NativePlatform(), "one platform at a time");
    }
    EXPECT_DEATH(static_cast<void>(Platform::current()), "No platform is installed");
}

TEST(NativePlatform, TellsAboutThisMachine) {
    NativePlatform platform;
    EXPECT_THAT(platform.locales().availableIdentifiers(), IsSupersetOf({"de", "en_US", "zh_Hans_CN"}));
    EXPECT_THAT(platform.networkInterfaces().list(),
                Contains(AllOf(Field(&NetworkInterface::name, "lo"), Field(&NetworkInterface::family, 2),
                               Field(&NetworkInterface::address, "127.0.0.1"))));
    for (const NetworkInterface& entry : platform.networkInterfaces().list()) {
        const bool hasColon = entry.address.find(':') != std::string::npos;
        EXPECT_EQ(entry.family, hasColon ? AddressFamily::kIPv6 : AddressFamily::kIPv4) << entry.address;
    }
    setenv("TZ", "KRV-2", 1);
    EXPECT_EQ(platform.timeZone().abbreviation(), "KRV");
    unsetenv("TZ");
}

TEST(NativePlatform, TheSystemFontIsOfAFamilyThatIsListedWhereThereAreFonts) {
    {
        NativePlatform platform;
        const UIFontServices& fonts = platform.fonts();
        const std::vector<std::string> families = fonts.familyNames();
        if (families.empty()) GTEST_SKIP() << "this machine has no fonts";
        const auto system = std::ranges::find_if(families, [&](const std::string& family) {
            return fonts.systemFontDescription(14) == "font-family: \"" + family + "\"; font-size: 14.0pt";
        });
        ASSERT_NE(system, families.end()) << fonts.systemFontDescription(14);
        EXPECT_THAT(fonts.fontNamesForFamilyName(*system), Not(IsEmpty()));
    }
    for (const char* name : {"FONTCONFIG_FILE", "FONTCONFIG_SYSROOT", "HOME", "XDG_CACHE_HOME"})
        setenv(name, "/nowhere", 1);
    NativePlatform platform;
    EXPECT_THAT(platform.fonts().familyNames(), IsEmpty());
    EXPECT_EQ(platform.fonts().systemFontDescription(1), "font-family: \"\"; font-size: 1.0pt");
    unsetenv("FONTCONFIG_SYSROOT");
    unsetenv("FONTCONFIG_FILE");
}

TEST(NativeLocales, FollowTheEnvironment) {
    const struct {
        const char *language, *lcAll, *lang, *current;
        std::vector<std::string> preferred;
    } rows[] = {
        {"fr_CA:de", "", "en_GB.UTF-8", "en_GB", {"fr-CA", "de"}},
        {"", "", "de_DE@euro", "de_DE", {"de-DE"}},
        {"", "pt_BR.UTF-8", "en_GB.UTF-8", "pt_BR", {"pt-BR"}},
        {"", "", "C.UTF-8", "en_US_POSIX", {"en-US"}},
        {"C::POSIX", "", "", "en_US_POSIX", {"en-US"}},
        {"", "", "zh_Hant_TW", "zh_Hant_TW", {"zh-Hant-TW"}},
    };
    unsetenv("LC_MESSAGES");
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.language) + " " + row.lcAll + " " + row.lang);
        setenv("LANGUAGE", row.language, 1);
        setenv("LC_ALL", row.lcAll, 1);
        setenv("LANG", row.lang, 1);
        NativePlatform platform;
        EXPECT_EQ(platform.locales().current().identifier, row.current);
        EXPECT_EQ(platform.locales().preferredLanguages(), row.preferred);
    }
}

TEST(OSRelease, ValuesAreUnquoted) {
    const char* file =
        "# NAME=comment\nPRETTY_NAME=no\nNAME=\"A \\\"B\\\" $\\$\"\nVERSION_ID='1\\2'\nEMPTY=\nLAST=x";
    EXPECT_EQ(osReleaseValue(file, "NAME"), "A \"B\" $$");
    EXPECT_EQ(osReleaseValue(file, "VERSION_ID"), "1\\2");
    EXPECT_EQ(osReleaseValue(file, "EMPTY"), "");
    EXPECT_EQ(osReleaseValue(file, "LAST"), "x");
    EXPECT_EQ(osReleaseValue(file, "VERSION"), std::nullopt);
}

TEST(NativeIntegrityChecks, FindADebugger) {
    NativePlatform platform;
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

} // namespace
} // namespace korvane
