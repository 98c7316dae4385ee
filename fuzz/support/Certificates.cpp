#include "fuzz/support/Certificates.h"

#include "Crypt/DataExtensions.h"

namespace korvane::fuzzing {

namespace {

constexpr const char* kRoot =
    "MIIBUzCB+qADAgECAhQy7ILwhHDMn8RCRbn8Wfbs+UIwWDAKBggqhkjOPQQDAjAPMQ0wCwYDVQQDDARSb290MCAXDTI2MTEy"
    "NDIxNTgwN1oYDzIxMjYxMDMxMjE1ODA3WjAPMQ0wCwYDVQQDDARSb290MFkwEwYHKoZIzj0CAQYIKoZIzj0DAQcDQgAEQKm9"
    "5zD1BEsiV0R8VxtqVeQCO6nGl3eh3D5/KQLBBe8f/xQQOofcL1FdALSSGeiR6gunrTCcnAPB+vmTHwU1JaMyMDAwDwYDVR0T"
    "AQH/BAUwAwEB/zAdBgNVHQ4EFgQU6IWNIZhGD6Q5PvB50e858EA3qT0wCgYIKoZIzj0EAwIDSAAwRQIgV5lxNxuZtJmsv2Po"
    "ksATgpGDm/SD7RkGazRCY6/G/HACIQCWDy4QxRl9iS+tfES8y6vogRv3rR8DadIIX9rNnPOAgA==";

constexpr const char* kRsaLeaf =
    "MIIBpTCCAUugAwIBAgIBAjAKBggqhkjOPQQDAjAPMQ0wCwYDVQQDDARSb290MCAXDTI2MTEyNDIxNTgwN1oYDzIxMjYxMDMx"
    "MjE1ODA3WjAOMQwwCgYDVQQDDANyc2EwgZ8wDQYJKoZIhvcNAQEBBQADgY0AMIGJAoGBALFJpmml+6dUuwYDsQpMPePymszH"
    "iIU9eXltxYllP3P1+9ogt6DSdsY8yuPa7sVC6TACWiKAgPnC2pJSC9DYW5Mo4yiMhDMBppCyyd6/+RcC2KNxNA8sTjX1F0uR"
    "4W38qk1vl3Dfh/8XkVUl9YihtspbeK3iW3uf9UbXWC8LeA5tAgMBAAGjUDBOMAwGA1UdEwEB/wQCMAAwHQYDVR0OBBYEFMsG"
    "4WkFGo+TMAX8XMDy2cIYMTTwMB8GA1UdIwQYMBaAFOiFjSGYRg+kOT7wedHvOfBAN6k9MAoGCCqGSM49BAMCA0gAMEUCIQDd"
    "zIEivj83VbvfW14Yu/o7lZjBIb+TMPjgIeGKXzmidgIgVdNEj/Qopc0U3olia0Z8WKgsL8B50Rf1wM/JVdxBZOc=";

constexpr const char* kEcLeaf =
    "MIIBXTCCAQOgAwIBAgIBAjAKBggqhkjOPQQDAjAPMQ0wCwYDVQQDDARSb290MCAXDTI2MTEyNDIxNTgwN1oYDzIxMjYxMDMx"
    "MjE1ODA3WjANMQswCQYDVQQDDAJlYzBZMBMGByqGSM49AgEGCCqGSM49AwEHA0IABMHjScth7HAkjOgBA0w4NOG4jr4RYcsl"
    "rzh0H3hfz8TEe8lnCO+AlStT+NJVX+crhB7QRYhiix03illJOVAOycmjUDBOMAwGA1UdEwEB/wQCMAAwHQYDVR0OBBYEFEcM"
    "LY/nm5wDybN5TonqXNgP2e2YMB8GA1UdIwQYMBaAFOiFjSGYRg+kOT7wedHvOfBAN6k9MAoGCCqGSM49BAMCA0gAMEUCIQDE"
    "kSQ9IfOLKIn7OQJ5xmB3HmZbYjR/n/NtjzjdsPr6ewIgZ1rw6cf5l6pF8S9cq6oHF0sZdjKCtCzRzeYfi0IGiUU=";

} // namespace

const Certificates& certificates() {
    static const Certificates made{*fromBase64(kRoot), *fromBase64(kRsaLeaf), *fromBase64(kEcLeaf), kRsaLeaf,
                                   kEcLeaf};
    return made;
}

} // namespace korvane::fuzzing
