package korvane;

import java.util.Arrays;
import java.util.concurrent.CompletableFuture;
import java.util.function.LongUnaryOperator;
import korvane.KorvaneException.Result;

/**
 * A challenge: the bank's questions, what the cardholder does, and how it ends. Any thread; what is told
 * comes on the main one.
 */
public final class Challenge implements AutoCloseable {
    /**
     * Is told of the screens, on the main thread. What it throws goes to that thread's handler of uncaught
     * exceptions, and the challenge goes on.
     */
    @FunctionalInterface
    public interface Listener {
        /**
         * A screen stands, new or as the last action has left it, and waits for an action, which may be taken
         * here.
         *
         * @param challenge the challenge
         * @param screen what it shows
         */
        void screen(Challenge challenge, Screen screen);
    }

    /** Keeps the library open while the challenge goes on. */
    private final Transaction transaction;

    private final Engine engine;
    private final Listener listener;
    private final CompletableFuture<Ending> ending = new CompletableFuture<>();
    private final CompletableFuture<Void> finished = new CompletableFuture<>();
    private Handle handle;
    private long number;

    Challenge(Transaction transaction, Engine engine, Listener listener) {
        this.transaction = transaction;
        this.engine = engine;
        this.listener = listener;
    }

    /**
     * Starts it by a function that takes the number of those who are told, and gives a handle. Main thread.
     */
    void begin(LongUnaryOperator start) {
        number = Native.add(this);
        try {
            handle = engine.keep(start.applyAsLong(number), "The challenge");
        } catch (Throwable failure) {
            Native.remove(number);
            throw failure;
        }
    }

    /**
     * How the challenge ends. Ends itself in a {@link KorvaneException.Machine} where the library has taken
     * its screens away without an ending, and in an {@link IllegalStateException} where it was closed before.
     *
     * @return is completed on the main thread
     */
    public CompletableFuture<Ending> ending() {
        return ending.copy();
    }

    /**
     * When nothing more comes: the ending has been told, and the bank has heard what it is to hear. Another
     * challenge can begin then, and the library can be closed without cutting anything off.
     *
     * @return is completed on the main thread, or ends as {@link #ending} does
     */
    public CompletableFuture<Void> finished() {
        return finished.copy();
    }

    /**
     * Does what the cardholder does on the screen that was told of last, as a finger would. A further screen
     * or the ending follows. Nothing is done where it throws.
     *
     * @param action what is done
     * @throws KorvaneException.Refusal where the screen does not take it
     * @throws KorvaneException.Call while no screen waits, and for an action that is faulty
     */
    public void act(Action action) {
        byte[] json = JsonObject.bytes(action.members());
        try {
            engine.onMain(
                    platform ->
                            handle.use(
                                    own -> {
                                        Native.act(own, json);
                                        return null;
                                    }));
        } finally {
            Arrays.fill(json, (byte) 0);
        }
    }

    /**
     * Takes the actions away, and nothing else: the challenge goes on to its end. A second time nothing
     * happens.
     */
    @Override
    public void close() {
        handle.close();
    }

    /** An event of the library, or null for its last. Main thread. */
    void hear(String json) {
        if (json == null) {
            finish();
            return;
        }
        Json event = Json.of(json);
        switch (event.text("event")) {
            case "screen" -> listener.screen(this, Events.screen(event));
            case "error" ->
                ending.completeExceptionally(KorvaneException.of(Result.INTERNAL, event.text("message")));
            default -> ending.complete(Events.ending(event));
        }
    }

    private void finish() {
        Native.remove(number);
        handle.close();
        ending.completeExceptionally(KorvaneException.of(Result.INTERNAL, "The library told no ending."));
        finished.complete(null);
    }

    /** The library has ended before the challenge. */
    void abandon() {
        Native.remove(number);
        Exception reason = new IllegalStateException("Korvane was closed before the challenge had ended.");
        ending.completeExceptionally(reason);
        finished.completeExceptionally(reason);
    }
}
