package korvane;

import java.io.IOException;
import java.net.URI;
import java.net.http.HttpClient;
import java.net.http.HttpRequest;
import java.net.http.HttpResponse;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Comparator;
import java.util.List;
import java.util.stream.Stream;
import payment.HttpClientNetwork;

/** korvane-acs as a child process, and the application's 3DS server. */
final class Bank implements AutoCloseable {
    static final String SERVER = "A999999999";

    private final Path folder = Files.createTempDirectory("korvane-java-");
    private final Process process;
    private final Json listening;
    private final HttpClient client;

    /** With scenarios of the test's own beside those that the tool has: names and JSON in turn. */
    Bank(String... scenarios) throws IOException {
        Path own = Files.createDirectory(folder.resolve("scenarios"));
        for (int index = 0; index < scenarios.length; index += 2)
            Files.writeString(own.resolve(scenarios[index] + ".json"), scenarios[index + 1]);
        process =
                new ProcessBuilder(
                                System.getenv("KORVANE_ACS"), "--quiet",
                                "--pki", folder.resolve("pki").toString(), "--scenarios", own.toString())
                        .redirectError(ProcessBuilder.Redirect.INHERIT)
                        .start();
        Runtime.getRuntime().addShutdownHook(new Thread(this::close));
        listening = Json.of(process.inputReader().readLine());
        client = HttpClientNetwork.clientTrusting(authorities());
    }

    String authorities() throws IOException {
        return Files.readString(Path.of(listening.text("tlsRoot")));
    }

    Configuration configuration() throws IOException {
        DirectoryServer server =
                new DirectoryServer(
                        SERVER, DirectoryServer.Algorithm.EC,
                        bytes("deviceDataEC"), bytes("directoryServerRoot"));
        return new Configuration(server).withLocale("en-GB").withAuthorities(authorities());
    }

    private byte[] bytes(String name) throws IOException {
        return Files.readAllBytes(Path.of(listening.text(name)));
    }

    /** What the 3DS server answers, for a scenario. */
    Json authenticate(Transaction transaction, String scenario) throws IOException, InterruptedException {
        HttpRequest request =
                HttpRequest.newBuilder(URI.create(listening.text("url") + "/authenticate"))
                        .header("Korvane-Scenario", scenario)
                        .POST(HttpRequest.BodyPublishers.ofString(transaction.authenticationRequest().json()))
                        .build();
        String body = client.send(request, HttpResponse.BodyHandlers.ofString()).body();
        return Json.of(body);
    }

    static ChallengeParameters parameters(Json answer) {
        return new ChallengeParameters(
                answer.text("threeDSServerTransID"), answer.text("acsTransID"), answer.text("acsRefNumber"),
                answer.text("acsSignedContent"), answer.text("threeDSRequestorAppURL"));
    }

    @Override
    public void close() {
        process.destroy();
        try (Stream<Path> all = Files.walk(folder)) {
            process.waitFor();
            List<Path> inner = all.sorted(Comparator.reverseOrder()).toList();
            for (Path path : inner) Files.deleteIfExists(path);
        } catch (IOException | InterruptedException gone) {
            // It was closed before.
        }
    }
}
