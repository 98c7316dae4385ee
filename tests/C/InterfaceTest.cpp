#include "C/korvane_c.h"
#include "Platform/JSON.h"
#include "tests/support/Messages.h"
#include "tests/support/PlayedAcs.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace korvane {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kServer = "A999999999";

std::string takenText(char* text) {
    std::string copy = text;
    korvane_free(text);
    return copy;
}

korvane_result onAnotherThread(const std::function<korvane_result()>& call) {
    korvane_result result = KORVANE_OK;
    std::thread([&] { result = call(); }).join();
    return result;
}

/// A program in C as far as its handles: a platform, a service and a transaction.
class Interface : public testing::Test {
protected:
    Interface() {
        host_.size = sizeof host_;
        host_.context = this;
        host_.value = [](void* self, korvane_value value, korvane_answer* answer) {
            static_cast<Interface*>(self)->answer(value, answer);
        };
        host_.log = [](void* self, const char* message, const char*, const char*, unsigned) {
            static_cast<Interface*>(self)->log_ += std::string(message) + "\n";
        };
        host_.send = [](void* self, const korvane_http_request* request) {
            static_cast<Interface*>(self)->carry(*request);
        };
        EXPECT_EQ(korvane_platform_create(&host_, &platform_, &error_), KORVANE_OK) << error_.text;
        server_ = {kServer, KORVANE_EC, key_.der.data(), key_.der.size(), root_.der.data(), root_.der.size()};
        configuration_.size = sizeof configuration_;
        configuration_.servers = &server_;
        configuration_.server_count = 1;
    }
    ~Interface() override {
        for (const void* handle : std::initializer_list<const void*>{transaction_, service_, platform_})
            EXPECT_EQ(korvane_release(handle, &error_), KORVANE_OK) << error_.text;
    }

    void makeTransaction() {
        ASSERT_EQ(korvane_service_create(platform_, &configuration_, &service_, &error_), KORVANE_OK)
            << error_.text;
        ASSERT_EQ(korvane_transaction_create(service_, kServer, "2.2.0", &transaction_, &error_), KORVANE_OK)
            << error_.text;
    }

    virtual void answer(korvane_value value, korvane_answer* answer) {
        lastAnswer_ = answer;
        if (value != KORVANE_RESOURCES) return;
        const std::string folder = std::string(KORVANE_MAIN_BUNDLE) + "/Frameworks";
        EXPECT_EQ(korvane_answer_add(answer, hasResources_ ? folder.c_str() : "/nowhere", nullptr),
                  KORVANE_OK);
    }

    static void hear(void* self, const char* json) {
        static_cast<Interface*>(self)->heard_.push_back(json ? JSON::parse(json)["event"] : "nothing");
    }

    /// To an ACS that answers what is no message.
    void carry(const korvane_http_request& request) {
        sent_.push_back(std::string(request.method) + " " + request.url);
        const std::string text = "hello";
        korvane_http_answer answer{};
        answer.size = sizeof answer;
        answer.status = 200;
        answer.body = asBytes(text).data();
        answer.body_length = text.size();
        EXPECT_EQ(korvane_platform_complete(platform_, request.number, &answer, nullptr), KORVANE_OK);
        EXPECT_EQ(korvane_platform_complete(platform_, request.number, &answer, nullptr), KORVANE_BAD_STATE);
    }

    const TestIdentity root_ = selfSigned(authority("Root"));
    const TestIdentity key_ = root_.issue({});
    korvane_host host_{};
    korvane_directory_server server_{};
    korvane_configuration configuration_{};
    korvane_error error_{};
    korvane_platform* platform_ = nullptr;
    korvane_service* service_ = nullptr;
    korvane_transaction* transaction_ = nullptr;
    korvane_answer* lastAnswer_ = nullptr;
    bool hasResources_ = true;
    std::string log_;
    std::vector<std::string> heard_, sent_;
};

