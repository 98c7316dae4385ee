package korvane;

import java.util.concurrent.ExecutionException;
import java.util.concurrent.Executor;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import java.util.concurrent.FutureTask;
import java.util.function.Supplier;

/** The thread that the library takes for the main one: the application's, or one of its own. */
final class MainThread {
    private final Executor executor;
    private final ExecutorService own;
    private volatile Thread thread;
    /** How many calls of the library this thread is in, one within the other. Its own alone. */
    private int depth;

    /** On an executor of one thread; null for a new one. */
    MainThread(Executor executor) {
        own = executor == null ? Executors.newSingleThreadExecutor(MainThread::daemon) : null;
        this.executor = executor == null ? own : executor;
    }

    private static Thread daemon(Runnable work) {
        Thread thread = new Thread(work, "korvane-main");
        thread.setDaemon(true);
        return thread;
    }

    boolean isHere() {
        return Thread.currentThread() == thread;
    }

    /** Whether this is the thread, and in a call of the library: in a callback of that. */
    boolean isWithinCall() {
        return isHere() && depth > 0;
    }

    /** Does work on the thread, and waits for it. */
    <T> T call(Supplier<T> work) {
        if (isHere()) return count(work);
        FutureTask<T> task = new FutureTask<>(() -> count(work));
        executor.execute(task);
        return result(task);
    }

    /** Does work on the thread once it has come to that. */
    void later(Runnable work) {
        executor.execute(work);
    }

    /** The thread has nothing more to do. */
    void end() {
        if (own != null) own.shutdown();
    }

    /** What a task has come to, waiting for it; who interrupts the wait is heard after it. */
    static <T> T result(Future<T> task) {
        boolean isInterrupted = false;
        try {
            while (true) {
                try {
                    return task.get();
                } catch (InterruptedException interruption) {
                    isInterrupted = true;
                }
            }
        } catch (ExecutionException failure) {
            if (failure.getCause() instanceof Error error) throw error;
            throw (RuntimeException) failure.getCause();
        } finally {
            if (isInterrupted) Thread.currentThread().interrupt();
        }
    }

    private <T> T count(Supplier<T> work) {
        thread = Thread.currentThread();
        ++depth;
        try {
            return work.get();
        } finally {
            --depth;
        }
    }
}
