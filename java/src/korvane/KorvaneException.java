package korvane;

/**
 * What a call of the library came to, when it came to nothing. Nothing has been done then. There are four
 * kinds, which an application meets in different places; each has a number that stays, and a sentence for
 * people.
 *
 * <p>What is called after its {@code close} is an {@link IllegalStateException} in place of this.
 */
public abstract sealed class KorvaneException extends RuntimeException {
    private static final long serialVersionUID = 1;

    /** What went wrong. */
    public enum Result {
        /** A value that is none: no text in Unicode, a faulty theme, an unknown action. */
        BAD_ARGUMENT(1),
        /** A handle that names nothing any more. */
        BAD_HANDLE(2),
        /** The executor of the main thread has several threads. */
        BAD_THREAD(3),
        /** Too early, too late, or once too often. */
        BAD_STATE(4),
        /** Longer than the limit. */
        TOO_LARGE(5),
        /** No memory outside of Java's. */
        NO_MEMORY(6),
        /** Anything else. */
        INTERNAL(7),
        /** The folder of the screens' resources is not where it should be. */
        NO_RESOURCES(8),
        /** What is on the screen does not take the action. */
        REFUSED(9),
        /** A value that the library does not take, such as a directory server without certificates. */
        INVALID_INPUT(20),
        /** An answer of the bank that is none. */
        INVALID_ACS_RESPONSE(21),
        /** A request that did not get through. */
        HTTP_REQUEST(22),
        /** The library is ready already. */
        ALREADY_INITIALIZED(23),
        /** The library is not ready. */
        NOT_INITIALIZED(24),
        /** What the library could not do, such as sealing the device data. */
        RUNTIME(25);

        private final int number;

        Result(int number) {
            this.number = number;
        }

        /**
         * The number of the result, which stays.
         *
         * @return 1 to 9 for what concerns a call, 20 and more for what the library itself raises
         */
        public int number() {
            return number;
        }
    }

    /** The program is wrong: it has to be changed rather than to catch this. */
    public static final class Call extends KorvaneException {
        private static final long serialVersionUID = 1;

        Call(Result result, String text) {
            super(result, text);
        }
    }

    /** The screen that stands does not take the action; another one may follow. */
    public static final class Refusal extends KorvaneException {
        private static final long serialVersionUID = 1;

        Refusal(Result result, String text) {
            super(result, text);
        }
    }

    /** The machine lacks something: memory, or the library's resources. */
    public static final class Machine extends KorvaneException {
        private static final long serialVersionUID = 1;

        Machine(Result result, String text) {
            super(result, text);
        }
    }

    /** What the library itself raises: this payment does not go through it as it is. */
    public static final class Library extends KorvaneException {
        private static final long serialVersionUID = 1;

        Library(Result result, String text) {
            super(result, text);
        }
    }

    /** What went wrong. */
    private final Result result;

    private KorvaneException(Result result, String text) {
        super(text);
        this.result = result;
    }

    /**
     * What went wrong.
     *
     * @return never null
     */
    public Result result() {
        return result;
    }

    /** The exception of a number; one that this release does not know is an internal failure. */
    static KorvaneException of(int number, String text) {
        for (Result result : Result.values())
            if (result.number == number) return of(result, text);
        return of(Result.INTERNAL, text);
    }

    static KorvaneException of(Result result, String text) {
        return switch (result) {
            case BAD_ARGUMENT, BAD_HANDLE, BAD_THREAD, BAD_STATE, TOO_LARGE -> new Call(result, text);
            case REFUSED -> new Refusal(result, text);
            case NO_MEMORY, INTERNAL, NO_RESOURCES -> new Machine(result, text);
            case INVALID_INPUT, INVALID_ACS_RESPONSE, HTTP_REQUEST, ALREADY_INITIALIZED, NOT_INITIALIZED,
                RUNTIME -> new Library(result, text);
        };
    }
}