TEST_F(Interface, RequestIsTheSameInAStructureAndAsJSON) {
    makeTransaction();
    korvane_authentication_request request{};
    char* text = nullptr;
    ASSERT_EQ(korvane_transaction_authentication_request(transaction_, &request, &error_), KORVANE_OK);
    ASSERT_EQ(korvane_transaction_authentication_request_json(transaction_, &text, &error_), KORVANE_OK);
    const JSON json = *JSONSerialization::jsonObject(takenText(text));
    EXPECT_EQ(json, JSON({{"deviceData", request.device_data},
                          {"sdkTransId", request.sdk_transaction_id},
                          {"sdkAppID", request.sdk_app_id},
                          {"sdkReferenceNum", request.sdk_reference_number},
                          {"ephemeralPublic", JSON::parse(request.sdk_ephemeral_public_key)},
                          {"messageVersion", "2.2.0"}}));
    EXPECT_EQ(json["ephemeralPublic"]["crv"], "P-256");
    ASSERT_EQ(korvane_service_version(service_, &text, &error_), KORVANE_OK);
    EXPECT_THAT(takenText(text), Not(IsEmpty()));
    ASSERT_EQ(korvane_service_warnings(service_, &text, &error_), KORVANE_OK);
    EXPECT_TRUE(JSON::parse(takenText(text)).is_array());
}

TEST_F(Interface, AHandleIsRefusedOnceItNamesNothingAndWhereAnotherTypeIsAskedFor) {
    makeTransaction();
    const auto version = [&](const void* handle) {
        char* text = nullptr;
        return korvane_service_version(static_cast<korvane_service*>(const_cast<void*>(handle)), &text,
                                       &error_);
    };
    int foreign = 0;
    EXPECT_EQ(version(nullptr), KORVANE_BAD_ARGUMENT);
    for (const void* handle : std::initializer_list<const void*>{transaction_, platform_, &foreign, &version})
        EXPECT_EQ(version(handle), KORVANE_BAD_HANDLE);
    EXPECT_EQ(korvane_retain(transaction_, &error_), KORVANE_OK);
    EXPECT_EQ(korvane_release(transaction_, &error_), KORVANE_OK);
    korvane_authentication_request request{};
    EXPECT_EQ(korvane_transaction_authentication_request(transaction_, &request, &error_), KORVANE_OK);
    const void* const gone = std::exchange(transaction_, nullptr);
    EXPECT_EQ(onAnotherThread([&] { return korvane_release(gone, nullptr); }), KORVANE_OK);
    EXPECT_EQ(korvane_release(gone, &error_), KORVANE_BAD_HANDLE);
    EXPECT_EQ(korvane_retain(gone, &error_), KORVANE_BAD_HANDLE);
    EXPECT_EQ(korvane_answer_add(lastAnswer_, "late", &error_), KORVANE_BAD_HANDLE);
}

TEST_F(Interface, ThePlatformIsOneAndEndsLastOnItsThreadAndOutsideOfCallbacks) {
    makeTransaction();
    korvane_platform* second = nullptr;
    EXPECT_EQ(korvane_platform_create(nullptr, &second, &error_), KORVANE_BAD_STATE);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(korvane_release(platform_, &error_), KORVANE_BAD_STATE) << "others need it";
    for (const void* handle : std::initializer_list<const void*>{std::exchange(transaction_, nullptr),
                                                                 std::exchange(service_, nullptr)})
        EXPECT_EQ(korvane_release(handle, &error_), KORVANE_OK);
    EXPECT_EQ(onAnotherThread([&] { return korvane_release(platform_, nullptr); }), KORVANE_BAD_THREAD);
    EXPECT_EQ(onAnotherThread([&] { return korvane_platform_run(platform_, 0, nullptr, nullptr); }),
              KORVANE_BAD_THREAD);
    EXPECT_EQ(onAnotherThread([&] { return korvane_platform_set_active(platform_, true, nullptr); }),
              KORVANE_BAD_THREAD);
    bool didRun = true;
    EXPECT_EQ(korvane_platform_run(platform_, 0, &didRun, &error_), KORVANE_OK);
    EXPECT_FALSE(didRun);
    EXPECT_EQ(korvane_release(std::exchange(platform_, nullptr), &error_), KORVANE_OK);
    EXPECT_EQ(korvane_platform_create(nullptr, &platform_, &error_), KORVANE_OK) << "another begins";
}

