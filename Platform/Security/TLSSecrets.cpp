#include "Platform/Security/TLSSecrets.h"

#include <openssl/ssl.h>

namespace korvane {

void withholdSecrets(void* context) {
    SSL_CTX_set_keylog_callback(static_cast<SSL_CTX*>(context), nullptr);
}

} // namespace korvane
