#include "bench/Footprint.h"

#include "Platform/Headless/HeadlessPlatform.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "bench/Silence.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <optional>
#include <vector>

#include <malloc.h>
#include <unistd.h>

namespace korvane::bench {

namespace {

constexpr const char* kDirectoryServerID = "A000000999";

std::shared_ptr<const ConfigParameters> configuration(const TemporaryFolder& folder,
                                                      CertAlgorithm algorithm) {
    const DevInfoCert cert{"device.der", "device.der", kDirectoryServerID, algorithm,
                           NSBundle::bundleWithPath(folder.path())};
    return std::make_shared<ConfigParameters>(ConfigParameters::DevInfoCerts{{kDirectoryServerID, cert}});
}

void initialize(ThreeDS2Service& service, const std::shared_ptr<const ConfigParameters>& configured) {
    service.initialize(configured, nullptr, nullptr, Locale{"en_GB"});
}

double millisecondsOf(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

/// Behind a first one, which loads what the process keeps: fonts and locales.
void printInitialize(const std::shared_ptr<const ConfigParameters>& configured) {
    constexpr std::size_t kRuns = 31;
    const auto run = [&] {
        ThreeDS2Service service;
        initialize(service, configured);
    };
    std::vector<double> later(kRuns);
    for (double& time : later)
        time = millisecondsOf(run);
    std::sort(later.begin(), later.end());
    std::printf("initialize: %.2f ms (median) later\n", later[kRuns / 2]);
}

struct Memory {
    std::size_t resident;
    std::size_t heap;
};

/// What was freed before is given back first.
Memory memoryNow() {
    ::malloc_trim(0);
    std::size_t total = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    const struct mallinfo2 heap = ::mallinfo2();
    return {resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)), heap.uordblks + heap.hblkhd};
}

void printStep(const char* name, const Memory& memory, const Memory& before) {
    constexpr double kMebi = 1024.0 * 1024.0;
    std::printf("%-32s %8.1f MiB resident, %8.1f KiB of heap more\n", name,
                static_cast<double>(memory.resident) / kMebi,
                (static_cast<double>(memory.heap) - static_cast<double>(before.heap)) / 1024);
}

/// What an application pays that does nothing else: only true of a process that has just begun.
void printFirstSteps(const Memory& atStart, const std::shared_ptr<const ConfigParameters>& configured) {
    constexpr std::size_t kLive = 10;
    const Memory withPlatform = memoryNow();
    std::optional<Silence> silence(std::in_place);
    ThreeDS2Service service;
    const double first = millisecondsOf([&] { initialize(service, configured); });
    const Memory initialized = memoryNow();
    std::vector<std::shared_ptr<Transaction>> transactions(kLive);
    for (auto& transaction : transactions) {
        transaction = service.createTransaction(kDirectoryServerID, "2.2.0");
        static_cast<void>(transaction->getAuthenticationRequestParameters());
    }
    const Memory live = memoryNow();
    transactions.clear();
    silence.reset();
    printStep("process", atStart, atStart);
    printStep("with the platform", withPlatform, atStart);
    printStep("after initialize", initialized, withPlatform);
    printStep("with ten live transactions", live, initialized);
    std::printf("initialize: %.2f ms the first time of a platform\n", first);
}

void printMemory(const char* name, const std::shared_ptr<const ConfigParameters>& configured) {
    constexpr std::size_t kTransactions = 1000;
    std::optional<Silence> silence(std::in_place);
    ThreeDS2Service service;
    initialize(service, configured);
    std::vector<std::shared_ptr<Transaction>> transactions(kTransactions);
    std::size_t deviceData = 0;
    const Memory before = memoryNow();
    for (auto& transaction : transactions) {
        transaction = service.createTransaction(kDirectoryServerID, "2.2.0");
        deviceData = transaction->getAuthenticationRequestParameters().getDeviceData().size();
    }
    const Memory after = memoryNow();
    transactions.clear();
    silence.reset();
    std::printf(
        "%zu transactions %s: %.1f MiB resident in all; each %.0f bytes of heap, of which %zu are the "
        "sealed device data, and %.0f bytes resident\n",
        kTransactions, name, static_cast<double>(after.resident) / (1024.0 * 1024.0),
        static_cast<double>(after.heap - before.heap) / kTransactions, deviceData,
        static_cast<double>(after.resident - before.resident) / kTransactions);
}

} // namespace

void printFootprint() {
    const Memory atStart = memoryNow();
    const TemporaryFolder folder;
    ::setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
    const HeadlessPlatform platform;
    folder.write("device.der", selfSigned({}).der);
    printFirstSteps(atStart, configuration(folder, CertAlgorithm::EC));
    printInitialize(configuration(folder, CertAlgorithm::EC));
    printMemory("EC", configuration(folder, CertAlgorithm::EC));
    folder.write("device.der", selfSigned({.key = TestKeyType::rsa2048}).der);
    printMemory("RSA", configuration(folder, CertAlgorithm::RSA));
}

} // namespace korvane::bench
