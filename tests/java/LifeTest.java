package korvane;

import java.io.IOException;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.concurrent.CompletableFuture;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.CopyOnWriteArrayList;
import java.util.concurrent.CountDownLatch;
import java.util.concurrent.ExecutionException;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.TimeUnit;
import payment.HttpClientNetwork;

/** Who closes what and when, what an application's code throws, and what a host hands in. */
final class LifeTest {
    private static Bank bank;

    public static void main(String[] arguments) throws Exception {
        bank = new Bank();
        new Cases()
                .with("what is closed is an illegal state, closed twice or not", LifeTest::closed)
                .with("the library is closed from another thread in a challenge", LifeTest::closedMeanwhile)
                .with("and in a callback", LifeTest::closedInACallback)
                .with("what nobody has any more is given back", LifeTest::forgotten)
                .with("a listener that throws does not end the challenge", LifeTest::throwingListener)
                .with("a host's own thread, network, store, values and log", LifeTest::host)
                .with("a host that throws", LifeTest::throwingHost)
                .run();
    }

    private static void closed() throws Exception {
        Korvane korvane = Korvane.open(bank.configuration());
        Transaction transaction = korvane.transaction(Bank.SERVER, "2.2.0");
        Challenge challenge = begin(transaction, "text", (own, screen) -> {});
        challenge.close();
        challenge.close();
        expectClosed(() -> challenge.act(new Action.Cancel()));
        transaction.close();
        transaction.close();
        expectClosed(transaction::authenticationRequest);
        ChallengeParameters none = new ChallengeParameters("", "", "", "", "");
        expectClosed(() -> transaction.challenge(none, 5, (own, screen) -> {}));
        korvane.close();
        korvane.close();
        expectAbandoned(challenge);
        expectClosed(() -> korvane.transaction(Bank.SERVER, "2.2.0"));
        expectClosed(korvane::version);
        expectClosed(korvane::warnings);
        expectClosed(() -> korvane.setActive(true));
        expectClosed(() -> korvane.setCaptured(false));
        expectClosed(() -> korvane.setScreen(Orientation.PORTRAIT, 1, 1));
    }

    private static void expectClosed(Cases.Case call) {
        String text = Cases.thrown(IllegalStateException.class, call).getMessage();
        Cases.that(text.endsWith("is closed."), text);
    }

    private static void expectAbandoned(Challenge challenge) throws Exception {
        for (CompletableFuture<?> future : List.of(challenge.ending(), challenge.finished())) {
            ExecutionException ended =
                    Cases.thrown(ExecutionException.class, () -> future.get(10, TimeUnit.SECONDS));
            Cases.equal(IllegalStateException.class, ended.getCause().getClass());
        }
        Cases.equal(List.of(), Native.challenges());
    }

    private static Challenge begin(Transaction transaction, String scenario, Challenge.Listener listener)
            throws Exception {
        return transaction.challenge(Bank.parameters(bank.authenticate(transaction, scenario)), 5, listener);
    }

    /** At a moment that differs: while it begins, before its first screen, on it, and while actions go on. */
    private static void closedMeanwhile() throws Exception {
        for (int round = 0; round < 12; ++round) {
            Korvane korvane = Korvane.open(bank.configuration());
            CountDownLatch shown = new CountDownLatch(round % 3);
            Transaction transaction = korvane.transaction(Bank.SERVER, "2.2.0");
            Challenge challenge =
                    begin(
                            transaction,
                            "text",
                            (own, screen) -> {
                                shown.countDown();
                                own.act(new Action.Type("1"));
                            });
            Cases.that(shown.await(10, TimeUnit.SECONDS), "screens");
            List<Thread> closers = new ArrayList<>();
            for (AutoCloseable one : List.of(challenge, korvane, transaction, korvane)) {
                closers.add(new Thread(() -> closeOf(one)));
                closers.get(closers.size() - 1).start();
            }
            for (Thread closer : closers) closer.join(10_000);
            expectAbandoned(challenge);
        }
    }

    private static void closeOf(AutoCloseable one) {
        try {
            one.close();
        } catch (Exception failure) {
            throw new AssertionError(failure);
        }
    }

    private static void closedInACallback() throws Exception {
        Korvane korvane = Korvane.open(bank.configuration());
        Transaction transaction = korvane.transaction(Bank.SERVER, "2.2.0");
        Challenge challenge = begin(transaction, "text", (own, screen) -> korvane.close());
        expectAbandoned(challenge);
        Korvane.open(bank.configuration()).close();
    }

    /** Nothing else can be opened before the forgotten ones have gone. */
    private static void forgotten() throws Exception {
        Korvane.open(bank.configuration()).transaction(Bank.SERVER, "2.2.0").authenticationRequest();
        long limit = System.nanoTime() + TimeUnit.SECONDS.toNanos(30);
        while (true) {
            System.gc();
            try {
                Korvane.open(bank.configuration()).close();
                return;
            } catch (KorvaneException.Call stillThere) {
                Cases.that(System.nanoTime() < limit, "it is never given back");
                Thread.onSpinWait();
            }
        }
    }

