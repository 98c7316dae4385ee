package korvane;

import java.lang.ref.Cleaner;
import java.lang.ref.Reference;
import java.util.function.LongFunction;

/**
 * What an object is named by in the library. Given back by {@link #close}, or once nobody has it any more.
 */
final class Handle {
    private static final Cleaner CLEANER = Cleaner.create();

    private final Engine engine;
    private final long number;
    private final String name;
    private final Cleaner.Cleanable cleanable;

    /** A handle of an engine; the work gives it back and holds nothing of its owner. */
    Handle(Engine engine, long number, String name, Runnable giveBack) {
        this.engine = engine;
        this.number = number;
        this.name = name;
        cleanable = CLEANER.register(this, giveBack);
    }

    /**
     * Calls the library with the handle.
     *
     * @throws IllegalStateException once it is closed, and where it is closed meanwhile
     */
    <T> T use(LongFunction<T> call) {
        try {
            requireOpen(null);
            return call.apply(number);
        } catch (KorvaneException.Call failure) {
            requireOpen(failure);
            throw failure;
        } finally {
            Reference.reachabilityFence(this);
        }
    }

    void close() {
        cleanable.clean();
    }

    private void requireOpen(Throwable cause) {
        if (!engine.has(number)) throw new IllegalStateException(name + " is closed.", cause);
    }
}
