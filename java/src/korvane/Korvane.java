package korvane;

import java.util.List;
import java.util.Objects;
import java.util.function.LongConsumer;
import java.util.stream.Stream;

/**
 * The library, ready for payments. One at a time in a process. All of it may be called on any thread; what
 * has to be done on the main one is done there, and waited for: the main thread may not wait for another that
 * calls this.
 *
 * <p>What is called after {@link #close} ends in an {@link IllegalStateException}. One that nobody has any
 * more is closed some time; only {@code close} says when.
 */
public final class Korvane implements AutoCloseable {
    /** How much a warning means. */
    public enum Severity {
        /** Little. */
        LOW,
        /** Something. */
        MEDIUM,
        /** Much: an application may rather not go on. */
        HIGH
    }

    /**
     * What the checks of the device's integrity have found.
     *
     * @param id such as "SW01"
     * @param message what it is
     * @param severity how much it means
     */
    public record Warning(String id, String message, Severity severity) {}

    private final Engine engine;
    private final Handle service;

    private Korvane(Engine engine, Handle service) {
        this.engine = engine;
        this.service = service;
    }

    /**
     * Collects the device data, and is ready for payments.
     *
     * @param configuration with what
     * @return the library, to be closed
     * @throws KorvaneException.Call for a faulty configuration, whose faults it names, and where the process
     *     has another one that is not closed
     */
    public static Korvane open(Configuration configuration) {
        Engine engine = new Engine(configuration);
        try {
            return new Korvane(engine, serviceOf(engine, configuration));
        } catch (Throwable failure) {
            try {
                engine.close();
            } catch (RuntimeException another) {
                failure.addSuppressed(another);
            }
            throw failure;
        }
    }

    private static Handle serviceOf(Engine engine, Configuration configuration) {
        List<DirectoryServer> servers = List.copyOf(configuration.servers());
        byte[][] texts = servers.stream().flatMap(Korvane::textsOf).toArray(byte[][]::new);
        int[] algorithms = servers.stream().mapToInt(one -> one.algorithm().ordinal()).toArray();
        byte[] locale = Text.bytes(configuration.locale());
        byte[] theme = Text.bytes(configuration.theme());
        byte[] authorities = Text.bytes(configuration.authorities());
        return engine.onMain(
                platform -> {
                    if (authorities != null) Native.trust(platform, authorities);
                    long made = Native.service(platform, texts, algorithms, locale, theme);
                    return engine.keepWithAll(made, "Korvane");
                });
    }

    private static Stream<byte[]> textsOf(DirectoryServer server) {
        return Stream.of(
                Text.bytes(Objects.requireNonNull(server.identifier(), "identifier")),
                Objects.requireNonNull(server.certificate(), "certificate"),
                Objects.requireNonNull(server.root(), "root"));
    }

    /**
     * The version of the interface, as 3DS servers know it.
     *
     * @return such as "1.0"
     */
    public String version() {
        return Text.of(engine.inTurn(() -> service.use(Native::version)));
    }

    /**
     * What the checks of the device's integrity have found.
     *
     * @return what the application may judge by
     */
    public List<Warning> warnings() {
        return Events.warnings(Json.of(Text.of(engine.inTurn(() -> service.use(Native::warnings)))));
    }

    /**
     * Begins a payment: seals the device data for a directory server.
     *
     * @param directoryServer the identifier of one in the configuration
     * @param messageVersion "2.1.0" or "2.2.0"
     * @return the payment, to be closed
     * @throws KorvaneException.Library for another server or version, and where its certificate is of no use
     */
    public Transaction transaction(String directoryServer, String messageVersion) {
        byte[] server = Text.bytes(Objects.requireNonNull(directoryServer, "directoryServer"));
        byte[] version = Text.bytes(Objects.requireNonNull(messageVersion, "messageVersion"));
        return engine.inTurn(
                () -> {
                    long made = service.use(own -> Native.transaction(own, server, version));
                    return new Transaction(this, engine, engine.keep(made, "The transaction"));
                });
    }

    /**
     * The screen has that size from now on.
     *
     * @param orientation how the device is held now
     * @param width in points, at most 100,000
     * @param height in points, at most 100,000
     */
    public void setScreen(Orientation orientation, double width, double height) {
        int number = orientation.number();
        onMain(platform -> Native.setScreen(platform, number, width, height));
    }

    /**
     * The screen is recorded or mirrored from now on, or no more.
     *
     * @param isCaptured whether it is
     */
    public void setCaptured(boolean isCaptured) {
        onMain(platform -> Native.setCaptured(platform, isCaptured));
    }

    /**
     * The user leaves the application or comes back.
     *
     * @param isActive whether the user is there
     */
    public void setActive(boolean isActive) {
        onMain(platform -> Native.setActive(platform, isActive));
    }

    /**
     * Ends everything: transactions and challenges that are open, exchanges with the bank, work that runs. A
     * challenge that has not ended is not told an ending any more: its futures end in an {@link
     * IllegalStateException}. Once this has returned nothing is called back; where it is called in a
     * callback, that is so after the callback. A second time nothing happens.
     */
    @Override
    public void close() {
        engine.close();
    }

    private void onMain(LongConsumer call) {
        engine.onMain(
                platform -> {
                    call.accept(platform);
                    return null;
                });
    }
}
