#include "bench/SdkOperations.h"

#include "Crypt/ConcatKDF.h"
#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/LetterCase.h"
#include "Platform/Security/SecTrust.h"
#include "Sdk/DeviceData/DeviceDataCollection.h"
#include "Sdk/Exchange/Exchange.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "bench/BareOpenSSLChain.h"
#include "bench/BareOpenSSLKeys.h"
#include "bench/BareOpenSSLSealing.h"
#include "bench/InstantPlatform.h"
#include "tests/support/Messages.h"
#include "tests/support/PlayedAcs.h"

#include <benchmark/benchmark.h>

namespace korvane::bench {

namespace {

constexpr double kCreateTarget = 1.3;
constexpr double kExchangeTarget = 2.0;
constexpr double kChainTarget = 1.1;
constexpr const char* kDirectoryServerID = "A000000999";
constexpr const char* kVersion = "2.2.0";

void require(bool holds, const std::string& operation) {
    if (!holds) fatalError("The two sides of " + operation + " do not do the same.");
}

/// A device that tells as much as this machine would.
std::shared_ptr<InstantPlatform> instantPlatform() {
    std::vector<std::string> locales;
    std::vector<std::pair<std::string, std::vector<std::string>>> fonts;
    {
        HeadlessPlatform machine;
        locales = machine.locales().availableIdentifiers();
        for (const std::string& family : machine.fonts().familyNames())
            fonts.emplace_back(family, machine.fonts().fontNamesForFamilyName(family));
    }
    auto platform = std::make_shared<InstantPlatform>();
    platform->localeIdentifiers = std::move(locales);
    platform->script().fonts = std::move(fonts);
    return platform;
}

std::shared_ptr<ThreeDS2Service> makeService(const TransactionCerts& certs) {
    struct Producer : TransactionCertsProducerProtocol {
        explicit Producer(TransactionCerts given) : certs(std::move(given)) {}
        TransactionCerts getCerts(const std::string&) override { return certs; }
        const TransactionCerts certs;
    };
    auto service = std::make_shared<ThreeDS2Service>();
    service->setCertProducer(std::make_shared<Producer>(certs));
    service->initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{"en_GB"});
    return service;
}

/// The document that the service seals for each transaction.
Bytes deviceDocument(Platform& platform) {
    DeviceData data;
    collectDeviceData(platform, {.locale = Locale{"en_GB"}, .sdkVersion = "1.0.0"}, data);
    return toBytes(makeDeviceInfo(data, {}).jsonString());
}

/// What both sides of the creation start from.
struct Creation {
    std::shared_ptr<InstantPlatform> platform;
    TestIdentity directoryServer;
    std::shared_ptr<ThreeDS2Service> service;
    Bytes document;

    Creation(std::shared_ptr<InstantPlatform> instant, TestKeyType key, CertAlgorithm algorithm)
        : platform(std::move(instant)), directoryServer(selfSigned({.key = key})),
          service(makeService({directoryServer.der, directoryServer.der, algorithm, kDirectoryServerID})),
          document(deviceDocument(*platform)) {}

    [[nodiscard]] AuthenticationRequestParameters create() const {
        return service->createTransaction(kDirectoryServerID, kVersion)->getAuthenticationRequestParameters();
    }
};

Operation creationRow(const std::string& name,
                      const std::function<AuthenticationRequestParameters()>& korvane,
                      const std::function<std::string_view()>& bare) {
    return {name, kCreateTarget, std::nullopt, [korvane] { benchmark::DoNotOptimize(korvane()); },
            [bare] { benchmark::DoNotOptimize(bare()); }};
}

/// The header's text, which stands in for the one that a message's own key would give.
std::string headerTextOf(const std::string& compact) {
    return compact.substr(0, compact.find('.'));
}

std::shared_ptr<bare::KeyPair> anyPair() {
    const auto numbers = ecPrivateKeyComponents(SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 256));
    return std::make_shared<bare::KeyPair>(bare::KeyNumbers{numbers.x, numbers.y, numbers.d});
}