    private static void throwingListener() throws Exception {
        CompletableFuture<Throwable> reported = new CompletableFuture<>();
        Thread.UncaughtExceptionHandler before = Thread.getDefaultUncaughtExceptionHandler();
        Thread.setDefaultUncaughtExceptionHandler((thread, thrown) -> reported.complete(thrown));
        try (Korvane korvane = Korvane.open(bank.configuration());
                Transaction transaction = korvane.transaction(Bank.SERVER, "2.2.0")) {
            Challenge challenge =
                    begin(
                            transaction,
                            "text",
                            (own, screen) -> {
                                throw new IllegalArgumentException("mine");
                            });
            Cases.equal("mine", reported.get(10, TimeUnit.SECONDS).getMessage());
            challenge.act(new Action.Submit("1234"));
            Ending ending = challenge.ending().get(30, TimeUnit.SECONDS);
            Cases.equal(Ending.Completed.class, ending.getClass());
        } finally {
            Thread.setDefaultUncaughtExceptionHandler(before);
        }
    }

    /** A host that has all of it. */
    private static class Machine implements Host {
        final Map<String, String> kept = new ConcurrentHashMap<>();
        final List<String> lines = new CopyOnWriteArrayList<>(), urls = new CopyOnWriteArrayList<>();
        final Network client = new HttpClientNetwork();

        @Override
        public List<String> value(Value value) {
            return value == Value.SYSTEM_NAME ? List.of("Syst\u00e8me \ud83d\ude00") : List.of();
        }

        @Override
        public Network network() {
            return request -> {
                urls.add(request.url());
                return client.send(request);
            };
        }

        @Override
        public Store store() {
            return new Store() {
                @Override
                public Optional<String> load(String key) {
                    return Optional.ofNullable(kept.get(key));
                }

                @Override
                public boolean save(String key, String text) {
                    kept.put(key, text);
                    return true;
                }
            };
        }

        @Override
        public Log log() {
            return (message, file, function, line) -> lines.add(file + ":" + line + ": " + message);
        }
    }

    private static void host() throws Exception {
        Machine machine = new Machine();
        ExecutorService main = Executors.newSingleThreadExecutor(work -> new Thread(work, "mine"));
        CompletableFuture<String> thread = new CompletableFuture<>();
        Configuration configuration = bank.configuration().withHost(machine).withMainThread(main);
        try (Korvane korvane = Korvane.open(configuration);
                Transaction transaction = korvane.transaction(Bank.SERVER, "2.2.0")) {
            Json answer = bank.authenticate(transaction, "text");
            Map<String, Json> device = answer.members().get("deviceData").members().get("DD").members();
            Cases.that(
                    device.values().stream().anyMatch(one -> one.text().equals("Syst\u00e8me \ud83d\ude00")),
                    "the host's value is in the device data");
            Challenge challenge =
                    transaction.challenge(
                            Bank.parameters(answer),
                            5,
                            (own, screen) -> {
                                thread.complete(Thread.currentThread().getName());
                                own.act(new Action.Submit("1234"));
                            });
            Cases.equal("mine", thread.get(30, TimeUnit.SECONDS));
            Cases.equal(Ending.Completed.class, challenge.ending().get(30, TimeUnit.SECONDS).getClass());
            challenge.finished().get(30, TimeUnit.SECONDS);
            String own = transaction.authenticationRequest().sdkAppId();
            Cases.that(machine.kept.containsValue(own), own + " is not in " + machine.kept);
        }
        main.shutdown();
        Cases.that(machine.urls.stream().anyMatch(url -> url.contains("/challenge/")), "went by the host");
        Cases.that(machine.lines.stream().anyMatch(line -> line.contains(".cpp:")), "lines of the log");
    }

    private static void throwingHost() throws Exception {
        Host host =
                new Machine() {
                    @Override
                    public List<String> value(Value value) {
                        throw new IllegalStateException("no value");
                    }

                    @Override
                    public Network network() {
                        return request -> CompletableFuture.failedFuture(new IOException("no network"));
                    }

                    @Override
                    public Log log() {
                        return (message, file, function, line) -> {
                            throw new IllegalStateException("no log");
                        };
                    }
                };
        Thread.UncaughtExceptionHandler before = Thread.getDefaultUncaughtExceptionHandler();
        List<String> reported = new CopyOnWriteArrayList<>();
        Thread.setDefaultUncaughtExceptionHandler((thread, thrown) -> reported.add(thrown.getMessage()));
        try (Korvane korvane = Korvane.open(bank.configuration().withHost(host))) {
            Play play = Play.of(korvane, bank, "text", 5);
            Cases.equal(Ending.RuntimeError.class, play.ending().getClass());
            Cases.that(play.ending().toString().contains("no network"), play.ending().toString());
            Cases.that(reported.containsAll(List.of("no value", "no log")), reported.toString());
        } finally {
            Thread.setDefaultUncaughtExceptionHandler(before);
        }
    }
}
