#pragma once

#include "Platform/Bytes.h"

namespace korvane::bench::bare {

/// A leaf, the authority that issued it, and the root that issued that one, each as DER.
struct ChainBytes {
    Bytes leaf;
    Bytes intermediate;
    Bytes root;
};

/// Decodes the three certificates and checks the first by the others (RFC 5280 section 6), all in OpenSSL's
/// own calls, and takes the leaf's public key. A chain that does not hold ends the process.
void verifyChain(const ChainBytes& chain);

} // namespace korvane::bench::bare