/// The key pair of the session, a content key under the certificate's key, and the sealing.
void addRsaCreation(std::vector<Operation>& rows, const std::shared_ptr<InstantPlatform>& platform) {
    const auto creation = std::make_shared<Creation>(platform, TestKeyType::rsa2048, CertAlgorithm::RSA);
    const SecKey publicKey = SecKeyCopyPublicKey(creation->directoryServer.privateKey());
    const auto wrapping = std::make_shared<bare::KeyEncryption>(SecKeyCopyExternalRepresentation(publicKey));
    const auto sealing = std::make_shared<bare::Sealing>();
    const auto session = anyPair();
    const std::string header = headerTextOf(creation->create().getDeviceData());
    const auto bare = [=] {
        session->generate();
        benchmark::DoNotOptimize(session->publicJwk());
        const auto key = wrapping->encryptFreshKey();
        sealing->setSealingKey(key.contentKey);
        return sealing->seal(header, key.encryptedKey, creation->document);
    };
    require(bare().size() == creation->create().getDeviceData().size(), "createTransaction RSA");
    rows.push_back(creationRow(
        "createTransaction RSA", [=] { return creation->create(); }, bare));
}

Bytes otherInfo(std::string_view partyVInfo) {
    Bytes info;
    for (const Bytes& piece : {prefixedBigEndenLen({}), prefixedBigEndenLen({}),
                               prefixedBigEndenLen(asBytes(partyVInfo)), bigEndianData(256)})
        info.insert(info.end(), piece.begin(), piece.end());
    return info;
}

/// The key pairs of the session and of the message, the agreement with the certificate's
/// key, and the sealing.
void addEcCreation(std::vector<Operation>& rows, const std::shared_ptr<InstantPlatform>& platform) {
    const auto creation = std::make_shared<Creation>(platform, TestKeyType::p256, CertAlgorithm::EC);
    const auto peerNumbers =
        ecPublicKeyComponents(SecKeyCopyPublicKey(creation->directoryServer.privateKey()));
    const auto peer = std::make_shared<bare::PublicKey>(bare::KeyNumbers{peerNumbers.x, peerNumbers.y, {}});
    const auto sealing = std::make_shared<bare::Sealing>();
    const auto session = anyPair();
    const auto message = anyPair();
    const Bytes info = otherInfo(kDirectoryServerID);
    const std::string header = headerTextOf(creation->create().getDeviceData());
    const auto bare = [=] {
        session->generate();
        benchmark::DoNotOptimize(session->publicJwk());
        message->generate();
        benchmark::DoNotOptimize(message->privateJwk());
        sealing->setSealingKey(message->agree(*peer, info));
        return sealing->seal(header, {}, creation->document);
    };
    require(bare().size() == creation->create().getDeviceData().size(), "createTransaction EC");
    rows.push_back(creationRow(
        "createTransaction EC", [=] { return creation->create(); }, bare));
}

/// The first response of an ACS: a text screen, or a page.
JSON responseOf(std::size_t size, const std::string& sdkTransID) {
    constexpr std::size_t kMostHtml = 100'000;
    JSON response = validCResJSON();
    response["acsCounterAtoS"] = "000";
    response["sdkTransID"] = sdkTransID;
    const std::size_t missing = size - response.dump().size();
    if (missing < kMostHtml) {
        response["challengeInfoText"] = std::string(missing, 't');
    } else {
        response["acsUiType"] = "05";
        response["acsHTML"] = std::string(kMostHtml, 'h');
        response["acsHTMLRefresh"] = std::string(missing - kMostHtml, 'r');
    }
    return response;
}

/// A transaction whose channel is open, and the answer that it gets.
struct OpenChannel {
    std::shared_ptr<InstantPlatform> platform;
    PlayedAcs acs;
    std::shared_ptr<Exchange> exchange;
    SecretBytes key;
    std::string response;

    OpenChannel(std::shared_ptr<InstantPlatform> instant, std::size_t size)
        : platform(std::move(instant)),
          exchange(std::make_shared<Exchange>(
              MessageVersion::v2_2_0, kReferenceNumber,
              std::make_unique<KeysContainer>(
                  TransactionCerts{acs.leaf.der, acs.root.der, CertAlgorithm::EC, kDirectoryServerID}))) {
        const auto sdkKey = ECPublicKey::decode(JSON::parse(exchange->ephemeralPublicKey().value()));
        key = peerKey(acs.ephemeral, sdkKey, kReferenceNumber);
        response = PlayedAcs::sealed(responseOf(size, lowercased(exchange->sdkTransactionID())).dump(), key);
        platform->answer = toBytes(response);
        ChallengeParameters parameters = validParameters();
        parameters.setAcsSignedContent(acs.signedContent());
        exchange->setChallengeParameters(std::make_shared<ChallengeParameters>(std::move(parameters)));
        exchange->openSecureChannel();
    }

