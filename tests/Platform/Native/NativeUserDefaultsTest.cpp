#include "Platform/Native/NativeUserDefaults.h"

#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

namespace korvane {
namespace {

namespace fs = std::filesystem;

class UserDefaults : public testing::Test {
protected:
    void write(const std::string& text) const {
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }

    /// What another process finds now.
    [[nodiscard]] std::optional<JSON> elsewhere(const std::string& key) const {
        return NativeUserDefaults(file).valueForKey(key);
    }

    const TemporaryFolder folder;
    const fs::path root = folder.path();
    const fs::path file = root / "made" / "on demand" / "defaults.json";
};

/// Runs `work` in a process of its own.
pid_t inChild(const std::function<bool()>& work) {
    const pid_t child = fork();
    if (child == 0) _exit(work() ? 0 : 1);
    return child;
}

bool succeeded(pid_t child) {
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(UserDefaults, ValuesSurviveAndAreTheUsersAlone) {
    write(R"({"theirs":{"deep":[1,null]},"a":true})");
    NativeUserDefaults defaults(file);
    defaults.setObject("text", "a");
    defaults.setObject(7, "b");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(readFile(file), R"({"theirs":{"deep":[1,null]},"a":"text","b":7})");
    EXPECT_EQ(elsewhere("b"), JSON(7));
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(UserDefaults, AFileThatHoldsNoValuesCountsAsEmpty) {
    EXPECT_EQ(elsewhere("a"), std::nullopt);
    for (const std::string& text : {std::string("{\"a\":\"torn"), std::string("[\"a\"]"), std::string("{}{}"),
                                    std::string(4096, '\0'), std::string(100000, '[')}) {
        write(text);
        NativeUserDefaults defaults(file);
        EXPECT_EQ(defaults.valueForKey("a"), std::nullopt) << text.substr(0, 20);
        defaults.setObject("new", "a");
        EXPECT_EQ(elsewhere("a"), JSON("new"));
    }
    fs::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(elsewhere("a"), std::nullopt) << "a named pipe holds nobody up";
}

TEST_F(UserDefaults, WithoutAPlaceToWriteValuesLastAsLongAsTheObject) {
    std::ofstream(root / "plain file") << "x";
    fs::create_directories(root / "folder.json" / "not empty");
    for (const fs::path& place : {root / "plain file" / "defaults.json", root / "folder.json", fs::path()}) {
        NativeUserDefaults defaults(place);
        defaults.setObject("kept", "a");
        EXPECT_FALSE(defaults.synchronize()) << place;
        EXPECT_EQ(defaults.valueForKey("a"), JSON("kept"));
    }
}

TEST_F(UserDefaults, AWriteThatFailsHalfwayLeavesTheFileAndKeepsTheValue) {
    write(R"({"a":"old"})");
    EXPECT_TRUE(succeeded(inChild([this] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit before = {RLIM_INFINITY, RLIM_INFINITY};
        const rlimit tenOctets = {10, RLIM_INFINITY};
        NativeUserDefaults defaults(file);
        setrlimit(RLIMIT_FSIZE, &tenOctets);
        defaults.setObject("new", "a");
        const bool isIntact = readFile(file) == R"({"a":"old"})" && !defaults.synchronize();
        const bool isKept = defaults.valueForKey("a") == JSON("new");
        setrlimit(RLIMIT_FSIZE, &before);
        return isIntact && isKept && defaults.synchronize() && elsewhere("a") == JSON("new");
    })));
}

TEST_F(UserDefaults, WhatJSONCannotExpressIsNotStored) {
    NativeUserDefaults defaults(file);
    JSON deep = 1;
    for (int level = 0; level < JSONSerialization::kDepthLimit; ++level)
        deep = JSON::array({std::move(deep)});
    defaults.setObject(std::move(deep), "a");
    defaults.setObject("\xFF", "a");
    defaults.setObject("x", "\xFF");
    defaults.setObject("good", "b");
    EXPECT_EQ(readFile(file), R"({"b":"good"})");
}

TEST_F(UserDefaults, ProcessesThatWriteAtOnceLoseNothing) {
    constexpr int kWrites = 40;
    const char* const processes[] = {"a", "b", "c", "d"};
    std::vector<pid_t> children;
    for (const std::string process : processes)
        children.push_back(inChild([this, process] {
            NativeUserDefaults defaults(file);
            for (int index = 0; index < kWrites; ++index) {
                defaults.setObject(index, process + std::to_string(index));
                if (elsewhere(process + "0") != JSON(0)) return false;
            }
            return defaults.synchronize();
        }));
    for (const pid_t child : children)
        EXPECT_TRUE(succeeded(child));
    for (const std::string process : processes)
        for (int index = 0; index < kWrites; ++index)
            EXPECT_EQ(elsewhere(process + std::to_string(index)), JSON(index));
}

/// What was everybody's is the first program's, and nobody else's.
TEST_F(UserDefaults, FileOfTheUserBecomesTheProgramsThatComesFirst) {
    const fs::path users = file.parent_path() / "users.json", other = root / "other" / "defaults.json";
    const auto valueOf = [&](const fs::path& program, const char* key) {
        return NativeUserDefaults(NativeUserDefaults::Place{program, users}).valueForKey(key);
    };
    write(R"({"a":"old"})");
    fs::rename(file, users);
    EXPECT_EQ(valueOf(file, "a"), JSON("old"));
    EXPECT_FALSE(fs::exists(users));
    EXPECT_EQ(elsewhere("a"), JSON("old"));
    EXPECT_EQ(valueOf(other, "a"), std::nullopt);
    EXPECT_FALSE(fs::exists(other.parent_path()));
    std::ofstream(users) << R"({"a":"of an earlier version","b":1})";
    EXPECT_EQ(valueOf(file, "a"), JSON("old"));
    EXPECT_EQ(valueOf(users / "unmakeable.json", "b"), JSON(1));
    EXPECT_TRUE(fs::exists(users));
}

TEST(UserDefaultsPlace, IsTheProgramsOwnAndFollowsTheEnvironment) {
    const fs::path program = "platform_native_test/defaults.json";
    for (const auto& [configuration, folder] :
         {std::pair<const char*, fs::path>{"/etc/ada", "/etc/ada/korvane"},
          {"relative", "/users/ada/.config/korvane"},
          {"", "/users/ada/.config/korvane"}}) {
        setenv("HOME", "/users/ada", 1);
        setenv("XDG_CONFIG_HOME", configuration, 1);
        EXPECT_EQ(NativeUserDefaults::usualPlace().file, folder / program);
        EXPECT_EQ(NativeUserDefaults::usualPlace().usersFile, folder / "defaults.json");
    }
    setenv("HOME", "", 1);
    EXPECT_EQ(NativeUserDefaults::usualPlace().file, fs::path());
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("HOME");
}

} // namespace
} // namespace korvane
