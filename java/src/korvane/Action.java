package korvane;

import java.util.List;
import java.util.Map;
import java.util.Objects;

/**
 * What the cardholder does on a screen. Each is for some screens, and refused by others ({@link
 * KorvaneException.Refusal}). What is typed can be a {@link java.nio.CharBuffer} around an array, which the
 * application wipes once {@link Challenge#act} has returned; nothing of it is kept here, and none is in a
 * text that {@code toString} makes.
 */
public sealed interface Action {
    /**
     * What the library is told.
     *
     * @return the members of a JSON object: texts, lists of texts and booleans
     */
    Map<String, Object> members();

    /**
     * Types, behind what has been typed; nothing is sent. For a {@link Screen.Code}.
     *
     * @param data what is typed
     */
    record Type(CharSequence data) implements Action {
        @Override
        public Map<String, Object> members() {
            return JsonObject.members("action", "type", "data", Objects.requireNonNull(data, "data"));
        }

        @Override
        public String toString() {
            return "Type";
        }
    }

    /**
     * Types, ticks and sends. For a {@link Screen.Code}.
     *
     * @param data what is typed before; null for nothing
     * @param whitelisting whether the box is to be ticked; null leaves it, and is needed where there is none
     */
    record Submit(CharSequence data, Boolean whitelisting) implements Action {
        /**
         * Types and sends.
         *
         * @param data what is typed before; null for nothing
         */
        public Submit(CharSequence data) {
            this(data, null);
        }

        @Override
        public Map<String, Object> members() {
            return JsonObject.members("action", "submit", "data", data, "whitelisting", whitelisting);
        }

        @Override
        public String toString() {
            return "Submit";
        }
    }

    /**
     * Chooses, ticks and goes on. For a {@link Screen.Choice}.
     *
     * @param keys the options to be chosen, and no others
     * @param whitelisting whether the box is to be ticked; null leaves it, and is needed where there is none
     */
    record Select(List<String> keys, Boolean whitelisting) implements Action {
        /**
         * Chooses and goes on.
         *
         * @param keys the options to be chosen, and no others
         */
        public Select(String... keys) {
            this(List.of(keys), null);
        }

        @Override
        public Map<String, Object> members() {
            return JsonObject.members(
                    "action", "select", "keys", List.copyOf(keys), "whitelisting", whitelisting);
        }
    }

    /** Asks for another code. For a {@link Screen.Code} that has the button. */
    record Resend() implements Action {
        @Override
        public Map<String, Object> members() {
            return JsonObject.members("action", "resend");
        }
    }

    /**
     * Ticks and goes on after an approval elsewhere. For a {@link Screen.OutOfBand}.
     *
     * @param whitelisting whether the box is to be ticked; null leaves it, and is needed where there is none
     */
    record Continue(Boolean whitelisting) implements Action {
        /** Goes on. */
        public Continue() {
            this(null);
        }

        @Override
        public Map<String, Object> members() {
            return JsonObject.members("action", "continue", "whitelisting", whitelisting);
        }
    }

    /** Ends the challenge. */
    record Cancel() implements Action {
        @Override
        public Map<String, Object> members() {
            return JsonObject.members("action", "cancel");
        }
    }

    /**
     * Turns the device.
     *
     * @param to how it is held then, as far as it is across or not
     */
    record Rotate(Orientation to) implements Action {
        @Override
        public Map<String, Object> members() {
            return JsonObject.members("action", "rotate", "to", to.isLandscape() ? "LANDSCAPE" : "PORTRAIT");
        }
    }

    /** Goes to another application and comes back. */
    record LeaveAndReturn() implements Action {
        @Override
        public Map<String, Object> members() {
            return JsonObject.members("action", "leaveAndReturn");
        }
    }

    /**
     * Sends a form, or follows a link. For a {@link Screen.Page}.
     *
     * @param url where it leads
     * @param method "GET" or "POST"
     * @param body what is sent; null for nothing
     */
    record Navigate(String url, String method, CharSequence body) implements Action {
        /**
         * Follows a link, or sends a form in its URL.
         *
         * @param url where it leads
         */
        public Navigate(String url) {
            this(url, "GET", null);
        }

        @Override
        public Map<String, Object> members() {
            Objects.requireNonNull(url, "url");
            Objects.requireNonNull(method, "method");
            return JsonObject.members("action", "navigate", "url", url, "method", method, "body", body);
        }

        @Override
        public String toString() {
            return "Navigate";
        }
    }
}