    [[nodiscard]] CReqSendingResult send() const {
        return exchange->sendCReq(exchange->getInitCReqData(), CResPosition::initial);
    }
};

void addExchange(std::vector<Operation>& rows, const std::shared_ptr<InstantPlatform>& platform,
                 const std::string& size, std::size_t bytes) {
    const auto channel = std::make_shared<OpenChannel>(platform, bytes);
    const auto bare = std::make_shared<bare::Sealing>(channel->key);
    const Bytes compact = channel->exchange->getInitCReqData();
    const JWE sealedCReq{ByteView(compact)};
    const std::string header = headerTextOf(std::string(asText(compact)));
    const std::string responseHeader = headerTextOf(channel->response);
    const auto decrypter = Decrypter::make(KeyManagementAlgorithm::direct,
                                           ContentEncryptionAlgorithm::A128CBCHS256, channel->key);
    const Bytes cReq = sealedCReq.decrypt(decrypter.value()).data();
    const CReqSendingResult result = channel->send();
    const Bytes opened = toBytes(bare->open(responseHeader, channel->response));
    require(result.cres && *result.cres == CRes::decode(asText(opened)), "the exchange of " + size);

    rows.push_back({"sealed exchange " + size, kExchangeTarget, std::nullopt,
                    [=] { benchmark::DoNotOptimize(channel->send()); },
                    [=] {
                        benchmark::DoNotOptimize(bare->seal(header, {}, cReq));
                        benchmark::DoNotOptimize(bare->open(responseHeader, channel->response));
                    }});
}

SecKey checkedKey(const bare::ChainBytes& chain) {
    const std::array<SecCertificate, 2> certificates{
        SecCertificateCreateWithData(chain.leaf).value(),
        SecCertificateCreateWithData(chain.intermediate).value()};
    const SecCertificate root = SecCertificateCreateWithData(chain.root).value();
    std::optional<SecTrust> trust;
    require(SecTrustCreateWithCertificates(certificates, SecPolicyCreateBasicX509(), trust) == errSecSuccess,
            "a trust object");
    SecTrustSetAnchorCertificates(*trust, {&root, 1});
    require(!SecTrustEvaluateWithError(*trust), "the chain check");
    return SecCertificateCopyKey(certificates.front()).value();
}

void addChainCheck(std::vector<Operation>& rows, const std::string& name, TestKeyType key) {
    CertificateFields upper = authority("Root");
    CertificateFields middle = authority("Intermediate");
    upper.key = middle.key = key;
    const TestIdentity root = selfSigned(upper);
    const TestIdentity intermediate = root.issue(middle);
    const TestIdentity leaf = intermediate.issue({.key = key});
    const auto chain =
        std::make_shared<bare::ChainBytes>(bare::ChainBytes{leaf.der, intermediate.der, root.der});
    bare::verifyChain(*chain);
    require(SecKeyCopyExternalRepresentation(checkedKey(*chain)) ==
                SecKeyCopyExternalRepresentation(SecKeyCopyPublicKey(leaf.privateKey())),
            "the check of " + name);
    rows.push_back({"chain of two " + name, kChainTarget, std::nullopt,
                    [=] { benchmark::DoNotOptimize(checkedKey(*chain)); },
                    [=] { bare::verifyChain(*chain); }});
}

} // namespace

std::vector<Operation> sdkOperations() {
    const auto platform = instantPlatform();
    std::vector<Operation> rows;
    addRsaCreation(rows, platform);
    addEcCreation(rows, platform);
    addExchange(rows, platform, "4 KB", 4096);
    addExchange(rows, platform, "130 KB", std::size_t{130} * 1024);
    addChainCheck(rows, "P-256", TestKeyType::p256);
    addChainCheck(rows, "RSA 2048", TestKeyType::rsa2048);
    return rows;
}

} // namespace korvane::bench
