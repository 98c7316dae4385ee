#include "fuzz/support/Certificates.h"

#include "Crypt/DataExtensions.h"

namespace korvane::fuzzing {

namespace {

constexpr const char* kRoot =
    "MIIBUzCB+qADAgECAhR13Vl03WNQ7R+Byo7OtEpnkQcCyzAKBggqhkjOPQQDAjAPMQ0wCwYDVQQDDARSb290MCAXDTI2MTEy"
    "NTE0NTk0NVoYDzIxMjYxMTAxMTQ1OTQ1WjAPMQ0wCwYDVQQDDARSb290MFkwEwYHKoZIzj0CAQYIKoZIzj0DAQcDQgAETpC2"
    "XKzP24ECgGS5+Pih6neBcHEuFbx5qY0IkhCu1qgSTsdF4aHba+3Noy37kl2dlSM/kQV4vC3+G9bZFipt6KMyMDAwDwYDVR0T"
    "AQH/BAUwAwEB/zAdBgNVHQ4EFgQU6PR0LRq8hPxgKzJfrZvdW9Vv62cwCgYIKoZIzj0EAwIDSAAwRQIhAMA9TBbIRhstKonG"
    "568x3SeZY5xAqplT+Cay1lmzubrHAiAf/nrVulxIW7AVAikhGQWGgp4aYLLAaT+frSQeUYXmnQ==";

constexpr const char* kRsaLeaf =
    "MIICKDCCAc+gAwIBAgIBAjAKBggqhkjOPQQDAjAPMQ0wCwYDVQQDDARSb290MCAXDTI2MTEyNTE0NTk0OVoYDzIxMjYxMTAx"
    "MTQ1OTQ5WjAOMQwwCgYDVQQDDANyc2EwggEiMA0GCSqGSIb3DQEBAQUAA4IBDwAwggEKAoIBAQCjgd/Tkbb5Yz3xdWExcwdH"
    "Dv60+N+EBd2JexhpG+jF8DNOYPHaa44sUYNtq7sOcZH33yFLM5xb5MvR4raH8UBSBBK5wT2s96QpoWOB39xh8kW+qqSbdmKI"
    "WCHaE1iwoWU/Ii0U8JQWdRnYvO6RFLN8/r0vCUzIOnxNnqzwHckxK6iFcfGltrpOU7U5TBA6WktPunlfv01DkiNZLgXhhyNN"
    "bznwCgEagFHSF6qS1hAaWJRDI1jW4IOIy5y0hZ4oHIxQXkY+hLfcBWQnns3ofD7H+geSWbkqUQpcGwgCf/6z4p0d+V5wOQe+"
    "lj628Uz41PsCHuGvA0Trre0dDD5t/m2VAgMBAAGjUDBOMAwGA1UdEwEB/wQCMAAwHQYDVR0OBBYEFKRfOEJ7qs2QYq3Wwn1m"
    "++EKL2PyMB8GA1UdIwQYMBaAFOj0dC0avIT8YCsyX62b3VvVb+tnMAoGCCqGSM49BAMCA0cAMEQCH3zBn6MIrwP9Wa4FCBMF"
    "hx6r9cuAf6U4n694ZX2grbICIQD/eSXcHQLy2Lvs+et6WOnLqFM6LKAADFlbtK/zHa6Apw==";

constexpr const char* kEcLeaf =
    "MIIBXDCCAQOgAwIBAgIBAjAKBggqhkjOPQQDAjAPMQ0wCwYDVQQDDARSb290MCAXDTI2MTEyNTE0NTk1MVoYDzIxMjYxMTAx"
    "MTQ1OTUxWjANMQswCQYDVQQDDAJlYzBZMBMGByqGSM49AgEGCCqGSM49AwEHA0IABMHjScth7HAkjOgBA0w4NOG4jr4RYcsl"
    "rzh0H3hfz8TEe8lnCO+AlStT+NJVX+crhB7QRYhiix03illJOVAOycmjUDBOMAwGA1UdEwEB/wQCMAAwHQYDVR0OBBYEFEcM"
    "LY/nm5wDybN5TonqXNgP2e2YMB8GA1UdIwQYMBaAFOj0dC0avIT8YCsyX62b3VvVb+tnMAoGCCqGSM49BAMCA0cAMEQCIEAF"
    "NGx5XC9ivJTEevKKc5BIqUK/vgDCBMLR5iWAFckLAiAyJBinwm53gNaVgHa2TrXhnjhVMuld16LGu5OIeZBqAw==";

} // namespace

const Certificates& certificates() {
    static const Certificates made{*fromBase64(kRoot), *fromBase64(kRsaLeaf), *fromBase64(kEcLeaf), kRsaLeaf,
                                   kEcLeaf};
    return made;
}

} // namespace korvane::fuzzing
