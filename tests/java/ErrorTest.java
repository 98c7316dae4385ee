package korvane;

import java.util.List;
import java.util.concurrent.Executors;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.atomic.AtomicReference;
import korvane.KorvaneException.Result;

/** Each number that a call can come to, and nulls. */
final class ErrorTest {
    private static Bank bank;

    public static void main(String[] arguments) throws Exception {
        bank = new Bank();
        new Cases()
                .with("a call that comes to nothing says which kind of nothing", ErrorTest::errors)
                .with("on a screen", ErrorTest::errorsOnAScreen)
                .with("each number has its family", ErrorTest::families)
                .with("null goes nowhere", ErrorTest::nulls)
                .with("a main thread that is another each time", ErrorTest::threads)
                .run();
    }

    private static void expect(Result result, String text, Cases.Case work) {
        Class<? extends KorvaneException> family = KorvaneException.of(result.number(), "").getClass();
        KorvaneException failure = Cases.thrown(family, work);
        Cases.equal(result, failure.result());
        Cases.that(failure.getMessage().contains(text), failure.getMessage());
    }

    private static void errors() throws Exception {
        Configuration configuration = bank.configuration();
        DirectoryServer rubbish =
                new DirectoryServer("rubbish", DirectoryServer.Algorithm.EC, new byte[] {1}, new byte[] {2});
        Configuration wrong = new Configuration(List.of(rubbish, rubbish), "en", null, null, null, null);
        expect(Result.BAD_ARGUMENT, "Two servers", () -> Korvane.open(wrong));
        Configuration themed = configuration.withTheme("{\"lables\":1}");
        expect(Result.BAD_ARGUMENT, "theme:1: lables", () -> Korvane.open(themed));
        expect(Result.BAD_ARGUMENT, "surrogates", () -> Korvane.open(configuration.withLocale("\ud800")));
        expect(Result.BAD_ARGUMENT, "character 0", () -> Korvane.open(configuration.withLocale("en\0")));
        List<DirectoryServer> servers = List.of(configuration.servers().get(0), rubbish);
        Configuration whole = new Configuration(servers, null, null, bank.authorities(), new Nowhere(), null);
        try (Korvane korvane = Korvane.open(whole);
                Transaction transaction = korvane.transaction(Bank.SERVER, "2.1.0")) {
            expect(Result.BAD_STATE, "platform", () -> Korvane.open(configuration));
            String longer = "a".repeat((1 << 20) + 1);
            expect(Result.TOO_LARGE, "too long", () -> korvane.transaction(longer, "2.2.0"));
            expect(Result.INVALID_INPUT, "certificates for x", () -> korvane.transaction("x", "2.2.0"));
            expect(Result.INVALID_INPUT, "3.0.0", () -> korvane.transaction(Bank.SERVER, "3.0.0"));
            expect(Result.RUNTIME, "DeviceInfo", () -> korvane.transaction("rubbish", "2.2.0"));
            expect(Result.BAD_ARGUMENT, "points", () -> korvane.setScreen(Orientation.PORTRAIT, -1, 1));
            expect(Result.BAD_HANDLE, "service", () -> Native.version(1L << 40));
            expect(Result.BAD_HANDLE, "handle", () -> Native.release(1L << 40));
            ChallengeParameters none = new ChallengeParameters(null, null, null, null, null);
            Challenge.Listener deaf = (own, screen) -> {};
            expect(Result.BAD_ARGUMENT, "minutes", () -> transaction.challenge(none, -1, deaf));
            expect(Result.NO_RESOURCES, "/nowhere", () -> transaction.challenge(none, 5, deaf));
        }
    }

    private static final class Nowhere implements Host {
        @Override
        public List<String> value(Value value) {
            return value == Value.RESOURCES ? List.of("/nowhere") : List.of();
        }
    }

    private static void errorsOnAScreen() throws Exception {
        AtomicReference<Throwable> wrong = new AtomicReference<>();
        try (Korvane korvane = Korvane.open(bank.configuration());
                Transaction transaction = korvane.transaction(Bank.SERVER, "2.2.0")) {
            ChallengeParameters parameters = Bank.parameters(bank.authenticate(transaction, "text"));
            Challenge challenge =
                    transaction.challenge(
                            parameters,
                            5,
                            (own, screen) -> {
                                try {
                                    expect(Result.REFUSED, "control", () -> own.act(new Action.Continue()));
                                    expect(
                                            Result.BAD_ARGUMENT, "JSON",
                                            () -> own.act(new Action.Submit("\ud800")));
                                    Cases.thrown(
                                            NullPointerException.class, () -> own.act(new Action.Type(null)));
                                } catch (Throwable failure) {
                                    wrong.set(failure);
                                }
                                own.act(new Action.Cancel());
                            });
            expect(Result.BAD_STATE, "No screen", () -> challenge.act(new Action.Cancel()));
            expect(Result.BAD_STATE, "Another", () -> challengeOf(korvane));
            Cases.equal(new Ending.Cancelled(), challenge.ending().get(30, TimeUnit.SECONDS));
            Cases.equal(null, wrong.get());
            challenge.finished().get(30, TimeUnit.SECONDS);
            expect(
                    Result.BAD_STATE, "has had",
                    () -> transaction.challenge(parameters, 5, (own, screen) -> {}));
        }
    }

    private static void challengeOf(Korvane korvane) {
        try (Transaction transaction = korvane.transaction(Bank.SERVER, "2.2.0")) {
            transaction.challenge(
                    new ChallengeParameters(null, null, null, null, null), 5, (own, screen) -> {});
        }
    }

    /** Of these no caller comes to 6, 7 and 21 to 24 here: there is memory, and nothing raises them. */
    private static void families() {
        for (Result result : Result.values()) {
            Class<?> family = KorvaneException.Machine.class;
            if (result.number() <= 5) family = KorvaneException.Call.class;
            if (result.number() == 9) family = KorvaneException.Refusal.class;
            if (result.number() >= 20) family = KorvaneException.Library.class;
            Cases.equal(family, KorvaneException.of(result.number(), "").getClass());
            Cases.equal(result, KorvaneException.of(result.number(), "").result());
        }
        Cases.equal(Result.INTERNAL, KorvaneException.of(99, "").result());
    }

    private static void nulls() throws Exception {
        Class<NullPointerException> expected = NullPointerException.class;
        Cases.thrown(expected, () -> Korvane.open(null));
        Cases.thrown(expected, () -> Korvane.open(new Configuration((DirectoryServer) null)));
        try (Korvane korvane = Korvane.open(bank.configuration());
                Transaction transaction = korvane.transaction(Bank.SERVER, "2.2.0")) {
            Cases.thrown(expected, () -> korvane.transaction(null, "2.2.0"));
            Cases.thrown(expected, () -> korvane.transaction(Bank.SERVER, null));
            Cases.thrown(expected, () -> korvane.setScreen(null, 1, 1));
            Cases.thrown(expected, () -> transaction.challenge(null, 5, (own, screen) -> {}));
            ChallengeParameters none = new ChallengeParameters(null, null, null, null, null);
            Cases.thrown(expected, () -> transaction.challenge(none, 5, null));
        }
    }

    /** Last: the library may not have ended then, which it does on its own thread alone. */
    private static void threads() throws Exception {
        Configuration configuration = bank.configuration().withMainThread(Executors.newFixedThreadPool(2));
        expect(Result.BAD_THREAD, "main thread", () -> Korvane.open(configuration));
    }
}
