package korvane;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.concurrent.TimeUnit;

/**
 * 1,000 transactions, each with a challenge that ends at once, leave nothing behind: no handle and no memory
 * outside of Java's. To be run with one arena of malloc, whose heap is measured.
 */
final class GrowthTest {
    private static final int TRANSACTIONS = 1_000;
    private static final long ALLOWED = 100L * TRANSACTIONS;
    private static final ChallengeParameters NOTHING_SIGNED =
            new ChallengeParameters("t", "a", "r", "s", null);

    private static Bank bank;
    private static Korvane korvane;

    public static void main(String[] arguments) throws Exception {
        bank = new Bank();
        korvane = Korvane.open(bank.configuration());
        new Cases().with(TRANSACTIONS + " transactions without growth", GrowthTest::growth).run();
    }

    private static void growth() throws Exception {
        run();
        long before = heap();
        run();
        long grown = heap() - before;
        System.out.printf("grown by %d bytes%n", grown);
        Cases.that(grown <= ALLOWED, "grown by " + grown + " bytes, of which are allowed " + ALLOWED);
    }

    private static void run() throws Exception {
        for (int count = 0; count < TRANSACTIONS; ++count)
            try (Transaction transaction = korvane.transaction(Bank.SERVER, "2.2.0")) {
                transaction.authenticationRequest();
                Challenge challenge = transaction.challenge(NOTHING_SIGNED, 5, (own, screen) -> {});
                challenge.finished().get(30, TimeUnit.SECONDS);
                Cases.equal(Ending.RuntimeError.class, challenge.ending().get().getClass());
            }
    }

    /** The heap's pages in memory, in bytes. */
    private static long heap() throws IOException {
        boolean isHeap = false;
        for (String line : Files.readAllLines(Path.of("/proc/self/smaps"))) {
            if (line.matches("^[0-9a-f]+-.*")) isHeap = line.endsWith("[heap]");
            else if (isHeap && line.startsWith("Rss:"))
                return 1024 * Long.parseLong(line.replaceAll("[^0-9]", ""));
        }
        throw new IOException("There is no heap.");
    }
}
