#include "java/native/HostCalls.h"

namespace korvane::java {

namespace {

constexpr jint kMostReferences = 16;

/// Carries out a call to Java on whatever thread this is. Java's own half lets no exception out; one that comes
/// all the same, such as for want of memory, is written to standard error and forgotten.
template <class Body>
void callUp(const Body& body) noexcept {
    JNIEnv* const env = environment();
    if (!env || env->PushLocalFrame(kMostReferences) != JNI_OK) return;
    try {
        body(env);
    } catch (...) { // `Pending`, or no memory
    }
    if (env->ExceptionCheck() == JNI_TRUE) {
        env->ExceptionDescribe();
        env->ExceptionClear();
    }
    env->PopLocalFrame(nullptr);
}

void wakeMain(void* context) {
    callUp([&](JNIEnv* env) { env->CallStaticVoidMethod(peer().self, peer().wake, numberOf(context)); });
}

void value(void* context, korvane_value value, korvane_answer* answer) {
    callUp([&](JNIEnv* env) {
        auto* const texts = static_cast<jobjectArray>(env->CallStaticObjectMethod(
            peer().self, peer().value, numberOf(context), static_cast<jint>(value)));
        requireNone(env);
        for (jsize index = 0; index < env->GetArrayLength(texts); ++index)
            korvane_answer_add(answer, Bytes(env, texts, index).text(), nullptr);
    });
}

void send(void* context, const korvane_http_request* request) {
    callUp([&](JNIEnv* env) {
        jobjectArray headers = newTexts(env, 2 * request->header_count);
        for (std::size_t index = 0; index < request->header_count; ++index) {
            putText(env, headers, 2 * index, request->headers[index].name);
            putText(env, headers, 2 * index + 1, request->headers[index].value);
        }
        env->CallStaticVoidMethod(peer().self, peer().send, numberOf(context),
                                  static_cast<jlong>(request->number), newText(env, request->url),
                                  newText(env, request->method), headers,
                                  newBytes(env, request->body, request->body_length),
                                  newText(env, request->authorities), request->patience);
    });
}

void cancel(void* context, std::uint64_t number) {
    callUp([&](JNIEnv* env) {
        env->CallStaticVoidMethod(peer().self, peer().cancel, numberOf(context), static_cast<jlong>(number));
    });
}

void load(void* context, const char* key, korvane_answer* answer) {
    callUp([&](JNIEnv* env) {
        auto* const text = static_cast<jbyteArray>(
            env->CallStaticObjectMethod(peer().self, peer().load, numberOf(context), newText(env, key)));
        requireNone(env);
        if (text) korvane_answer_add(answer, Bytes(env, text).text(), nullptr);
    });
}

bool save(void* context, const char* key, const char* text) {
    bool isKept = false;
    callUp([&](JNIEnv* env) {
        const jboolean kept = env->CallStaticBooleanMethod(peer().self, peer().save, numberOf(context),
                                                           newText(env, key), newText(env, text));
        requireNone(env);
        isKept = kept == JNI_TRUE;
    });
    return isKept;
}

void log(void* context, const char* message, const char* file, const char* function, unsigned line) {
    callUp([&](JNIEnv* env) {
        env->CallStaticVoidMethod(peer().self, peer().log, numberOf(context), newText(env, message),
                                  newText(env, file), newText(env, function), static_cast<jint>(line));
    });
}

} // namespace

korvane_host hostOf(jlong number, jint services) {
    korvane_host host{};
    host.size = sizeof host;
    host.context = contextOf(number);
    host.wake_main = wakeMain;
    host.value = value;
    if ((services & kNetwork) != 0) {
        host.send = send;
        host.cancel = cancel;
    }
    if ((services & kStore) != 0) {
        host.load = load;
        host.save = save;
    }
    if ((services & kLog) != 0) host.log = log;
    return host;
}

void tellEvent(void* context, const char* json) {
    callUp([&](JNIEnv* env) {
        env->CallStaticVoidMethod(peer().self, peer().event, numberOf(context), newText(env, json));
    });
}

} // namespace korvane::java
