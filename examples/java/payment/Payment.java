package payment;

import java.net.URI;
import java.net.http.HttpRequest;
import java.net.http.HttpRequest.BodyPublishers;
import java.net.http.HttpResponse.BodyHandlers;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import korvane.*;

/** A payment from a terminal, at a bank for tests. */
public final class Payment {
    public static void main(String[] arguments) throws Exception {
        if (arguments.length != 2) {
            System.err.println("usage: Payment URL-OF-KORVANE-ACS FOLDER-OF-ITS-PKI");
            System.exit(2);
        }
        Path pki = Path.of(arguments[1]);
        String authorities = Files.readString(pki.resolve("tls-root.pem"));
        DirectoryServer scheme = new DirectoryServer("A999999999", DirectoryServer.Algorithm.EC,
                Files.readAllBytes(pki.resolve("device-data-ec.der")),
                Files.readAllBytes(pki.resolve("ds-root.der")));
        Configuration configuration =
                new Configuration(scheme).withLocale("en-GB").withAuthorities(authorities);
        try (Korvane korvane = Korvane.open(configuration);
                Transaction transaction = korvane.transaction("A999999999", "2.2.0")) {
            String response = send(arguments[0], authorities, transaction.authenticationRequest().json());
            ChallengeParameters parameters = new ChallengeParameters(
                    value("threeDSServerTransID", response), value("acsTransID", response),
                    value("acsRefNumber", response), value("acsSignedContent", response), null);
            Challenge challenge = transaction.challenge(parameters, 5, Payment::show);
            Ending ending = challenge.ending().get();
            System.out.println(ending);
            challenge.finished().get();
        }
    }

    /** What an application's 3DS server does, which knows the directory server. */
    private static String send(String url, String authorities, String request) throws Exception {
        HttpRequest post = HttpRequest.newBuilder(URI.create(url + "/authenticate"))
                .POST(BodyPublishers.ofString(request)).build();
        return HttpClientNetwork.clientTrusting(authorities).send(post, BodyHandlers.ofString()).body();
    }

    private static String value(String name, String json) {
        Matcher found = Pattern.compile("\"" + name + "\":\"([^\"]*)\"").matcher(json);
        return found.find() ? found.group(1) : null;
    }

    private static void show(Challenge challenge, Screen screen) {
        System.out.println(screen);
        try {
            challenge.act(answer(screen));
        } catch (KorvaneException.Refusal refusal) {
            System.out.println(refusal.getMessage());
            challenge.act(new Action.Cancel());
        }
    }

    private static Action answer(Screen screen) {
        if (screen instanceof Screen.OutOfBand) return new Action.Continue();
        String line = System.console() == null ? "" : System.console().readLine("> ");
        if (line == null || line.isEmpty()) return new Action.Cancel();
        return screen instanceof Screen.Choice ? new Action.Select(line.split(",")) : new Action.Submit(line);
    }
}
