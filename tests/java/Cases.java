package korvane;

import java.util.LinkedHashMap;
import java.util.Map;
import java.util.Objects;

/** Named cases of one program, which ends with 1 when one fails. */
final class Cases {
    interface Case {
        void run() throws Exception;
    }

    private final Map<String, Case> cases = new LinkedHashMap<>();

    Cases with(String name, Case one) {
        cases.put(name, one);
        return this;
    }

    /** Ends the process: threads of a case that failed may still run. */
    void run() {
        int failed = 0;
        for (Map.Entry<String, Case> one : cases.entrySet()) {
            long begin = System.nanoTime();
            try {
                one.getValue().run();
                long milliseconds = (System.nanoTime() - begin) / 1_000_000;
                System.out.printf("ok      %s (%d ms)%n", one.getKey(), milliseconds);
            } catch (Throwable failure) {
                ++failed;
                System.out.printf("FAILED  %s%n", one.getKey());
                failure.printStackTrace(System.out);
            }
        }
        System.out.printf("%d cases, %d failed%n", cases.size(), failed);
        System.exit(failed == 0 && !cases.isEmpty() ? 0 : 1);
    }

    static void equal(Object expected, Object got) {
        if (!Objects.equals(expected, got)) throw new AssertionError("expected " + expected + ", got " + got);
    }

    static void that(boolean condition, String what) {
        if (!condition) throw new AssertionError(what);
    }

    /** The exception of that very type which the work throws. */
    static <T extends Throwable> T thrown(Class<T> type, Case work) {
        try {
            work.run();
        } catch (Throwable failure) {
            if (failure.getClass() == type) return type.cast(failure);
            throw new AssertionError("expected " + type, failure);
        }
        throw new AssertionError("expected " + type + ", got nothing");
    }
}
