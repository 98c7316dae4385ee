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
#include <thread>

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
    NativeUserDefaults defaults(file);
    EXPECT_EQ(defaults.valueForKey("a"), std::nullopt);
    defaults.setObject("text", "a");
    defaults.setObject(7, "b");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(elsewhere("a"), JSON("text"));
    EXPECT_EQ(elsewhere("b"), JSON(7));

    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(UserDefaults, AFileThatHoldsNoValuesCountsAsEmpty) {
    for (const std::string& text :
         {std::string(), std::string("{\"a\":\"torn"), std::string("[\"a\"]"), std::string("\xFF\xFE{}"),
          std::string("{}{}"), std::string(4096, '\0'), std::string(100000, '[')}) {
        SCOPED_TRACE(text.substr(0, 20));
        write(text);
        NativeUserDefaults defaults(file);
        EXPECT_EQ(defaults.valueForKey("a"), std::nullopt);
        defaults.setObject("new", "a");
        EXPECT_EQ(elsewhere("a"), JSON("new"));
    }
}

TEST_F(UserDefaults, ForeignMembersOfTheFileStay) {
    write(R"({"theirs":{"deep":[1,null]},"a":true})");
    NativeUserDefaults(file).setObject("x", "a");
    EXPECT_EQ(readFile(file), R"({"theirs":{"deep":[1,null]},"a":"x"})");
}

TEST_F(UserDefaults, WithoutAPlaceToWriteValuesLastAsLongAsTheObject) {
    std::ofstream(root / "plain file") << "x";
    fs::create_directories(root / "folder.json" / "not empty");
    for (const fs::path& place : {root / "plain file" / "defaults.json", root / "folder.json", fs::path()}) {
        SCOPED_TRACE(place);
        NativeUserDefaults defaults(place);
        defaults.setObject("kept", "a");
        EXPECT_FALSE(defaults.synchronize());
        EXPECT_EQ(defaults.valueForKey("a"), JSON("kept"));
    }
}

TEST_F(UserDefaults, ANamedPipeInTheFilesPlaceHoldsNobodyUp) {
    fs::create_directories(file.parent_path());
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(elsewhere("a"), std::nullopt);
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
    EXPECT_EQ(defaults.valueForKey("a"), std::nullopt);
    defaults.setObject("good", "b");
    EXPECT_EQ(elsewhere("b"), JSON("good"));
}

TEST_F(UserDefaults, ProcessesThatWriteAtOnceLoseNothing) {
    constexpr int kProcesses = 4;
    constexpr int kWrites = 40;
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process)
        children.push_back(inChild([this, process] {
            NativeUserDefaults defaults(file);
            for (int index = 0; index < kWrites; ++index) {
                defaults.setObject(index, std::to_string(process) + "." + std::to_string(index));
                if (elsewhere(std::to_string(process) + ".0") != JSON(0)) return false;
            }
            return defaults.synchronize();
        }));
    for (const pid_t child : children)
        EXPECT_TRUE(succeeded(child));

    const std::optional<JSON> all = JSONSerialization::jsonObject(readFile(file));
    ASSERT_TRUE(all);
    EXPECT_EQ(all->size(), std::size_t{kProcesses} * kWrites);
    for (int process = 0; process < kProcesses; ++process)
        for (int index = 0; index < kWrites; ++index)
            EXPECT_EQ(all->at(std::to_string(process) + "." + std::to_string(index)), index);
}

/// What was everybody's is the first program's, and nobody else's.
TEST_F(UserDefaults, FileOfTheUserBecomesTheProgramsThatComesFirst) {
    const fs::path users = file.parent_path() / "users.json";
    const fs::path other = file.parent_path() / "other" / "defaults.json";
    write(R"({"a":"old"})");
    fs::rename(file, users);
    EXPECT_EQ(NativeUserDefaults(NativeUserDefaults::Place{file, users}).valueForKey("a"), JSON("old"));
    EXPECT_FALSE(fs::exists(users));
    EXPECT_EQ(elsewhere("a"), JSON("old"));
    EXPECT_EQ(NativeUserDefaults(NativeUserDefaults::Place{other, users}).valueForKey("a"), std::nullopt);
    EXPECT_FALSE(fs::exists(other.parent_path()));

    std::ofstream(users) << R"({"a":"of an earlier version","b":1})";
    NativeUserDefaults second(NativeUserDefaults::Place{file, users});
    second.setObject("new", "c");
    EXPECT_EQ(readFile(file), R"({"a":"old","c":"new"})");
    EXPECT_TRUE(fs::exists(users));

    const fs::path unmakeable = users / "defaults.json";
    EXPECT_EQ(NativeUserDefaults(NativeUserDefaults::Place{unmakeable, users}).valueForKey("b"), JSON(1));
}

TEST(UserDefaultsPlace, IsTheProgramsOwnAndFollowsTheEnvironment) {
    const struct {
        const char* home;
        const char* configuration;
        const char* folder;
    } rows[] = {{"/users/ada", "/etc/ada", "/etc/ada/korvane"},
                {"/users/ada", "relative", "/users/ada/.config/korvane"},
                {"/users/ada", "", "/users/ada/.config/korvane"},
                {"", "", ""}};
    for (const auto& [home, configuration, folder] : rows) {
        setenv("HOME", home, 1);
        setenv("XDG_CONFIG_HOME", configuration, 1);
        const auto [file, usersFile] = NativeUserDefaults::usualPlace();
        EXPECT_EQ(usersFile, *folder ? fs::path(folder) / "defaults.json" : fs::path());
        EXPECT_EQ(file, *folder ? fs::path(folder) / "platform_native_test" / "defaults.json" : fs::path());
    }
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("HOME");
}

} // namespace
} // namespace korvane
