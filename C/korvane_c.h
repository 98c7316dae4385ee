#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

/// The library for C (C99), and for languages that call C.
///
/// A program makes one platform, which is its machine as the library sees it, a service on that, and from the
/// service transactions. Everything is named by handles. A function that makes a handle gives its one
/// reference to the caller; `korvane_retain` adds one and `korvane_release` takes one away, and with the last
/// the handle names nothing any more. A handle that names nothing, or something of another type, is refused
/// everywhere, a second release of it too: it is no address, and none is used twice.
///
/// Each function says on which thread it may be called: the main one, which made the platform, or any. On any
/// other it is refused. Callbacks come on the main thread unless they say otherwise, while `korvane_platform_run`
/// runs there; they may call everything but `korvane_platform_run` and the platform's last release.
///
/// Functions return `KORVANE_OK` or what went wrong, and leave what they would have given untouched then. Their
/// last parameter receives the same with a sentence for people; it may be null. Nothing is thrown.
///
/// Texts are UTF-8 and end with a zero. Those that are handed in are copied, and have at most
/// `KORVANE_LONGEST_TEXT` bytes. Those that are handed out as `const` belong to the library, and last as long
/// as the function says; others are freed by `korvane_free`. Structures begin with their own size, which the
/// caller fills in, so that later ones can be longer; what is left out is zero.

