#include "Crypt/ECPrivateKey.h"
#include "Crypt/JWEHeader.h"
#include "Crypt/JWSHeader.h"
#include "Crypt/RSAPublicKey.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

constexpr auto kDir = KeyManagementAlgorithm::direct;
constexpr auto kEnc = ContentEncryptionAlgorithm::A128CBCHS256;

JWEHeader jweHeader(const std::string& members) {
    return JWEHeader::make(toBytes(R"({"alg":"dir","enc":"A128CBC-HS256")" + members + "}")).value();
}

TEST(HeaderReading, BytesFromTheWireStayAsTheyCame) {
    const std::string odd = "{ \"enc\" :\t\"A128CBC-HS256\",\n\"x\":1.0e1, \"alg\":\"d\\u0069r\"}";
    const auto header = JWEHeader::make(toBytes(odd));
    ASSERT_TRUE(header);
    EXPECT_EQ(asText(header->data()), odd);
    EXPECT_EQ(header->algorithm(), kDir);
}

TEST(HeaderReading, OnlyObjectsWithTheirRequiredTextsAreHeaders) {
    const struct {
        const char* json;
        bool isJWE;
        bool isJWS;
    } rows[] = {
        {R"({"alg":"dir","enc":"A128CBC-HS256"})", true, true},
        {R"({"alg":"unknown","enc":"unknown"})", true, true},
        {R"({"alg":"RS256"})", false, true},
        {R"({"enc":"A128CBC-HS256"})", false, false},
        {R"({"alg":1,"enc":"A128CBC-HS256"})", false, false},
        {R"({"alg":"dir","enc":null})", false, true},
        {R"(["alg"])", false, false},
        {R"("alg")", false, false},
        {"", false, false},
        {"{\"alg\":\"\xFF\"}", false, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(JWEHeader::make(toBytes(row.json)).has_value(), row.isJWE) << row.json;
        EXPECT_EQ(JWSHeader::make(toBytes(row.json)).has_value(), row.isJWS) << row.json;
    }
}

TEST(HeaderReading, AHeaderEndsAt64KiB) {
    Bytes data = toBytes(R"({"alg":"dir","enc":"A128CBC-HS256"})");
    data.resize(65536, ' ');
    EXPECT_TRUE(JWEHeader::make(Bytes(data)));
    data.push_back(' ');
    EXPECT_FALSE(JWEHeader::make(Bytes(data)));
    EXPECT_FALSE(JWSHeader::make(Bytes(data)));
}

TEST(HeaderReading, AHeaderThatFailsLeavesTheBytesToTheCaller) {
    Bytes data = toBytes(R"({"alg":"dir"})");
    EXPECT_FALSE(JWEHeader::make(std::move(data)));
    EXPECT_EQ(asText(data), R"({"alg":"dir"})"); // NOLINT(bugprone-use-after-move): that is what is promised
}

TEST(HeaderConstruction, FaultsAreToldApartInOrder) {
    const auto missing = [](JSON parameters) {
        const auto failure = raisedBy<HeaderParsingErrorCase>([&] { return JWEHeader(parameters); });
        return failure ? std::get<std::string>(failure->value()) : "";
    };
    EXPECT_EQ(missing(JSON::object()), "alg");
    EXPECT_EQ(missing(JSON::object({{"alg", "dir"}})), "enc");
    EXPECT_RAISES(HeaderParsingErrorCase::headerIsNotValidJSONObject, JWEHeader(JSON::array()));
    EXPECT_RAISES(HeaderParsingErrorCase::headerIsNotValidJSONObject,
                  JWSHeader(JSON::object({{"x", "\xFF"}})));
}

TEST(HeaderReading, ValuesOfAnotherShapeAreNoValues) {
    const JWEHeader header =
        jweHeader(R"(,"kid":1,"x5c":["a",2],"crit":"exp","jku":"a b","x5u":7,"typ":null,)"
                  R"("jwk":"text","epk":{"kty":"EC","crv":"P-256","x":1,"y":"y"},"apu":{},"zip":1)");
    EXPECT_FALSE(header.kid());
    EXPECT_FALSE(header.x5c());
    EXPECT_FALSE(header.crit());
    EXPECT_FALSE(header.jku());
    EXPECT_FALSE(header.x5u());
    EXPECT_FALSE(header.typ());
    EXPECT_FALSE(header.epk());
    EXPECT_FALSE(header.apu());
    EXPECT_FALSE(header.zip());
    EXPECT_FALSE(header.compressionAlgorithm()) << "a \"zip\" that is no text is unknown, not absent";
    EXPECT_EQ(header.jwk(), "text");
    EXPECT_EQ(header.jwkTyped(), nullptr);
}

TEST(HeaderReading, ZipIsNoneWhereItIsAbsent) {
    EXPECT_EQ(jweHeader("").compressionAlgorithm(), CompressionAlgorithm::NONE);
    EXPECT_FALSE(jweHeader("").zip());
    EXPECT_EQ(jweHeader(R"(,"zip":"DEF")").compressionAlgorithm(), CompressionAlgorithm::DEFLATE);
    EXPECT_EQ(jweHeader(R"(,"zip":"NONE")").compressionAlgorithm(), CompressionAlgorithm::NONE);
    EXPECT_FALSE(jweHeader(R"(,"zip":"GZ")").compressionAlgorithm());
}

TEST(HeaderReading, EmbeddedKeysAreReadByTypeAndNeverPrivate) {
    const auto ec = jweHeader(R"(,"jwk":{"kty":"EC","crv":"P-256","x":"x","y":"y","d":"d"})").jwkTyped();
    ASSERT_NE(dynamic_cast<const ECPublicKey*>(ec.get()), nullptr);
    EXPECT_FALSE((*ec)["d"]);
    const auto rsa = jweHeader(R"(,"jwk":{"kty":"RSA","n":"n","e":"e","d":"d"})").jwkTyped();
    EXPECT_NE(dynamic_cast<const RSAPublicKey*>(rsa.get()), nullptr);
    EXPECT_NE(jweHeader(R"(,"jwk":{"kty":"oct","k":"AA"})").jwkTyped(), nullptr);
    for (const char* bad :
         {R"({"kty":"EC"})", R"({"kty":"OKP"})", R"({"n":"n"})", R"({"kty":"oct","k":"A"})"})
        EXPECT_EQ(jweHeader(std::string(",\"jwk\":") + bad).jwkTyped(), nullptr) << bad;

    const auto epk =
        jweHeader(R"(,"epk":{"kty":"EC","crv":"P-256","x":"x","y":"y","kid":"k","z":"z"})").epk();
    ASSERT_TRUE(epk);
    EXPECT_EQ((*epk)["kid"], "k");
    EXPECT_FALSE((*epk)["z"]) << "only the members of a key survive";
}

TEST(HeaderWriting, EverySetterReadsBackAndSerialisesAnew) {
    JWEHeader header = jweHeader(" ");
    const Bytes received = header.data();
    const ECPublicKey key = ECPrivateKey::generateWith(ECCurveType::P256).getPublic();
    const std::vector<std::string> list{"a", "b"};
    header.setTyp("JOSE");
    EXPECT_NE(header.data(), received);
    header.setJku(URL::make("https://a/b"));
    header.setX5u(URL::make("https://c"));
    header.setKid("k");
    header.setX5c(list);
    header.setX5t("t");
    header.setX5tS256("t256");
    header.setCty("c");
    header.setCrit(list);
    header.setZip("DEF");
    header.setApu("u");
    header.setApv("v");
    header.setEpk(key);
    header.setJwkTyped(&key);

    const JWEHeader read = JWEHeader::make(Bytes(header.data())).value();
    EXPECT_EQ(read.parameters(), header.parameters());
    EXPECT_EQ(read.jku()->absoluteString(), "https://a/b");
    EXPECT_EQ(read.x5u()->absoluteString(), "https://c");
    EXPECT_EQ(read.typ(), "JOSE");
    EXPECT_EQ(read.kid(), "k");
    EXPECT_EQ(read.x5c(), list);
    EXPECT_EQ(read.x5t(), "t");
    EXPECT_EQ(read.x5tS256(), "t256");
    EXPECT_EQ(read.cty(), "c");
    EXPECT_EQ(read.crit(), list);
    EXPECT_EQ(read.zip(), "DEF");
    EXPECT_EQ(read.apu(), "u");
    EXPECT_EQ(read.apv(), "v");
    EXPECT_EQ(read.epk()->x(), key.x());
    EXPECT_EQ((*read.jwkTyped())["y"], key.y());

    const Bytes before = header.data();
    header.setKid(std::nullopt);
    header.setEpk(std::nullopt);
    header.setJwkTyped(nullptr);
    header.setX5u(std::nullopt);
    EXPECT_EQ(header.data(), before) << "a write of no value stores nothing";
    header.setJwk("text");
    EXPECT_EQ(header.jwk(), "text");
}

TEST(HeaderWriting, BytesStayWhereParametersAreNoObject) {
    JWEHeader header(kDir, kEnc);
    const Bytes before = header.data();
    header.setParameters(JSON::array());
    EXPECT_EQ(header.data(), before);
    EXPECT_FALSE(header.algorithm());
    EXPECT_FALSE(header.x5c());
    EXPECT_FALSE(header.epk());
}

TEST(HeaderConstruction, PartyValuesGoInAsTheyAre) {
    const ECPublicKey key(ECCurveType::P256, "x", "y", {{"any", "thing"}});
    const JWEHeader header(KeyManagementAlgorithm::ECDH_ES, kEnc, "abc", "d e", key);
    EXPECT_EQ(header.apu(), "abc");
    EXPECT_EQ(header.apv(), "d e");
    EXPECT_EQ(header.parameters()["epk"]["any"], "thing");
    EXPECT_EQ(JWSHeader(SignatureAlgorithm::PS512).parameters(), JSON::object({{"alg", "PS512"}}));
}

} // namespace
} // namespace korvane
