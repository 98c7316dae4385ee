package korvane;

import java.time.Duration;
import java.util.List;
import java.util.Optional;
import java.util.concurrent.CompletableFuture;

/**
 * What a machine gives the library. All of it can be left out, and is the operating system's own then. The
 * methods are called on any thread, several at once, and may not call the library. What one throws goes to
 * its thread's handler of uncaught exceptions, and counts as no answer.
 */
public interface Host {
    /** What a host can tell: by one text each, unless it says otherwise. A flag is "yes" or "no". */
    enum Value {
        /** The name of the operating system. */
        SYSTEM_NAME,
        /** Its version. */
        SYSTEM_VERSION,
        /** The device's name. */
        DEVICE_NAME,
        /** A UUID. */
        VENDOR_IDENTIFIER,
        /** "phone", "pad", "tv", "carPlay" or "mac". */
        IDIOM,
        /** The device's model. */
        MACHINE,
        /** The locale, as in "fr-CA". */
        LOCALE,
        /** Any number of locales. */
        AVAILABLE_LOCALES,
        /** Any number of languages, the most preferred first. */
        PREFERRED_LANGUAGES,
        /** The time zone, as in "CET". */
        TIME_ZONE,
        /** "notDetermined", "restricted", "denied", "authorizedAlways" or "authorizedWhenInUse". */
        LOCATION_PERMISSION,
        /** Two decimal numbers: degrees north and east. */
        LOCATION,
        /** The identifier for advertising, a UUID. */
        ADVERTISING_IDENTIFIER,
        /** Any number of families of fonts. */
        FONT_FAMILIES,
        /** Whether the device's owner has broken its locks: a flag. */
        IS_JAILBROKEN,
        /** Whether the device is an emulated one: a flag. */
        IS_EMULATOR,
        /** Whether a debugger is attached: a flag. */
        IS_DEBUGGER_ATTACHED,
        /** Whether the operating system is one that the library supports: a flag. */
        IS_SYSTEM_SUPPORTED,
        /** Any number of texts, such as "UIInterfaceOrientationPortrait". */
        SUPPORTED_ORIENTATIONS,
        /** The URL of the receipt of the application's purchase. */
        RECEIPT_URL,
        /** The folder that Korvane.framework lies in; found by itself beside an installed library. */
        RESOURCES
    }

    /**
     * Tells a value.
     *
     * @param value what is asked for
     * @return the texts; none for the system's value
     */
    default List<String> value(Value value) {
        return List.of();
    }

    /**
     * Carries what goes to the bank. Asked for once.
     *
     * @return the network; null for the library's own
     */
    default Network network() {
        return null;
    }

    /**
     * Keeps small texts. Asked for once.
     *
     * @return the store; null for the library's own
     */
    default Store store() {
        return null;
    }

    /**
     * Takes the library's log. Asked for once.
     *
     * @return the log; null for none
     */
    default Log log() {
        return null;
    }

    /** A network. */
    @FunctionalInterface
    interface Network {
        /**
         * Begins an exchange and returns at once. It is carried as it stands, once, and without following
         * redirects; nothing is kept of it: no cookies, no credentials, no cache. TLS certificates are
         * checked, always. Heads of more than 64 KiB and bodies of more than 16 MiB are failures, and are not
         * read to their end.
         *
         * @param request what is sent
         * @return what comes of it. It is cancelled once nobody waits for it any more.
         */
        CompletableFuture<Response> send(Request request);
    }

    /**
     * A field of a request's head.
     *
     * @param name the name
     * @param value the value
     */
    record Header(String name, String value) {}

    /**
     * What is sent.
     *
     * @param url where to
     * @param method such as "POST"
     * @param headers the head's fields
     * @param body what is sent; null for a request without
     * @param authorities to be trusted beside the system's, in PEM; mostly empty
     * @param patience the longest time to wait for a connection, and for the next bytes
     */
    record Request(
            String url,
            String method,
            List<Header> headers,
            byte[] body,
            String authorities,
            Duration patience) {}

    /**
     * What was answered.
     *
     * @param status the status
     * @param location where a redirecting answer leads, as a whole URL; null where it leads nowhere
     * @param body what was answered, perhaps nothing
     */
    record Response(int status, String location, byte[] body) {}

    /** Small texts that survive restarts. */
    interface Store {
        /**
         * Looks a text up.
         *
         * @param key its name
         * @return the text, if one is kept
         */
        Optional<String> load(String key);

        /**
         * Keeps a text, in place of an earlier one.
         *
         * @param key its name
         * @param text the text
         * @return whether it is kept
         */
        boolean save(String key, String text);
    }

    /** A log. */
    @FunctionalInterface
    interface Log {
        /**
         * Takes a line. No secrets are in it.
         *
         * @param message the line
         * @param file the library's source
         * @param function the function in it
         * @param line the line in that
         */
        void log(String message, String file, String function, int line);
    }
}