#ifdef __cplusplus
#define KORVANE_C [[gnu::visibility("default")]]
extern "C" {
#else
#define KORVANE_C
#endif

enum { KORVANE_LONGEST_TEXT = 1048576, KORVANE_LONGEST_ERROR = 1024 };

/// What a call came to. The numbers stay.
typedef enum korvane_result {
    KORVANE_OK = 0,
    KORVANE_BAD_ARGUMENT = 1, ///< null, no UTF-8, an unknown number, or a structure of another size
    KORVANE_BAD_HANDLE = 2,   ///< the handle names nothing, or something of another type
    KORVANE_BAD_THREAD = 3,   ///< not on the main thread, or two threads at once where one is allowed
    KORVANE_BAD_STATE = 4,    ///< too early, too late, or once too often
    KORVANE_TOO_LARGE = 5,    ///< longer than the limit
    KORVANE_NO_MEMORY = 6,
    KORVANE_INTERNAL = 7,     ///< anything else
    KORVANE_NO_RESOURCES = 8, ///< the folder of the screens' resources is not where it should be
    KORVANE_REFUSED = 9,      ///< what is on the screen does not take the action

    // What the library itself raises, by the names of its exceptions.
    KORVANE_INVALID_INPUT = 20,
    KORVANE_INVALID_ACS_RESPONSE = 21,
    KORVANE_HTTP_REQUEST = 22,
    KORVANE_ALREADY_INITIALIZED = 23,
    KORVANE_NOT_INITIALIZED = 24,
    KORVANE_RUNTIME = 25
} korvane_result;

/// What went wrong. On success the text is empty.
typedef struct korvane_error {
    korvane_result result;
    char text[KORVANE_LONGEST_ERROR];
} korvane_error;

typedef struct korvane_platform korvane_platform;
typedef struct korvane_service korvane_service;
typedef struct korvane_transaction korvane_transaction;
typedef struct korvane_cardholder korvane_cardholder;

/// Adds a reference. Any thread.
KORVANE_C korvane_result korvane_retain(const void* handle, korvane_error* error);

/// Takes a reference away; null is none and nothing happens. Any thread, but for the platform's last one: that
/// is the end of the platform, on the main thread, outside of callbacks, and when no other handle is left.
/// Then all exchanges end, work that runs is waited for, what is still to run is dropped, and no callback
/// comes any more once this has returned.
KORVANE_C korvane_result korvane_release(const void* handle, korvane_error* error);

/// Frees a text of the library; null is none. Any thread.
KORVANE_C void korvane_free(void* text);

// The host: what a program hands in of its machine.

/// What a host can tell, each by one text unless it says otherwise. A flag is "yes" or "no".
typedef enum korvane_value {
    KORVANE_SYSTEM_NAME = 0,
    KORVANE_SYSTEM_VERSION = 1,
    KORVANE_DEVICE_NAME = 2,
    KORVANE_VENDOR_IDENTIFIER = 3, ///< a UUID
    KORVANE_IDIOM = 4,             ///< "phone", "pad", "tv", "carPlay" or "mac"
    KORVANE_MACHINE = 5,
    KORVANE_LOCALE = 6,
    KORVANE_AVAILABLE_LOCALES = 7,   ///< any number of texts
    KORVANE_PREFERRED_LANGUAGES = 8, ///< any number of texts, the most preferred first
    KORVANE_TIME_ZONE = 9,
    /// "notDetermined", "restricted", "denied", "authorizedAlways" or "authorizedWhenInUse"
    KORVANE_LOCATION_PERMISSION = 10,
    KORVANE_LOCATION = 11, ///< two decimal numbers: degrees north and east
    KORVANE_ADVERTISING_IDENTIFIER = 12,
    KORVANE_FONT_FAMILIES = 13, ///< any number of texts
    KORVANE_IS_JAILBROKEN = 14,
    KORVANE_IS_EMULATOR = 15,
    KORVANE_IS_DEBUGGER_ATTACHED = 16,
    KORVANE_IS_SYSTEM_SUPPORTED = 17,
    KORVANE_SUPPORTED_ORIENTATIONS = 18, ///< any number of texts, such as "UIInterfaceOrientationPortrait"
    KORVANE_RECEIPT_URL = 19,
    KORVANE_RESOURCES = 20 ///< the folder that Korvane.framework lies in
} korvane_value;

/// Where a callback puts the texts that it answers with. It is there until the callback returns.
typedef struct korvane_answer korvane_answer;

/// Adds a text to an answer, at most 10,000 times. On the callback's thread.
KORVANE_C korvane_result korvane_answer_add(korvane_answer* answer, const char* text, korvane_error* error);

typedef struct korvane_http_header {
    const char* name;
    const char* value;
} korvane_http_header;

/// One exchange that the host is to carry: as it stands, once, and without following redirects. It keeps
/// nothing of it: no cookies, no credentials, no cache. TLS certificates are checked, always. All is there
/// until the callback returns.
typedef struct korvane_http_request {
    /// Names the exchange. Not given twice.
    uint64_t number;
    const char* url;
    const char* method;
    const korvane_http_header* headers;
    size_t header_count;
    /// Null where the request has none.
    const uint8_t* body;
    size_t body_length;
    /// To be trusted beside the system's authorities, in PEM; mostly empty.
    const char* authorities;
    /// The longest time to wait for a connection, and for the next bytes, in seconds.
    double patience;
} korvane_http_request;

/// The program's functions. A null one leaves the operating system's own service in place. They are called
/// on any thread, several at once, and may call nothing but what they name.
typedef struct korvane_host {
    size_t size;
    /// Handed to each function as it is.
    void* context;

    /// `korvane_platform_run(platform, 0, ...)` is to be called on the main thread, once for each call and
    /// soon. Null where the main thread waits in `korvane_platform_run` itself.
    void (*wake_main)(void* context);

    /// Without an answer the system's value counts. May call `korvane_answer_add`.
    void (*value)(void* context, korvane_value value, korvane_answer* answer);

    /// Begins an exchange and returns at once; `korvane_platform_complete` is told what came of it, which
    /// this may call. Heads of more than 64 KiB and bodies of more than 16 MiB are errors, and are not read
    /// to their end.
    void (*send)(void* context, const korvane_http_request* request);

    /// Nobody waits for this exchange any more. Comes before `send` has returned, if it must.
    void (*cancel)(void* context, uint64_t number);

    /// The application's small texts that survive restarts; both or none. A text that is kept is put into the
    /// answer by `korvane_answer_add`.
    void (*load)(void* context, const char* key, korvane_answer* answer);
    /// Returns whether the text is kept.
    bool (*save)(void* context, const char* key, const char* text);

    /// The library's log lines. Where it is null none are made.
    void (*log)(void* context, const char* message, const char* file, const char* function, unsigned line);
} korvane_host;

// The platform: one at a time.

/// The thread that calls this is the main one. `host` may be null: all is the operating system's then.
KORVANE_C korvane_result korvane_platform_create(const korvane_host* host, korvane_platform** platform,
                                                 korvane_error* error);

/// Runs the next piece of the main queue's work, waiting for it up to a number of milliseconds; a negative
/// number waits for ever. `did_run` receives whether there was one; it may be null. Main thread, outside of
/// callbacks.
KORVANE_C korvane_result korvane_platform_run(korvane_platform* platform, int64_t milliseconds, bool* did_run,
                                              korvane_error* error);

/// Trusts further authorities for HTTPS, as a test bed needs: certificates in PEM, one after the other. Before
/// the first service. Main thread.
KORVANE_C korvane_result korvane_platform_trust(korvane_platform* platform, const char* pem,
                                                korvane_error* error);

typedef enum korvane_orientation {
    KORVANE_PORTRAIT = 1,
    KORVANE_PORTRAIT_UPSIDE_DOWN = 2,
    KORVANE_LANDSCAPE_LEFT = 3,
    KORVANE_LANDSCAPE_RIGHT = 4
} korvane_orientation;

/// The screen has that size from now on, in points of at most 100,000, as the device is held now: a
/// `korvane_orientation`. Main thread.
KORVANE_C korvane_result korvane_platform_set_screen(korvane_platform* platform, int orientation,
                                                     double width, double height, korvane_error* error);

/// The screen is recorded or mirrored from now on, or no more. Main thread.
KORVANE_C korvane_result korvane_platform_set_captured(korvane_platform* platform, bool is_captured,
                                                       korvane_error* error);

/// The user leaves the application or comes back. Main thread.
KORVANE_C korvane_result korvane_platform_set_active(korvane_platform* platform, bool is_active,
                                                     korvane_error* error);

/// What came of an exchange.
typedef struct korvane_http_answer {
    size_t size;
    int status;
    /// Where a redirecting answer leads to, as a whole URL; null where it leads nowhere.
    const char* location;
    const uint8_t* body;
    size_t body_length;
    /// Why there is no answer; null where there is one.
    const char* error;
} korvane_http_answer;

/// `KORVANE_BAD_STATE` where nobody waits for that exchange any more, which may happen at any time. Any thread.
KORVANE_C korvane_result korvane_platform_complete(korvane_platform* platform, uint64_t number,
                                                   const korvane_http_answer* answer, korvane_error* error);

// The service.

typedef enum korvane_algorithm { KORVANE_RSA = 0, KORVANE_EC = 1 } korvane_algorithm;

/// A directory server and its certificates, in DER, of at most 64 KiB.
typedef struct korvane_directory_server {
    const char* identifier;
    /// The kind of key in `certificate`: a `korvane_algorithm`.
    int algorithm;
    /// What device data is sealed for.
    const uint8_t* certificate;
    size_t certificate_length;
    /// What the ACS's chain must end in.
    const uint8_t* root;
    size_t root_length;
} korvane_directory_server;

typedef struct korvane_configuration {
    size_t size;
    /// At most 1,000.
    const korvane_directory_server* servers;
    size_t server_count;
    /// For the device data, as in "fr-CA"; null for the machine's.
    const char* locale;
    /// The look of the screens and the places of their controls ("constraints"), as JSON by
    /// `theme.schema.json`; null for the library's own. What is wrong with it is told by line, as
    /// `KORVANE_BAD_ARGUMENT`. Folders of images in it are told from the application's.
    const char* theme;
} korvane_configuration;

/// Collects the device data, and is ready for transactions. Certificates are looked at when a transaction
/// needs them. Main thread.
KORVANE_C korvane_result korvane_service_create(korvane_platform* platform,
                                                const korvane_configuration* configuration,
                                                korvane_service** service, korvane_error* error);

/// The version of the library, to be freed. Any thread, one at a time.
KORVANE_C korvane_result korvane_service_version(korvane_service* service, char** version,
                                                 korvane_error* error);

/// What the checks of the device's integrity found, to be freed: a JSON list of objects with the texts "id",
/// "message" and "severity" ("LOW", "MEDIUM" or "HIGH"). Any thread, one at a time.
KORVANE_C korvane_result korvane_service_warnings(korvane_service* service, char** json,
                                                  korvane_error* error);

// Transactions.

/// Seals the device data for a directory server of the configuration. The version is "2.1.0" or "2.2.0". Any
/// thread, one at a time for a service.
KORVANE_C korvane_result korvane_transaction_create(korvane_service* service, const char* directory_server,
                                                    const char* message_version,
                                                    korvane_transaction** transaction, korvane_error* error);

/// What the application sends through its 3DS server.
typedef struct korvane_authentication_request {
    const char* device_data; ///< a compact JWE
    const char* sdk_transaction_id;
    const char* sdk_app_id;
    const char* sdk_reference_number;
    const char* sdk_ephemeral_public_key; ///< a JWK as JSON
    const char* message_version;
} korvane_authentication_request;

/// The texts last as long as the transaction's handle. Any thread.
KORVANE_C korvane_result korvane_transaction_authentication_request(korvane_transaction* transaction,
                                                                    korvane_authentication_request* request,
                                                                    korvane_error* error);

/// The same as a JSON object, to be freed: "deviceData", "sdkTransId", "sdkAppID", "sdkReferenceNum",
/// "ephemeralPublic" (an object) and "messageVersion". Any thread.
KORVANE_C korvane_result korvane_transaction_authentication_request_json(korvane_transaction* transaction,
                                                                         char** json, korvane_error* error);

/// The values of the authentication response; null where the response has none.
typedef struct korvane_challenge_parameters {
    size_t size;
    const char* three_ds_server_transaction_id;
    const char* acs_transaction_id;
    const char* acs_reference_number;
    const char* acs_signed_content;
    const char* three_ds_requestor_app_url;
} korvane_challenge_parameters;

typedef enum korvane_ending_kind {
    KORVANE_COMPLETED = 0,
    KORVANE_CANCELLED = 1,
    KORVANE_TIMED_OUT = 2,
    KORVANE_PROTOCOL_ERROR = 3,
    KORVANE_RUNTIME_ERROR = 4
} korvane_ending_kind;

/// How a challenge ended. Texts that do not belong to the kind are null; all last until the callback returns.
typedef struct korvane_ending {
    korvane_ending_kind kind;
    const char* sdk_transaction_id; ///< completed, protocol error
    const char* transaction_status; ///< completed: one letter, such as "Y" or "N"
    const char* error_code;         ///< both errors
    const char* error_text;         ///< both errors
    const char* error_details;      ///< protocol error
    const char* acs_transaction_id; ///< protocol error
} korvane_ending;

typedef void (*korvane_ending_function)(void* context, const korvane_ending* ending);

/// Starts the challenge that the ACS demands and returns at once, for a program whose platform has a window
/// that is drawn: its screens stand there, and without one they stand nowhere until the time is over. Others
/// take `korvane_cardholder_create`. `ending` hears the end, once, on the main thread, unless the platform
/// ends before. Once for a transaction, with 0 to 1,000,000 minutes. The transaction may be released meanwhile.
/// Any thread.
KORVANE_C korvane_result korvane_transaction_challenge(korvane_transaction* transaction,
                                                       const korvane_challenge_parameters* parameters,
                                                       int64_t minutes, korvane_ending_function ending,
                                                       void* context, korvane_error* error);

// A cardholder without a screen: what a program does that draws nothing, or draws by itself. There is no spinner to
// start and to stop: an event comes once the library's has gone, so that a program that draws shows one of its own
// from an action to the next event.

/// An event as a JSON object, whose "event" is "screen", an ending ("completed", "cancelled", "timedout",
/// "protocolError", "runtimeError"), or "error" where the screens have gone without an ending. Null once
/// nothing more comes: the screens have gone, and the ACS has been told what it is to be told. The text lasts
/// until the callback returns.
typedef void (*korvane_event_function)(void* context, const char* json);

/// Starts the transaction's challenge, as `korvane_transaction_challenge` does, with its screens in a window
/// that nobody sees. The values are a JSON object of texts, each of which may be absent:
/// "threeDSServerTransID", "acsTransID", "acsRefNumber", "acsSignedContent", "threeDSRequestorAppURL". One at
/// a time, until the null event. A handle that is released earlier takes the actions away and nothing else: the
/// challenge goes on, and is told to its end. Main thread.
KORVANE_C korvane_result korvane_cardholder_create(korvane_transaction* transaction, const char* values_json,
                                                   int64_t minutes, korvane_event_function event,
                                                   void* context, korvane_cardholder** cardholder,
                                                   korvane_error* error);

/// Performs an action on the controls of the screen that was told of last, as a finger would. A JSON object:
/// "action" is "type" (with "data"), "submit" ("data", "whitelisting"), "select" ("keys", "whitelisting"),
/// "resend", "continue" ("whitelisting"), "cancel", "rotate" ("to": "PORTRAIT" or "LANDSCAPE"),
/// "leaveAndReturn" or "navigate" ("url", "method", "body"). The next event follows. `KORVANE_BAD_STATE`
/// while no screen waits, `KORVANE_REFUSED` where this one does not take the action: nothing has been done
/// then. Main thread, in the event callback too.
KORVANE_C korvane_result korvane_cardholder_act(korvane_cardholder* cardholder, const char* action_json,
                                                korvane_error* error);

#ifdef __cplusplus
}
#endif
