#include "java/native/Natives.h"

#include "java/native/HostCalls.h"

#include <exception>
#include <iterator>
#include <memory>
#include <new>

namespace korvane::java {

namespace {

struct Freeing {
    void operator()(char* text) const { korvane_free(text); }
};
using OwnText = std::unique_ptr<char, Freeing>;

template <class Handle>
Handle* handleOf(jlong number) {
    return static_cast<Handle*>(contextOf(number));
}

/// Calls a function of the library; what goes wrong becomes the exception that Java makes of it.
/// @throws Pending then.
template <class Function, class... Arguments>
void ask(JNIEnv* env, Function function, Arguments... arguments) {
    korvane_error error;
    if (function(arguments..., &error) == KORVANE_OK) return;
    auto* const failure = static_cast<jthrowable>(env->CallStaticObjectMethod(
        peer().self, peer().failure, static_cast<jint>(error.result), newText(env, error.text)));
    requireNone(env);
    env->Throw(failure);
    throw Pending();
}

void raise(JNIEnv* env, const char* name, const char* text) {
    if (jclass failure = env->FindClass(name)) env->ThrowNew(failure, text);
}

/// Carries out a function's body. Nothing that is thrown here crosses into Java but as a Java exception.
template <class Body>
auto call(JNIEnv* env, const Body& body) noexcept -> decltype(body()) {
    try {
        return body();
    } catch (const Pending&) { // it is told already
    } catch (const std::bad_alloc&) {
        raise(env, "java/lang/OutOfMemoryError", "There is no memory left outside of Java's.");
    } catch (const std::exception& failure) {
        raise(env, "java/lang/InternalError", failure.what());
    }
    return decltype(body())();
}

jlong platform(JNIEnv* env, jclass /*self*/, jlong number, jint services) {
    return call(env, [&] {
        const korvane_host host = hostOf(number, services);
        korvane_platform* made = nullptr;
        ask(env, korvane_platform_create, &host, &made);
        return numberOf(made);
    });
}

void run(JNIEnv* env, jclass /*self*/, jlong platform) {
    call(env, [&] {
        constexpr std::int64_t kAtOnce = 0;
        ask(env, korvane_platform_run, handleOf<korvane_platform>(platform), kAtOnce, nullptr);
    });
}

void trust(JNIEnv* env, jclass /*self*/, jlong platform, jbyteArray pem) {
    call(env, [&] {
        ask(env, korvane_platform_trust, handleOf<korvane_platform>(platform), Bytes(env, pem).text());
    });
}

void setScreen(JNIEnv* env, jclass /*self*/, jlong platform, jint orientation, jdouble width,
               jdouble height) {
    call(env, [&] {
        ask(env, korvane_platform_set_screen, handleOf<korvane_platform>(platform), orientation, width,
            height);
    });
}

void setCaptured(JNIEnv* env, jclass /*self*/, jlong platform, jboolean isCaptured) {
    call(env, [&] {
        ask(env, korvane_platform_set_captured, handleOf<korvane_platform>(platform), isCaptured == JNI_TRUE);
    });
}

void setActive(JNIEnv* env, jclass /*self*/, jlong platform, jboolean isActive) {
    call(env, [&] {
        ask(env, korvane_platform_set_active, handleOf<korvane_platform>(platform), isActive == JNI_TRUE);
    });
}

void complete(JNIEnv* env, jclass /*self*/, jlong platform, jlong number, jint status, jbyteArray location,
              jbyteArray body, jbyteArray error) {
    call(env, [&] {
        const Bytes itsLocation(env, location), itsBody(env, body), itsError(env, error);
        const korvane_http_answer answer{sizeof answer,  status,         itsLocation.text(),
                                         itsBody.data(), itsBody.size(), itsError.text()};
        ask(env, korvane_platform_complete, handleOf<korvane_platform>(platform),
            static_cast<std::uint64_t>(number), &answer);
    });
}

/// @param servers  of each its identifier, certificate and root, one after the other.
jlong service(JNIEnv* env, jclass /*self*/, jlong platform, jobjectArray servers, jintArray algorithms,
              jbyteArray locale, jbyteArray theme) {
    return call(env, [&] {
        std::vector<jint> kinds(static_cast<std::size_t>(env->GetArrayLength(algorithms)));
        env->GetIntArrayRegion(algorithms, 0, static_cast<jsize>(kinds.size()), kinds.data());
        requireNone(env);
        std::vector<Bytes> texts;
        const jsize count = env->GetArrayLength(servers);
        texts.reserve(static_cast<std::size_t>(count));
        for (jsize index = 0; index < count; ++index)
            texts.emplace_back(env, servers, index);
        std::vector<korvane_directory_server> all;
        all.reserve(kinds.size());
        for (std::size_t index = 0; index < kinds.size(); ++index) {
            const Bytes* const own = &texts.at(3 * index);
            all.push_back(
                {own[0].text(), kinds[index], own[1].data(), own[1].size(), own[2].data(), own[2].size()});
        }
        const Bytes itsLocale(env, locale), itsTheme(env, theme);
        korvane_configuration configuration{};
        configuration.size = sizeof configuration;
        configuration.servers = all.data();
        configuration.server_count = all.size();
        configuration.locale = itsLocale.text();
        configuration.theme = itsTheme.text();
        korvane_service* made = nullptr;
        ask(env, korvane_service_create, handleOf<korvane_platform>(platform), &configuration, &made);
        return numberOf(made);
    });
}

jbyteArray version(JNIEnv* env, jclass /*self*/, jlong service) {
    return call(env, [&] {
        char* text = nullptr;
        ask(env, korvane_service_version, handleOf<korvane_service>(service), &text);
        return newText(env, OwnText(text).get());
    });
}

jbyteArray warnings(JNIEnv* env, jclass /*self*/, jlong service) {
    return call(env, [&] {
        char* json = nullptr;
        ask(env, korvane_service_warnings, handleOf<korvane_service>(service), &json);
        return newText(env, OwnText(json).get());
    });
}

jlong transaction(JNIEnv* env, jclass /*self*/, jlong service, jbyteArray server, jbyteArray version) {
    return call(env, [&] {
        korvane_transaction* made = nullptr;
        ask(env, korvane_transaction_create, handleOf<korvane_service>(service), Bytes(env, server).text(),
            Bytes(env, version).text(), &made);
        return numberOf(made);
    });
}

/// @return the texts of the structure, and last the whole as JSON.
jobjectArray request(JNIEnv* env, jclass /*self*/, jlong transaction) {
    return call(env, [&] {
        auto* const handle = handleOf<korvane_transaction>(transaction);
        char* text = nullptr;
        ask(env, korvane_transaction_authentication_request_json, handle, &text);
        const OwnText json(text);
        korvane_authentication_request own{};
        ask(env, korvane_transaction_authentication_request, handle, &own);
        const char* const all[] = {own.device_data,
                                   own.sdk_transaction_id,
                                   own.sdk_app_id,
                                   own.sdk_reference_number,
                                   own.sdk_ephemeral_public_key,
                                   own.message_version,
                                   json.get()};
        jobjectArray texts = newTexts(env, std::size(all));
        for (std::size_t index = 0; index < std::size(all); ++index)
            putText(env, texts, index, all[index]);
        return texts;
    });
}

jlong challenge(JNIEnv* env, jclass /*self*/, jlong transaction, jbyteArray values, jlong minutes,
                jlong number) {
    return call(env, [&] {
        korvane_cardholder* made = nullptr;
        ask(env, korvane_cardholder_create, handleOf<korvane_transaction>(transaction),
            Bytes(env, values).text(), minutes, tellEvent, contextOf(number), &made);
        return numberOf(made);
    });
}

void act(JNIEnv* env, jclass /*self*/, jlong challenge, jbyteArray action) {
    call(env, [&] {
        ask(env, korvane_cardholder_act, handleOf<korvane_cardholder>(challenge), Bytes(env, action).text());
    });
}

void release(JNIEnv* env, jclass /*self*/, jlong handle) {
    call(env, [&] { ask(env, korvane_release, contextOf(handle)); });
}

/// The machine's own structure has pointers to what it never changes.
template <class Function>
JNINativeMethod row(const char* name, const char* signature, Function* function) {
    return {const_cast<char*>(name), const_cast<char*>(signature), reinterpret_cast<void*>(function)};
}

} // namespace

void registerNatives(JNIEnv* env, jclass self) {
    const JNINativeMethod rows[] = {
        row("platform", "(JI)J", platform),
        row("run", "(J)V", run),
        row("trust", "(J[B)V", trust),
        row("setScreen", "(JIDD)V", setScreen),
        row("setCaptured", "(JZ)V", setCaptured),
        row("setActive", "(JZ)V", setActive),
        row("complete", "(JJI[B[B[B)V", complete),
        row("service", "(J[[B[I[B[B)J", service),
        row("version", "(J)[B", version),
        row("warnings", "(J)[B", warnings),
        row("transaction", "(J[B[B)J", transaction),
        row("request", "(J)[[B", request),
        row("challenge", "(J[BJJ)J", challenge),
        row("act", "(J[B)V", act),
        row("release", "(J)V", release),
    };
    if (env->RegisterNatives(self, rows, static_cast<jint>(std::size(rows))) != JNI_OK) throw Pending();
}

} // namespace korvane::java
