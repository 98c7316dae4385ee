#include "bench/Growth.h"

#include "Crypt/JWE.h"
#include "Sdk/Messages/Validator.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "Ui/Screens/VCFactory.h"
#include "bench/BareOpenSSLSealing.h"
#include "bench/LoopPlatform.h"
#include "bench/Silence.h"
#include "bench/Timing.h"
#include "tests/support/Messages.h"
#include "tests/support/PlayedAcs.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace korvane::bench {

namespace {

using Work = std::function<void()>;

constexpr const char* kDirectoryServerID = "A000000999";
constexpr auto kDirect = KeyManagementAlgorithm::direct;
constexpr auto kEncryption = ContentEncryptionAlgorithm::A128CBCHS256;

/// An operation that is given more and more.
struct Growing {
    const char* name;
    const char* unit;
    std::vector<std::size_t> sizes;
    /// Makes ready what is measured.
    std::function<Work(std::size_t size)> prepare;
};

/// What takes n log n passes, and so does leaving a cache behind; what takes the square does not.
void printGrowing(const Growing& row) {
    constexpr double kMostExponent = 1.3;
    std::printf("%-24s", row.name);
    double exponent = 0;
    double timeBefore = 0;
    for (std::size_t index = 0; index < row.sizes.size(); ++index) {
        double time = 0;
        {
            const Silence silence;
            const Work work = row.prepare(row.sizes[index]);
            time = medianOf([&] { return microsecondsOf(work); });
        }
        std::printf("  %zu: %.1f", row.sizes[index], time);
        if (index > 0)
            exponent = std::log(time / timeBefore) / std::log(static_cast<double>(row.sizes[index]) /
                                                              static_cast<double>(row.sizes[index - 1]));
        timeBefore = time;
    }
    std::printf("  (us by %s)  at last n^%.2f  %s\n", row.unit, exponent,
                exponent <= kMostExponent ? "ok" : "above");
}

Payload payloadOf(std::size_t size) {
    return Payload(Bytes(size, 'p'));
}

Work sealing(std::size_t size) {
    const auto encrypter = Encrypter::make(kDirect, kEncryption, SecretBytes(32, 7)).value();
    return [encrypter, payload = payloadOf(size)] {
        static_cast<void>(JWE(JWEHeader(kDirect, kEncryption), payload, encrypter).compactSerializedString());
    };
}

Work opening(std::size_t size) {
    const SecretBytes key(32, 7);
    const auto decrypter = Decrypter::make(kDirect, kEncryption, key).value();
    const JWE jwe(JWEHeader(kDirect, kEncryption), payloadOf(size),
                  Encrypter::make(kDirect, kEncryption, key).value());
    return [decrypter, text = jwe.compactSerializedString()] {
        static_cast<void>(JWE(text).decrypt(decrypter));
    };
}

/// A response with pages of that many characters: one has room for 100,000.
JSON pageOf(std::size_t size) {
    constexpr std::size_t kLongestPage = 100'000;
    const std::size_t first = std::min(size, kLongestPage);
    JSON message = validCResJSON();
    message["acsUiType"] = "05";
    message["acsHTML"] = std::string(first, 'h');
    if (size > first) message["acsHTMLRefresh"] = std::string(size - first, 'r');
    return message;
}

/// A response with that many options.
JSON optionsOf(std::size_t count) {
    JSON message = validCResJSON();
    message["acsUiType"] = "03";
    JSON options = JSON::array();
    for (std::size_t index = 0; index < count; ++index)
        options.push_back(JSON::object({{"key" + std::to_string(index), "Option " + std::to_string(index)}}));
    message["challengeSelectInfo"] = std::move(options);
    return message;
}

Work decoding(const JSON& message) {
    return [text = message.dump()] { static_cast<void>(CRes::decode(text)); };
}

Work validation(const JSON& message) {
    const auto cRes = std::make_shared<CRes>(CRes::decode(message.dump()));
    const auto parameters = std::make_shared<ChallengeParameters>(validParameters());
    return [cRes, parameters] {
        const ValidationContainer container{*cRes, 1, "2.2.0", *parameters, kSdkTransID, false};
        if (Validator::validateCRes(container)) fatalError("The benchmark's response is not valid.");
    };
}

/// From the response to screens that are laid out.
Work firstScreen(std::size_t count) {
    const auto cRes = std::make_shared<CRes>(CRes::decode(optionsOf(count).dump()));
    return [cRes] {
        const auto container = VCFactory(nullptr, nullptr, nullptr).getViewControllerContainer(*cRes);
        const auto view = container.controllersMap().at(Orientation::PORTRAIT)->view();
        view->setFrame({{0, 0}, {390, 844}});
        view->layoutIfNeeded();
    };
}

ConfigParameters::DevInfoCerts directoryServers(std::size_t count) {
    ConfigParameters::DevInfoCerts servers;
    for (std::size_t index = 0; index < count; ++index) {
        const std::string name = "A" + std::to_string(100'000'000 + index);
        servers.emplace(name, DevInfoCert{"device.der", "root.der", name, CertAlgorithm::EC, nullptr});
    }
    return servers;
}

Work initialization(std::size_t count) {
    const auto configured = std::make_shared<ConfigParameters>(directoryServers(count));
    return [configured] {
        ThreeDS2Service service;
        service.initialize(configured, nullptr, nullptr, Locale{"en_GB"});
    };
}

/// A first transaction, which asks a device with that many fonts for all that it tells.
Work creation(LoopPlatform& platform, std::size_t fonts) {
    struct Producer : TransactionCertsProducerProtocol {
        TransactionCerts getCerts(const std::string&) override {
            return {der, der, CertAlgorithm::EC, kDirectoryServerID};
        }
        const Bytes der = selfSigned({}).der;
    };
    std::vector<std::string> names;
    for (std::size_t index = 0; index < fonts; ++index)
        names.push_back("Font " + std::to_string(index));
    platform.script().fonts = {{"Family", std::move(names)}};
    return [producer = std::make_shared<Producer>(), configured = std::make_shared<ConfigParameters>()] {
        ThreeDS2Service service;
        service.setCertProducer(producer);
        service.initialize(configured, nullptr, nullptr, Locale{"en_GB"});
        static_cast<void>(
            service.createTransaction(kDirectoryServerID, "2.2.0")->getAuthenticationRequestParameters());
    };
}

void printGrowingRows(LoopPlatform& platform) {
    const std::vector<std::size_t> octets{4096, 16384, 65536, 262144, 1048576};
    const std::vector<std::size_t> page{4096, 16384, 65536, 131072};
    const std::vector<std::size_t> options{10, 100, 1000, 10000};
    const Growing rows[] = {
        {"seal", "octet", octets, sealing},
        {"open", "octet", octets, opening},
        {"decode a page", "octet", page, [](std::size_t size) { return decoding(pageOf(size)); }},
        {"validate a page", "octet", page, [](std::size_t size) { return validation(pageOf(size)); }},
        {"decode options", "option", options, [](std::size_t count) { return decoding(optionsOf(count)); }},
        {"validate options", "option", options,
         [](std::size_t count) { return validation(optionsOf(count)); }},
        {"first screen of options", "option", options, firstScreen},
        {"initialize", "server", {1, 10, 100, 1000}, initialization},
        {"first transaction",
         "font",
         {10, 100, 1000, 10000},
         [&](std::size_t count) { return creation(platform, count); }},
    };
    std::printf("\ngrowth, medians in us of CPU\n");
    for (const Growing& row : rows)
        printGrowing(row);
}

/// What becomes of an answer, step by step, beside the bare opening of the same octets.
void printAnswer(const char* name, std::size_t size) {
    const SecretBytes key(32, 7);
    const JSON message = pageOf(size);
    const std::string text = PlayedAcs::sealed(message.dump(), key);
    const std::string header = text.substr(0, text.find('.'));
    bare::Sealing bare(key);
    const auto decrypter = Decrypter::make(kDirect, kEncryption, key).value();
    const Work decode = decoding(message);
    const Work validate = validation(message);
    const auto median = [](const Work& work) { return medianOf([&] { return microsecondsOf(work); }); };
    std::printf("%-12s bare opening %.1f, opening %.1f, decoding %.1f, validation %.1f\n", name,
                median([&] { static_cast<void>(bare.open(header, text)); }),
                median([&] { static_cast<void>(JWE(text).decrypt(decrypter)); }), median(decode),
                median(validate));
}

} // namespace

void printGrowth() {
    LoopPlatform platform;
    platform.script().mainBundlePath = KORVANE_MAIN_BUNDLE;
    platform.script().bounds = {{0, 0}, {390, 844}};
    printGrowingRows(platform);
    std::printf("\nan answer of the ACS, medians in us of CPU\n");
    printAnswer("4 KB", 4096);
    printAnswer("130 KB", std::size_t{130} * 1024);
}

} // namespace korvane::bench
