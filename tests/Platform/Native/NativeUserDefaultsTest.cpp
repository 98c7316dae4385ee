#include "Platform/Native/NativeUserDefaults.h"

#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
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
    [[nodiscard]] std::optional<std::string> elsewhere(const std::string& key) const {
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
    defaults.setObject("\xFF", "not to be written");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(readFile(file), R"({"theirs":{"deep":[1,null]},"a":"text"})");
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(UserDefaults, AFileThatHoldsNoValuesCountsAsEmpty) {
    for (const std::string& text :
         {std::string("{\"a\":\"torn"), std::string("[\"a\"]"), std::string("{\"a\":7}"),
          std::string(4096, '\0'), std::string(100000, '[')}) {
        write(text);
        NativeUserDefaults defaults(file);
        EXPECT_EQ(defaults.valueForKey("a"), std::nullopt) << text.substr(0, 20);
        defaults.setObject("new", "a");
        EXPECT_EQ(elsewhere("a"), "new");
    }
    fs::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(elsewhere("a"), std::nullopt) << "a named pipe holds nobody up";
}

TEST_F(UserDefaults, WithoutAPlaceToWriteValuesLastAsLongAsTheObject) {
    std::ofstream(root / "plain file") << "x";
    for (const fs::path& place : {root / "plain file" / "defaults.json", fs::path()}) {
        NativeUserDefaults defaults(place);
        defaults.setObject("kept", "a");
        EXPECT_FALSE(defaults.synchronize()) << place;
        EXPECT_EQ(defaults.valueForKey("a"), "kept");
    }
}

TEST_F(UserDefaults, AWriteThatFailsHalfwayLeavesTheFileAndKeepsTheValue) {
    write(R"({"a":"old"})");
    EXPECT_TRUE(succeeded(inChild([this] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit tenOctets = {10, RLIM_INFINITY};
        NativeUserDefaults defaults(file);
        setrlimit(RLIMIT_FSIZE, &tenOctets);
        defaults.setObject("new", "a");
        return readFile(file) == R"({"a":"old"})" && !defaults.synchronize() &&
               defaults.valueForKey("a") == "new";
    })));
}

/// What was everybody's is the first program's, and nobody else's.
TEST_F(UserDefaults, FileOfTheUserBecomesTheProgramsThatComesFirst) {
    const fs::path users = file.parent_path() / "users.json";
    write(R"({"a":"old"})");
    fs::rename(file, users);
    const NativeUserDefaults first(NativeUserDefaults::Place{file, users}),
        other(NativeUserDefaults::Place{root / "other" / "defaults.json", users});
    EXPECT_EQ(first.valueForKey("a"), "old");
    EXPECT_FALSE(fs::exists(users));
    EXPECT_EQ(elsewhere("a"), "old");
    EXPECT_EQ(other.valueForKey("a"), std::nullopt);
}

TEST_F(UserDefaults, ProcessesThatWriteAtOnceLoseNothing) {
    constexpr int kProcesses = 4, kWrites = 40;
    const auto key = [](int process, int index) { return std::to_string(process * kWrites + index); };
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process)
        children.push_back(inChild([&, process] {
            NativeUserDefaults defaults(file);
            for (int index = 0; index < kWrites; ++index)
                defaults.setObject(std::to_string(index), key(process, index));
            return defaults.synchronize();
        }));
    for (const pid_t child : children)
        EXPECT_TRUE(succeeded(child));
    for (int process = 0; process < kProcesses; ++process)
        for (int index = 0; index < kWrites; ++index)
            EXPECT_EQ(elsewhere(key(process, index)), std::to_string(index));
}

} // namespace
} // namespace korvane
