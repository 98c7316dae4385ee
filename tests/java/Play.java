package korvane;

import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.TimeUnit;

/** A challenge from its beginning to its end: what was shown, and how it ended. */
record Play(List<Screen> screens, Ending ending) {
    /** Answers each screen by the next action; a last one stands until the time is over. */
    static Play of(Korvane korvane, Bank bank, String scenario, long minutes, Action... actions)
            throws Exception {
        List<Screen> screens = new ArrayList<>();
        try (Transaction transaction = korvane.transaction(Bank.SERVER, "2.2.0")) {
            ChallengeParameters parameters = Bank.parameters(bank.authenticate(transaction, scenario));
            Challenge challenge =
                    transaction.challenge(
                            parameters,
                            minutes,
                            (own, screen) -> {
                                screens.add(screen);
                                own.act(actions[screens.size() - 1]);
                            });
            Ending ending = challenge.ending().get(30, TimeUnit.SECONDS);
            challenge.finished().get(30, TimeUnit.SECONDS);
            return new Play(screens, ending);
        }
    }
}
