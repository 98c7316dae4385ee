// A payment from a terminal: it writes what the 3DS server is to be sent and what the challenge shows, and reads the
// server's answer and what the cardholder does, one JSON object a line.
#include <korvane/korvane_c.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static char line[KORVANE_LONGEST_TEXT];
static bool is_asked, has_ended;
static korvane_error error;

static void require(korvane_result result) {
    if (result == KORVANE_OK) return;
    fprintf(stderr, "payment: %s\n", error.text);
    exit(1);
}

static size_t read_file(const char* path, void* bytes, size_t room) {
    FILE* file = fopen(path, "rb");
    const size_t length = file ? fread(bytes, 1, room, file) : 0;
    if (file) fclose(file);
    return length;
}

static void hear(void* context, const char* event) {
    (void)context;
    has_ended = event == NULL;
    if (event) puts(event);
    is_asked = event && strstr(event, "{\"event\":\"screen\"") == event;
    fflush(stdout);
}

int main(int argc, char** argv) {
    static unsigned char certificate[65536], root[65536];
    static char authorities[65536];
    if (argc != 5) {
        fputs("payment SERVER CERTIFICATE.der ROOT.der AUTHORITIES.pem\n", stderr);
        return 2;
    }
    const korvane_directory_server server = {argv[1],     KORVANE_EC,
                                             certificate, read_file(argv[2], certificate, 65536),
                                             root,        read_file(argv[3], root, 65536)};
    const korvane_configuration configuration = {
        .size = sizeof configuration, .servers = &server, .server_count = 1, .locale = "en-GB"};
    read_file(argv[4], authorities, sizeof authorities - 1);

    korvane_platform* platform;
    korvane_service* service;
    korvane_transaction* transaction;
    korvane_cardholder* cardholder;
    char* request;
    require(korvane_platform_create(NULL, &platform, &error));
    require(korvane_platform_trust(platform, authorities, &error));
    require(korvane_service_create(platform, &configuration, &service, &error));
    require(korvane_transaction_create(service, argv[1], "2.2.0", &transaction, &error));
    require(korvane_transaction_authentication_request_json(transaction, &request, &error));
    hear(NULL, request);
    korvane_free(request);

    const char* values = fgets(line, sizeof line, stdin);
    require(korvane_cardholder_create(transaction, values, 5, hear, NULL, &cardholder, &error));
    while (!has_ended) {
        while (is_asked) {
            const char* action = fgets(line, sizeof line, stdin) ? line : "{\"action\":\"cancel\"}";
            is_asked = korvane_cardholder_act(cardholder, action, &error) != KORVANE_OK;
            if (is_asked) fprintf(stderr, "payment: %s\n", error.text);
        }
        require(korvane_platform_run(platform, -1, NULL, &error));
    }
    require(korvane_release(cardholder, &error));
    require(korvane_release(transaction, &error));
    require(korvane_release(service, &error));
    require(korvane_release(platform, &error));
    return 0;
}
