package korvane;

import java.util.Objects;

/** A payment, which has at most one challenge. Any thread. */
public final class Transaction implements AutoCloseable {
    /** Keeps the library open as long as somebody has this. */
    private final Korvane korvane;

    private final Engine engine;
    private final Handle handle;

    Transaction(Korvane korvane, Engine engine, Handle handle) {
        this.korvane = korvane;
        this.engine = engine;
        this.handle = handle;
    }

    /**
     * What the application sends through its 3DS server.
     *
     * @return the same each time
     */
    public AuthenticationRequest authenticationRequest() {
        byte[][] texts = handle.use(Native::request);
        return new AuthenticationRequest(
                Text.of(texts[0]), Text.of(texts[1]), Text.of(texts[2]), Text.of(texts[3]), Text.of(texts[4]),
                Text.of(texts[5]), Text.of(texts[6]));
    }

    /**
     * Starts the challenge that the bank demands, and returns at once. Once for a transaction, and one at a
     * time.
     *
     * @param parameters the values of the authentication response
     * @param minutes how long the cardholder may take: 0 to 1,000,000
     * @param listener is told of the screens
     * @return the challenge
     * @throws KorvaneException.Call once too often, beside another challenge, and for other minutes
     * @throws KorvaneException.Machine where the library's resources are not found
     */
    public Challenge challenge(ChallengeParameters parameters, long minutes, Challenge.Listener listener) {
        byte[] values = parameters.json();
        Challenge challenge = new Challenge(this, engine, Objects.requireNonNull(listener, "listener"));
        engine.onMain(
                platform -> {
                    challenge.begin(
                            number -> handle.use(own -> Native.challenge(own, values, minutes, number)));
                    return null;
                });
        return challenge;
    }

    /** Gives the transaction back. Its challenge goes on. A second time nothing happens. */
    @Override
    public void close() {
        handle.close();
    }
}
