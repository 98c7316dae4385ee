package korvane;

import java.time.Duration;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.atomic.AtomicLong;
import java.util.function.Consumer;
import java.util.function.Function;

/**
 * The functions of the library, and those that it calls back. A handle is a number that is not given twice:
 * one that names nothing any more is refused there. Texts are UTF-8.
 *
 * <p>What is called back finds its object by a number, as long as there is something to be told. So the
 * native half holds no object, and a call that comes too late finds none.
 */
final class Native {
    /** The services that a host can have beside its values. */
    static final int NETWORK = 1;

    static final int STORE = 2;
    static final int LOG = 4;

    private static final byte[][] NO_TEXTS = {};
    private static final double NANOSECONDS = 1e9;
    private static final Map<Long, Engine> ENGINES = new ConcurrentHashMap<>();
    private static final Map<Long, Challenge> CHALLENGES = new ConcurrentHashMap<>();
    private static final AtomicLong LAST = new AtomicLong();

    static {
        String file = System.getProperty("korvane.native");
        if (file == null) System.loadLibrary("korvane-jni");
        else System.load(file);
    }

    private Native() {}

    static native long platform(long engine, int services);

    static native void run(long platform);

    static native void trust(long platform, byte[] pem);

    static native void setScreen(long platform, int orientation, double width, double height);

    static native void setCaptured(long platform, boolean isCaptured);

    static native void setActive(long platform, boolean isActive);

    static native void complete(
            long platform, long number, int status, byte[] location, byte[] body, byte[] error);

    /** Of each server its identifier, certificate and root, one after the other. */
    static native long service(
            long platform, byte[][] servers, int[] algorithms, byte[] locale, byte[] theme);

    static native byte[] version(long service);

    static native byte[] warnings(long service);

    static native long transaction(long service, byte[] server, byte[] version);

    /** The request's texts in the order of its structure, and all as JSON. */
    static native byte[][] request(long transaction);

    static native long challenge(long transaction, byte[] values, long minutes, long challenge);

    static native void act(long challenge, byte[] action);

    static native void release(long handle);

    static long add(Engine engine) {
        long number = LAST.incrementAndGet();
        ENGINES.put(number, engine);
        return number;
    }

    static long add(Challenge challenge) {
        long number = LAST.incrementAndGet();
        CHALLENGES.put(number, challenge);
        return number;
    }

    /** Nothing is told to that number any more. */
    static void remove(long number) {
        ENGINES.remove(number);
        CHALLENGES.remove(number);
    }

    /** The challenges that are still to be told something. */
    static List<Challenge> challenges() {
        return List.copyOf(CHALLENGES.values());
    }

    /** Hands what an application's code has thrown to the handler that its thread has for that. */
    static void report(Throwable thrown) {
        Thread thread = Thread.currentThread();
        try {
            thread.getUncaughtExceptionHandler().uncaughtException(thread, thrown);
        } catch (RuntimeException | Error failure) {
            failure.printStackTrace();
        }
    }

    // Called by the native half, into which nothing is thrown.

    private static Throwable failure(int number, byte[] text) {
        return KorvaneException.of(number, Text.of(text));
    }

    private static void event(long challenge, byte[] json) {
        tell(CHALLENGES.get(challenge), told -> told.hear(Text.of(json)));
    }

    private static void wake(long engine) {
        tell(ENGINES.get(engine), Engine::wake);
    }

    private static byte[][] value(long engine, int number) {
        return ask(ENGINES.get(engine), asked -> asked.host().value(number), NO_TEXTS);
    }

    private static void send(
            long engine, long number, byte[] url, byte[] method, byte[][] headers, byte[] body,
            byte[] authorities, double patience) {
        List<Host.Header> head = new ArrayList<>();
        for (int index = 0; index < headers.length; index += 2)
            head.add(new Host.Header(Text.of(headers[index]), Text.of(headers[index + 1])));
        Host.Request request =
                new Host.Request(
                        Text.of(url), Text.of(method), head, body, Text.of(authorities),
                        Duration.ofNanos((long) (patience * NANOSECONDS)));
        tell(ENGINES.get(engine), asked -> asked.host().send(number, request));
    }

    private static void cancel(long engine, long number) {
        tell(ENGINES.get(engine), asked -> asked.host().cancel(number));
    }

    private static byte[] load(long engine, byte[] key) {
        return ask(ENGINES.get(engine), asked -> asked.host().load(Text.of(key)), null);
    }

    private static boolean save(long engine, byte[] key, byte[] text) {
        return ask(ENGINES.get(engine), asked -> asked.host().save(Text.of(key), Text.of(text)), false);
    }

    private static void log(long engine, byte[] message, byte[] file, byte[] function, int line) {
        tell(
                ENGINES.get(engine),
                asked -> asked.host().log(Text.of(message), Text.of(file), Text.of(function), line));
    }

    private static <Asked, Answer> Answer ask(
            Asked asked, Function<Asked, Answer> question, Answer otherwise) {
        if (asked == null) return otherwise;
        try {
            return question.apply(asked);
        } catch (Throwable thrown) {
            report(thrown);
            return otherwise;
        }
    }

    private static <Told> void tell(Told told, Consumer<Told> what) {
        ask(
                told,
                listening -> {
                    what.accept(listening);
                    return null;
                },
                null);
    }
}
