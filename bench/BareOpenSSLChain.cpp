#include "bench/BareOpenSSLChain.h"

#include "Platform/Failure.h"
#include "Platform/Security/OpenSSLHandles.h"

#include <openssl/x509.h>
#include <openssl/x509_vfy.h>

namespace korvane::bench::bare {

namespace {

using namespace openssl;

void freeStack(STACK_OF(X509) * stack) {
    sk_X509_free(stack);
}

using CertificateStack = Handle<STACK_OF(X509), freeStack>;
using StoreContext = Handle<X509_STORE_CTX, X509_STORE_CTX_free>;

void must(bool isDone) {
    if (!isDone) fatalError("A bare chain check failed: " + ErrorScope::reason());
}

Certificate decode(const Bytes& der) {
    const unsigned char* position = der.data();
    Certificate certificate(d2i_X509(nullptr, &position, static_cast<long>(der.size())));
    must(certificate != nullptr);
    return certificate;
}

CertificateStack stackOf(X509* certificate) {
    CertificateStack stack(sk_X509_new_null());
    must(stack && sk_X509_push(stack.get(), certificate) > 0);
    return stack;
}

} // namespace

void verifyChain(const ChainBytes& chain) {
    const Certificate leaf = decode(chain.leaf);
    const Certificate intermediate = decode(chain.intermediate);
    const Certificate root = decode(chain.root);
    const CertificateStack untrusted = stackOf(intermediate.get());
    const CertificateStack anchors = stackOf(root.get());
    const StoreContext context(X509_STORE_CTX_new());
    must(X509_STORE_CTX_init(context.get(), nullptr, leaf.get(), untrusted.get()) == 1);
    X509_STORE_CTX_set0_trusted_stack(context.get(), anchors.get());
    // As the library has it: an anchor ends the chain, and 80 bits of strength are asked for.
    X509_VERIFY_PARAM_set_flags(X509_STORE_CTX_get0_param(context.get()), X509_V_FLAG_PARTIAL_CHAIN);
    X509_VERIFY_PARAM_set_auth_level(X509_STORE_CTX_get0_param(context.get()), 1);
    must(X509_verify_cert(context.get()) == 1);
    must(X509_get0_pubkey(leaf.get()) != nullptr);
}

} // namespace korvane::bench::bare
