#pragma once

#include "Platform/Failure.h"

#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/param_build.h>
#include <openssl/x509.h>

#include <memory>
#include <string>

namespace korvane::openssl {

/// Owning pointers to OpenSSL's objects. Numbers are cleared when they are freed: they may be private.
template <auto Free>
struct Deleter {
    template <class T>
    void operator()(T* object) const noexcept {
        Free(object);
    }
};

template <class T, auto Free>
using Handle = std::unique_ptr<T, Deleter<Free>>;

using Bio = Handle<BIO, BIO_free>;
using Number = Handle<BIGNUM, BN_clear_free>;
using Cipher = Handle<EVP_CIPHER, EVP_CIPHER_free>;
using CipherContext = Handle<EVP_CIPHER_CTX, EVP_CIPHER_CTX_free>;
using Digest = Handle<EVP_MD, EVP_MD_free>;
using DigestContext = Handle<EVP_MD_CTX, EVP_MD_CTX_free>;
using Key = Handle<EVP_PKEY, EVP_PKEY_free>;
using KeyContext = Handle<EVP_PKEY_CTX, EVP_PKEY_CTX_free>;
using Parameters = Handle<OSSL_PARAM, OSSL_PARAM_free>;
using ParameterBuilder = Handle<OSSL_PARAM_BLD, OSSL_PARAM_BLD_free>;
using Certificate = Handle<X509, X509_free>;

/// An algorithm that OpenSSL's default provider always has; its absence means a broken installation.
template <class HandleType>
HandleType required(HandleType handle, const char* name) {
    if (!handle) fatalError(std::string("OpenSSL does not provide ") + name + ".");
    return handle;
}

/// Drops the errors that the enclosed calls leave in the thread's queue: the application may use OpenSSL too.
class ErrorMark {
public:
    ErrorMark() : isAbove_(ERR_set_mark() == 1) {}
    ErrorMark(const ErrorMark&) = delete;
    ErrorMark& operator=(const ErrorMark&) = delete;
    ~ErrorMark() {
        if (isAbove_ || !isClean_) ERR_pop_to_mark();
    }

    /// The calls have done what they should, and so left no error: where none stood in the queue before, it
    /// need not be looked at again, which is dear beside a short message.
    void succeed() noexcept { isClean_ = true; }

    /// Whether errors stood in the queue before.
    [[nodiscard]] bool isAboveOthers() const noexcept { return isAbove_; }

private:
    bool isAbove_;
    bool isClean_ = false;
};

/// The same, where they are told from those that stood there before.
class ErrorScope {
public:
    ErrorScope() {
        // An entry costs allocations; where there is nothing to be told apart, none is needed.
        if (mark_.isAboveOthers()) ERR_raise(ERR_LIB_USER, kBeginning);
    }

    /// As for the mark.
    void succeed() noexcept { mark_.succeed(); }

    /// The newest error since the innermost scope began as text, or an empty text.
    [[nodiscard]] static std::string reason() {
        const unsigned long error = ERR_peek_last_error();
        const bool isOurs = ERR_GET_LIB(error) == ERR_LIB_USER && ERR_GET_REASON(error) == kBeginning;
        const char* text = isOurs ? nullptr : ERR_reason_error_string(error);
        return text ? text : "";
    }

private:
    /// An entry of the queue that is no error.
    static constexpr int kBeginning = 1;

    ErrorMark mark_;
};

} // namespace korvane::openssl
