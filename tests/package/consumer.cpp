#include "Crypt/JWE.h"
#include "Crypt/SecureRandom.h"

using namespace korvane;

int main() {
    const SecretBytes key = randomBytes(32);
    const auto dir = KeyManagementAlgorithm::direct;
    const auto enc = ContentEncryptionAlgorithm::A128CBCHS256;
    const JWE sealed(JWEHeader(dir, enc), Payload(toBytes("paid")), *Encrypter::make(dir, enc, key));
    return asText(JWE(sealed.compactSerializedString()).decrypt(key).data()) == "paid" ? 0 : 1;
}
