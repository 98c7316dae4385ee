#include "java/native/Natives.h"

using namespace korvane::java;

namespace {

jclass held(JNIEnv* env, const char* name) {
    jclass found = env->FindClass(name);
    if (!found) throw Pending();
    auto* const reference = static_cast<jclass>(env->NewGlobalRef(found));
    if (!reference) throw Pending();
    return reference;
}

/// The methods of `korvane.Native` that are called from here.
void findMethods(JNIEnv* env, Peer& own) {
    const struct {
        jmethodID& method;
        const char* name;
        const char* signature;
    } rows[] = {
        {own.failure, "failure", "(I[B)Ljava/lang/Throwable;"},
        {own.event, "event", "(J[B)V"},
        {own.wake, "wake", "(J)V"},
        {own.value, "value", "(JI)[[B"},
        {own.send, "send", "(JJ[B[B[[B[B[BD)V"},
        {own.cancel, "cancel", "(JJ)V"},
        {own.load, "load", "(J[B)[B"},
        {own.save, "save", "(J[B[B)Z"},
        {own.log, "log", "(J[B[B[BI)V"},
    };
    for (const auto& row : rows) {
        row.method = env->GetStaticMethodID(own.self, row.name, row.signature);
        if (!row.method) throw Pending();
    }
}

} // namespace

extern "C" JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void* /*reserved*/) {
    void* known = nullptr;
    if (vm->GetEnv(&known, JNI_VERSION_10) != JNI_OK) return JNI_ERR;
    auto* const env = static_cast<JNIEnv*>(known);
    try {
        Peer& own = peer();
        own.vm = vm;
        own.self = held(env, "korvane/Native");
        own.bytes = held(env, "[B");
        findMethods(env, own);
        registerNatives(env, own.self);
    } catch (const Pending&) {
        return JNI_ERR;
    }
    return JNI_VERSION_10;
}