TEST_F(Interface, WhatIsHandedInIsLookedAtAndNothingIsLeftBehind) {
    makeTransaction();
    const std::string longest(KORVANE_LONGEST_TEXT, 'a'), longer = longest + "a";
    struct Row {
        const char* server;
        const char* version;
        korvane_result result;
        const char* text;
    };
    const Row rows[] = {
        {nullptr, "2.2.0", KORVANE_BAD_ARGUMENT, "directory_server is null."},
        {kServer, nullptr, KORVANE_BAD_ARGUMENT, "message_version is null."},
        {"\xC3", "2.2.0", KORVANE_BAD_ARGUMENT, "directory_server is no UTF-8."},
        {longer.c_str(), "2.2.0", KORVANE_TOO_LARGE, "directory_server is too long."},
        {longest.c_str(), "2.2.0", KORVANE_INVALID_INPUT, "Missing certificates for aaa"},
        {"B000000000", "2.2.0", KORVANE_INVALID_INPUT, "Missing certificates for B000000000"},
        {kServer, "3.0.0", KORVANE_INVALID_INPUT, "Message version 3.0.0 not supported"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        korvane_transaction* made = nullptr;
        EXPECT_EQ(korvane_transaction_create(service_, row.server, row.version, &made, &error_), row.result);
        EXPECT_EQ(error_.result, row.result);
        EXPECT_THAT(error_.text, testing::StartsWith(row.text));
        EXPECT_EQ(made, nullptr);
    }
    EXPECT_THAT(log_, HasSubstr("Missing certificates for B000000000"));
    const auto create =
        [&](const std::function<void(korvane_configuration&, korvane_directory_server&)>& change) {
            auto server = server_;
            auto configuration = configuration_;
            configuration.servers = &server;
            change(configuration, server);
            korvane_service* made = nullptr;
            const auto result = korvane_service_create(platform_, &configuration, &made, &error_);
            EXPECT_EQ(made, nullptr);
            return result;
        };
    EXPECT_EQ(create([](auto& all, auto&) { all.size = 0; }), KORVANE_BAD_ARGUMENT);
    EXPECT_EQ(create([](auto& all, auto&) { all.servers = nullptr; }), KORVANE_BAD_ARGUMENT);
    EXPECT_EQ(create([](auto& all, auto&) { all.theme = "{\n\"lables\": {}}"; }), KORVANE_BAD_ARGUMENT);
    EXPECT_THAT(error_.text, HasSubstr("theme:2: lables: is not known here"));
    EXPECT_EQ(create([](auto& all, auto&) { all.server_count = SIZE_MAX; }), KORVANE_TOO_LARGE);
    EXPECT_EQ(create([](auto&, auto& one) { one.algorithm = 7; }), KORVANE_BAD_ARGUMENT);
    EXPECT_EQ(create([](auto&, auto& one) { one.certificate_length = SIZE_MAX; }), KORVANE_TOO_LARGE);
    EXPECT_EQ(create([](auto&, auto& one) { one.root = nullptr; }), KORVANE_BAD_ARGUMENT);
    for (const double width : {-1.0, 100'001.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(korvane_platform_set_screen(platform_, KORVANE_PORTRAIT, width, 1, &error_),
                  KORVANE_BAD_ARGUMENT);
    EXPECT_EQ(korvane_platform_set_screen(platform_, 0, 1, 1, &error_), KORVANE_BAD_ARGUMENT);
}

TEST_F(Interface, AChallengeEndsOnceOnTheMainThreadAndCannotBeHadTwice) {
    makeTransaction();
    struct Heard {
        int endings = 0;
        korvane_ending_kind kind{};
        std::string code, text;
        korvane_result ended{}, ran{};
        korvane_platform* platform = nullptr;
    } heard;
    heard.platform = platform_;
    const auto ending = [](void* context, const korvane_ending* told) {
        auto& own = *static_cast<Heard*>(context);
        ++own.endings;
        own.kind = told->kind;
        own.code = told->error_code ? told->error_code : "";
        own.text = told->error_text ? told->error_text : "";
        own.ended = korvane_release(own.platform, nullptr);
        own.ran = korvane_platform_run(own.platform, 0, nullptr, nullptr);
    };
    korvane_challenge_parameters parameters{};
    parameters.size = sizeof parameters;
    parameters.acs_signed_content = "nothing that is signed";
    const auto begin = [&](std::int64_t minutes) {
        return korvane_transaction_challenge(transaction_, &parameters, minutes, ending, &heard, &error_);
    };
    EXPECT_EQ(begin(-1), KORVANE_BAD_ARGUMENT);
    EXPECT_EQ(begin(1'000'001), KORVANE_BAD_ARGUMENT);
    hasResources_ = false;
    EXPECT_EQ(begin(5), KORVANE_NO_RESOURCES);
    EXPECT_THAT(error_.text, HasSubstr("/nowhere"));
    hasResources_ = true;
    ASSERT_EQ(begin(5), KORVANE_OK) << error_.text;
    EXPECT_EQ(begin(5), KORVANE_BAD_STATE);
    EXPECT_EQ(korvane_release(std::exchange(transaction_, nullptr), &error_), KORVANE_OK) << "it goes on";
    EXPECT_EQ(korvane_release(std::exchange(service_, nullptr), &error_), KORVANE_OK);
    for (bool didRun = true; didRun && heard.endings == 0;)
        ASSERT_EQ(korvane_platform_run(platform_, 10'000, &didRun, &error_), KORVANE_OK);
    EXPECT_EQ(heard.endings, 1);
    EXPECT_EQ(heard.kind, KORVANE_RUNTIME_ERROR);
    EXPECT_THAT(heard.code, Not(IsEmpty()));
    EXPECT_EQ(heard.ended, KORVANE_BAD_STATE);
    EXPECT_EQ(heard.ran, KORVANE_BAD_STATE);
}

/// The host carries what goes to the ACS, and the cardholder is told what came of it.
TEST_F(Interface, ACardholderIsToldOfAnEndingAndThenOfNothingMore) {
    const PlayedAcs acs;
    server_.root = acs.root.der.data();
    server_.root_length = acs.root.der.size();
    makeTransaction();
    const auto begin = [&](const std::string& values, korvane_cardholder** made) {
        return korvane_cardholder_create(transaction_, values.c_str(), 5, hear, this, made, &error_);
    };
    korvane_cardholder* cardholder = nullptr;
    for (const char* values : {"", "[]", "{\"acsTransID\":1}", "{\"other\":\"\"}"})
        EXPECT_EQ(begin(values, &cardholder), KORVANE_BAD_ARGUMENT) << values;
    ASSERT_EQ(begin(JSON({{"threeDSServerTransID", kServerTransID},
                          {"acsTransID", kAcsTransID},
                          {"acsRefNumber", kReferenceNumber},
                          {"acsSignedContent", acs.signedContent()}})
                        .dump(),
                    &cardholder),
              KORVANE_OK)
        << error_.text;
    EXPECT_EQ(begin("{}", &cardholder), KORVANE_BAD_STATE) << "one has the screen";
    EXPECT_EQ(korvane_cardholder_act(cardholder, "{\"action\":\"cancel\"}", &error_), KORVANE_BAD_STATE);
    for (bool didRun = true; didRun && (heard_.empty() || heard_.back() != "nothing");)
        ASSERT_EQ(korvane_platform_run(platform_, 10'000, &didRun, &error_), KORVANE_OK);
    EXPECT_THAT(heard_, testing::ElementsAre("protocolError", "nothing"));
    EXPECT_THAT(sent_, testing::Contains("POST " + std::string(acs.payload()["acsURL"])));
    EXPECT_EQ(korvane_cardholder_act(cardholder, "{\"action\":\"cancel\"}", &error_), KORVANE_BAD_STATE);

    // Who is in a call keeps what another thread gives back; this one takes its time to read.
    const std::string action = std::string(KORVANE_LONGEST_TEXT - 2, ' ') + "{}";
    std::atomic<bool> isThere{false};
    std::thread other([&] {
        isThere.wait(false);
        EXPECT_EQ(korvane_release(cardholder, nullptr), KORVANE_OK);
    });
    isThere = true;
    isThere.notify_one();
    EXPECT_THAT(korvane_cardholder_act(cardholder, action.c_str(), &error_),
                testing::AnyOf(KORVANE_BAD_STATE, KORVANE_BAD_HANDLE));
    other.join();
}

} // namespace
} // namespace korvane
