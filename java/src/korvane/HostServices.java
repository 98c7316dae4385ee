package korvane;

import java.net.URISyntaxException;
import java.nio.charset.StandardCharsets;
import java.nio.file.FileSystemNotFoundException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.CodeSource;
import java.util.List;
import java.util.Map;
import java.util.concurrent.CompletableFuture;
import java.util.concurrent.CompletionException;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.Future;

/** A host as the library asks it. Any thread. */
final class HostServices {
    private final Engine engine;
    private final Host host;
    private final Host.Network network;
    private final Host.Store store;
    private final Host.Log log;
    /** The exchanges that the library waits for, by its number. */
    private final Map<Long, Future<?>> exchanges = new ConcurrentHashMap<>();

    HostServices(Host host, Engine engine) {
        this.engine = engine;
        this.host = host == null ? new Host() {} : host;
        network = this.host.network();
        store = this.host.store();
        log = this.host.log();
    }

    /** Which services there are beside the values. */
    int offered() {
        return (network == null ? 0 : Native.NETWORK)
                | (store == null ? 0 : Native.STORE)
                | (log == null ? 0 : Native.LOG);
    }

    /** A later library may ask for values that this does not know. */
    byte[][] value(int number) {
        if (number >= Host.Value.values().length) return new byte[0][];
        Host.Value value = Host.Value.values()[number];
        List<String> texts = List.of();
        try {
            texts = host.value(value);
        } catch (Throwable thrown) {
            Native.report(thrown);
        }
        if (texts.isEmpty() && value == Host.Value.RESOURCES) texts = installedResources();
        return texts.stream().map(Text::bytes).toArray(byte[][]::new);
    }

    /** Begins an exchange, which may be cancelled before its future is known. */
    void send(long number, Host.Request request) {
        Future<?> unknown = new CompletableFuture<>();
        exchanges.put(number, unknown);
        CompletableFuture<Host.Response> exchange;
        try {
            exchange = network.send(request);
            if (!exchanges.replace(number, unknown, exchange)) exchange.cancel(true);
        } catch (Throwable thrown) {
            finish(number, null, thrown);
            throw thrown;
        }
        exchange.whenComplete((response, failure) -> finish(number, response, failure));
    }

    void cancel(long number) {
        Future<?> exchange = exchanges.remove(number);
        if (exchange != null) exchange.cancel(true);
    }

    byte[] load(String key) {
        return store.load(key).map(Text::bytes).orElse(null);
    }

    boolean save(String key, String text) {
        return store.save(key, text);
    }

    void log(String message, String file, String function, int line) {
        log.log(message, file, function, line);
    }

    /** Tells what came of an exchange, unless nobody waits for it any more. */
    private void finish(long number, Host.Response response, Throwable failure) {
        if (exchanges.remove(number) == null) return;
        try {
            if (failure != null) throw failure;
            Native.complete(
                    engine.platform(), number, response.status(), Text.bytes(response.location()),
                    response.body(), null);
        } catch (Throwable reason) {
            boolean isWrapped = reason instanceof CompletionException && reason.getCause() != null;
            fail(number, isWrapped ? reason.getCause() : reason);
        }
    }

    private void fail(long number, Throwable reason) {
        byte[] text = reason.toString().getBytes(StandardCharsets.UTF_8);
        try {
            Native.complete(engine.platform(), number, 0, null, null, text);
        } catch (KorvaneException.Call tooLate) {
            // It took too long, or the library has ended.
        }
    }

    /** Where an installation has the screens' resources: beside the folder of the binding's own archive. */
    private static List<String> installedResources() {
        String told = System.getProperty("korvane.resources");
        if (told != null) return List.of(told);
        try {
            CodeSource source = HostServices.class.getProtectionDomain().getCodeSource();
            if (source == null) return List.of();
            Path archive = Path.of(source.getLocation().toURI());
            Path folder = archive.resolveSibling("../korvane/Frameworks").normalize();
            return Files.isDirectory(folder) ? List.of(folder.toString()) : List.of();
        } catch (URISyntaxException | IllegalArgumentException | FileSystemNotFoundException elsewhere) {
            return List.of();
        }
    }
}
