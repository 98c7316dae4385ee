#pragma once

namespace korvane {

/// Lets no function of the process, and so no file, learn the secrets of the connections that are made with a
/// context from now on.
/// @param context  an `SSL_CTX` of OpenSSL's, which a client of its own hands out.
void withholdSecrets(void* context);

} // namespace korvane
