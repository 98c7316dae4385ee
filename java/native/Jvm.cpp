#include "java/native/Jvm.h"

#include <algorithm>
#include <cstring>

namespace korvane::java {

namespace {

/// What keeps a thread of the library known to the machine.
class Attachment {
public:
    explicit Attachment(JavaVM& vm) : vm_(vm) {
        char name[] = "korvane";
        JavaVMAttachArgs arguments{JNI_VERSION_10, name, nullptr};
        void* made = nullptr;
        if (vm_.AttachCurrentThreadAsDaemon(&made, &arguments) == JNI_OK) env_ = static_cast<JNIEnv*>(made);
    }
    Attachment(const Attachment&) = delete;
    Attachment& operator=(const Attachment&) = delete;
    ~Attachment() {
        if (env_) vm_.DetachCurrentThread();
    }

    [[nodiscard]] JNIEnv* env() const noexcept { return env_; }

private:
    JavaVM& vm_;
    JNIEnv* env_ = nullptr;
};

} // namespace

Peer& peer() {
    static Peer own;
    return own;
}

JNIEnv* environment() noexcept {
    JavaVM* const vm = peer().vm;
    if (!vm) return nullptr;
    void* known = nullptr;
    if (vm->GetEnv(&known, JNI_VERSION_10) == JNI_OK) return static_cast<JNIEnv*>(known);
    static thread_local const Attachment attachment(*vm);
    return attachment.env();
}

void requireNone(JNIEnv* env) {
    if (env->ExceptionCheck() == JNI_TRUE) throw Pending();
}

Bytes::Bytes(JNIEnv* env, jbyteArray array) {
    if (!array) return;
    const jsize length = env->GetArrayLength(array);
    copy_.resize(static_cast<std::size_t>(length) + 1);
    env->GetByteArrayRegion(array, 0, length, reinterpret_cast<jbyte*>(copy_.data()));
    requireNone(env);
}

Bytes::Bytes(JNIEnv* env, jobjectArray arrays, jsize index) {
    auto* const array = static_cast<jbyteArray>(env->GetObjectArrayElement(arrays, index));
    requireNone(env);
    Bytes own(env, array);
    env->DeleteLocalRef(array);
    copy_.swap(own.copy_);
}

/// Through a volatile pointer, so that the writes are not left out.
Bytes::~Bytes() {
    volatile char* const byte = copy_.data();
    for (std::size_t index = 0; index < copy_.size(); ++index)
        byte[index] = 0;
}

const std::uint8_t* Bytes::data() const noexcept {
    return reinterpret_cast<const std::uint8_t*>(text());
}

jbyteArray newBytes(JNIEnv* env, const void* bytes, std::size_t size) {
    if (!bytes) return nullptr;
    const auto length = static_cast<jsize>(size);
    jbyteArray made = env->NewByteArray(length);
    if (!made) throw Pending();
    env->SetByteArrayRegion(made, 0, length, static_cast<const jbyte*>(bytes));
    requireNone(env);
    return made;
}

jbyteArray newText(JNIEnv* env, const char* text) {
    return newBytes(env, text, text ? std::strlen(text) : 0);
}

jobjectArray newTexts(JNIEnv* env, std::size_t count) {
    jobjectArray made = env->NewObjectArray(static_cast<jsize>(count), peer().bytes, nullptr);
    if (!made) throw Pending();
    return made;
}

void putText(JNIEnv* env, jobjectArray texts, std::size_t index, const char* text) {
    jbyteArray made = newText(env, text);
    env->SetObjectArrayElement(texts, static_cast<jsize>(index), made);
    requireNone(env);
    env->DeleteLocalRef(made);
}

} // namespace korvane::java
