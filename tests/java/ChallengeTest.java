package korvane;

import java.util.List;

/** Whole challenges: each kind of screen, each ending. */
final class ChallengeTest {
    /** What no key has, in one, two, three and four bytes of UTF-8. */
    private static final String CODE = "a\"\\\u00e9\u20ac\ud83d\ude00";

    private static final String SCREEN =
            """
            {"acsUiType": "01", "challengeInfoHeader": "H", "challengeInfoLabel": "L",
             "challengeInfoText": "%s", "submitAuthenticationLabel": "OK",
             "whitelistingInfoText": "Trust?"}"""
                    .formatted(CODE.replace("\\", "\\\\").replace("\"", "\\\""));
    private static final String OWN =
            """
            {"steps": [{"screen": %s, "accepts": {"challengeDataEntry": ["%s"]}}]}"""
                    .formatted(SCREEN, CODE.replace("\\", "\\\\").replace("\"", "\\\""));

    private static Bank bank;
    private static Korvane korvane;

    public static void main(String[] arguments) throws Exception {
        bank = new Bank("own", OWN);
        korvane = Korvane.open(bank.configuration());
        new Cases()
                .with("a code, typed in parts and turned", ChallengeTest::code)
                .with("a text of every width there and back", ChallengeTest::text)
                .with("one option", ChallengeTest::oneOption)
                .with("several options", ChallengeTest::severalOptions)
                .with("an approval elsewhere", ChallengeTest::outOfBand)
                .with("a page", ChallengeTest::page)
                .with("every ending but one", ChallengeTest::endings)
                .with("no time", ChallengeTest::timedOut)
                .run();
    }

    private static Play play(String scenario, Action... actions) throws Exception {
        return Play.of(korvane, bank, scenario, 5, actions);
    }

    private static void expectYes(Play play) {
        expectStatus("Y", play);
    }

    private static void expectStatus(String status, Play play) {
        Cases.that(
                play.ending() instanceof Ending.Completed end && end.transactionStatus().equals(status),
                play.ending().toString());
    }

    private static void code() throws Exception {
        Play play =
                play(
                        "text", new Action.Type("12"), new Action.Rotate(Orientation.LANDSCAPE_RIGHT),
                        new Action.Submit("x"), new Action.Rotate(Orientation.PORTRAIT),
                        new Action.Submit("1234"));
        Cases.equal(
                new Screen.Code(
                        false,
                        new Screen.Body(
                                "Confirm your purchase", "Your code",
                                "We have sent a code to your phone. Enter it here.", false,
                                "Why do I see this?", "Your bank makes sure that it is you.", "Help",
                                "Call the number on the back of your card.", ""),
                        "", "Submit", "Send a new code"),
                play.screens().get(0));
        Screen.Code across = (Screen.Code) play.screens().get(2);
        Cases.equal("true 12", across.landscape() + " " + across.typed());
        Cases.that(((Screen.Code) play.screens().get(3)).body().warning(), "a wrong code is warned of");
        expectYes(play);
    }

    private static void text() throws Exception {
        Play play = play("own", new Action.Submit(CODE, true));
        Screen.Code screen = (Screen.Code) play.screens().get(0);
        Cases.equal(CODE, screen.body().text());
        Cases.equal("Trust?", screen.body().whitelisting());
        expectYes(play);
    }

    private static void oneOption() throws Exception {
        Play play = play("singleSelect", new Action.Select("mail"), new Action.Select("phone"));
        Screen.Choice screen = (Screen.Choice) play.screens().get(0);
        Cases.equal(false, screen.takesSeveral());
        Cases.equal(
                List.of(
                        new Screen.Option("phone", "Phone ending in 21"),
                        new Screen.Option("mail", "m***@example.com"), new Screen.Option("letter", "Letter")),
                screen.options());
        expectYes(play);
    }

    private static void severalOptions() throws Exception {
        Play play = play("multiSelect", new Action.Select(), new Action.Select("mail", "phone"));
        Cases.equal(true, ((Screen.Choice) play.screens().get(0)).takesSeveral());
        expectYes(play);
    }

    private static void outOfBand() throws Exception {
        Play play = play("oob", new Action.LeaveAndReturn(), new Action.Continue(), new Action.Continue());
        Cases.equal("Continue", ((Screen.OutOfBand) play.screens().get(0)).goOn());
        expectYes(play);
    }

    private static void page() throws Exception {
        Play play = play("html", new Action.Navigate("https://emv3ds/challenge", "POST", "code=1234"));
        Cases.that(((Screen.Page) play.screens().get(0)).html().startsWith("<!DOCTYPE html>"), "a page");
        expectYes(play);
    }

    private static void endings() throws Exception {
        Action wrong = new Action.Submit("9");
        expectStatus("N", play("text", wrong, wrong, wrong));
        Cases.equal(new Ending.Cancelled(), play("text", new Action.Cancel()).ending());
        Ending.ProtocolError error = (Ending.ProtocolError) play("faultSealedErro").ending();
        Cases.equal("402", error.errorCode());
        Cases.that(!error.sdkTransactionId().isEmpty(), "whose error it is");
        Ending.RuntimeError failure = (Ending.RuntimeError) play("faultForeignRoot").ending();
        Cases.that(failure.errorMessage().contains("AcsSignedContent"), failure.errorMessage());
    }

    /** Last: what the bank answers after it is shown all the same, and would stand before another challenge. */
    private static void timedOut() throws Exception {
        Cases.equal(new Ending.TimedOut(), Play.of(korvane, bank, "text", 0).ending());
    }
}
