package korvane;

import java.util.List;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.FutureTask;
import java.util.concurrent.RejectedExecutionException;
import java.util.concurrent.atomic.AtomicBoolean;
import java.util.function.LongFunction;
import java.util.function.Supplier;

/**
 * The library's platform, its main thread and all handles, apart from the objects that an application holds.
 */
final class Engine {
    private final long number = Native.add(this);
    private final Set<Long> handles = ConcurrentHashMap.newKeySet();
    private final AtomicBoolean isClosing = new AtomicBoolean();
    private final FutureTask<Void> end = new FutureTask<>(this::end, null);
    private final MainThread main;
    private final HostServices host;
    private volatile long platform;

    /** A platform as a configuration says. Where there is none nothing is left behind. */
    Engine(Configuration configuration) {
        main = new MainThread(configuration.mainThread());
        try {
            host = new HostServices(configuration.host(), this);
            platform = main.call(() -> Native.platform(number, host.offered()));
        } catch (Throwable failure) {
            Native.remove(number);
            main.end();
            throw failure;
        }
    }

    HostServices host() {
        return host;
    }

    /** The platform's handle; 0 before its beginning and after its end. */
    long platform() {
        return platform;
    }

    /** Calls the library on the main thread, with the platform's handle. */
    <T> T onMain(LongFunction<T> call) {
        requireOpen();
        return main.call(
                () -> {
                    requireOpen();
                    return call.apply(platform);
                });
    }

    /** Calls what the library lets one thread call at a time. */
    synchronized <T> T inTurn(Supplier<T> call) {
        requireOpen();
        return call.get();
    }

    /** Keeps a new handle until it is released, or the end. */
    Handle keep(long handle, String name) {
        handles.add(handle);
        return new Handle(this, handle, name, () -> release(handle));
    }

    /** The handle without which the rest is of no use: with it all ends. */
    Handle keepWithAll(long handle, String name) {
        handles.add(handle);
        return new Handle(this, handle, name, this::endSoon);
    }

    boolean has(long handle) {
        return handles.contains(handle);
    }

    /** The main thread has something to do. */
    void wake() {
        main.later(this::runNext);
    }

    /** Returns when all has ended; within a callback, which the end has to wait for, before. */
    void close() {
        if (main.isHere() && !main.isWithinCall()) {
            isClosing.set(true);
            end.run();
        } else {
            endSoon();
        }
        if (!main.isHere() || end.isDone()) MainThread.result(end);
    }

    private void endSoon() {
        if (!isClosing.getAndSet(true)) main.later(end);
    }

    private void requireOpen() {
        if (isClosing.get()) throw new IllegalStateException("Korvane is closed.");
    }

    private void runNext() {
        if (platform == 0) return;
        try {
            main.call(
                    () -> {
                        Native.run(platform);
                        return null;
                    });
        } catch (Throwable failure) {
            Native.report(failure);
        }
    }

    /** Not beside the end, which would meet a handle that nobody knows. */
    private synchronized void release(long handle) {
        if (handles.remove(handle)) Native.release(handle);
    }

    /** On the main thread, outside of callbacks. */
    private synchronized void end() {
        List<Challenge> left = Native.challenges();
        for (long handle : handles) release(handle);
        Native.release(platform);
        platform = 0;
        Native.remove(number);
        main.end();
        for (Challenge challenge : left) challenge.abandon();
    }
}
