#pragma once

#include <jni.h>

#include <korvane/korvane_c.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace korvane::java {

// What both directions need: the machine's own things, seen from here.

/// A Java exception is pending on this thread: what was to be done is given up, and nothing else is told.
struct Pending {};

/// The class that declares the functions and hears what comes back, and how it is called. Filled in once, when
/// the library is loaded; the class is held, so that this library stays as well.
struct Peer {
    JavaVM* vm = nullptr;
    jclass self = nullptr;
    jclass bytes = nullptr; ///< byte[]
    jmethodID failure = nullptr;
    jmethodID event = nullptr;
    jmethodID wake = nullptr;
    jmethodID value = nullptr;
    jmethodID send = nullptr;
    jmethodID cancel = nullptr;
    jmethodID load = nullptr;
    jmethodID save = nullptr;
    jmethodID log = nullptr;
};
[[nodiscard]] Peer& peer();

/// The calling thread's environment. A thread of the library is attached as a daemon, until it ends.
/// @return null where the machine takes no thread any more.
[[nodiscard]] JNIEnv* environment() noexcept;

/// @throws Pending where an exception is.
void requireNone(JNIEnv* env);

/// A copy of a Java byte[], with a zero behind it. Overwritten when it goes.
class Bytes {
public:
    /// @param array  may be null.
    Bytes(JNIEnv* env, jbyteArray array);
    Bytes(JNIEnv* env, jobjectArray arrays, jsize index);
    Bytes(Bytes&&) noexcept = default;
    Bytes& operator=(Bytes&&) = delete;
    ~Bytes();

    /// Null for null.
    [[nodiscard]] const char* text() const noexcept { return copy_.empty() ? nullptr : copy_.data(); }
    [[nodiscard]] const std::uint8_t* data() const noexcept;
    [[nodiscard]] std::size_t size() const noexcept { return copy_.empty() ? 0 : copy_.size() - 1; }

private:
    std::vector<char> copy_;
};

/// A new byte[]; null for null.
[[nodiscard]] jbyteArray newBytes(JNIEnv* env, const void* bytes, std::size_t size);
[[nodiscard]] jbyteArray newText(JNIEnv* env, const char* text);
/// A new byte[][] of nulls.
[[nodiscard]] jobjectArray newTexts(JNIEnv* env, std::size_t count);
/// Puts a text into a byte[][].
void putText(JNIEnv* env, jobjectArray texts, std::size_t index, const char* text);

/// How the functions of an interface are found by those that the library calls back: a number that Java gave.
[[nodiscard]] inline void* contextOf(jlong number) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(number));
}
[[nodiscard]] inline jlong numberOf(const void* context) {
    return static_cast<jlong>(reinterpret_cast<std::uintptr_t>(context));
}

} // namespace korvane::java
