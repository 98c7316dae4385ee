package payment;

import java.io.ByteArrayInputStream;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.net.URI;
import java.net.http.HttpClient;
import java.net.http.HttpRequest;
import java.net.http.HttpResponse;
import java.net.http.HttpResponse.BodySubscriber;
import java.nio.ByteBuffer;
import java.nio.charset.StandardCharsets;
import java.security.GeneralSecurityException;
import java.security.KeyStore;
import java.security.cert.Certificate;
import java.security.cert.CertificateFactory;
import java.security.cert.X509Certificate;
import java.util.List;
import java.util.Map;
import java.util.concurrent.CompletableFuture;
import java.util.concurrent.CompletionStage;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.Flow;
import javax.net.ssl.SSLContext;
import javax.net.ssl.TrustManager;
import javax.net.ssl.TrustManagerFactory;
import javax.net.ssl.X509TrustManager;
import korvane.Host;

/**
 * What goes to the bank, by Java's own client: with the authorities, the proxy and the TLS settings that the
 * rest of an application has. It follows no redirects and keeps no cookies. A body is read up to the library's
 * limit; how long a head may be is Java's own to say.
 */
public final class HttpClientNetwork implements Host.Network {
    private static final int LONGEST_BODY = 16 << 20;

    private final Map<String, HttpClient> clients = new ConcurrentHashMap<>();

    @Override
    public CompletableFuture<Host.Response> send(Host.Request request) {
        HttpRequest.BodyPublisher body =
                request.body() == null
                        ? HttpRequest.BodyPublishers.noBody()
                        : HttpRequest.BodyPublishers.ofByteArray(request.body());
        HttpRequest.Builder own =
                HttpRequest.newBuilder(URI.create(request.url()))
                        .timeout(request.patience())
                        .method(request.method(), body);
        for (Host.Header header : request.headers()) own.header(header.name(), header.value());
        HttpClient client = clients.computeIfAbsent(request.authorities(), HttpClientNetwork::clientTrusting);
        return client.sendAsync(own.build(), head -> new LimitedBody())
                .thenApply(HttpClientNetwork::responseOf);
    }

    /** A client that trusts authorities beside those of Java: certificates in PEM, one after the other. */
    public static HttpClient clientTrusting(String authorities) {
        try {
            SSLContext context = SSLContext.getInstance("TLS");
            context.init(null, managersOf(withJavas(authorities)), null);
            return HttpClient.newBuilder().version(HttpClient.Version.HTTP_1_1).sslContext(context).build();
        } catch (GeneralSecurityException | IOException failure) {
            throw new IllegalArgumentException("These authorities are none.", failure);
        }
    }

    private static KeyStore withJavas(String authorities) throws GeneralSecurityException, IOException {
        KeyStore all = KeyStore.getInstance(KeyStore.getDefaultType());
        all.load(null, null);
        for (TrustManager manager : managersOf(null))
            if (manager instanceof X509TrustManager javas)
                for (X509Certificate one : javas.getAcceptedIssuers())
                    all.setCertificateEntry("" + all.size(), one);
        byte[] pem = authorities.getBytes(StandardCharsets.US_ASCII);
        CertificateFactory factory = CertificateFactory.getInstance("X.509");
        for (Certificate one : factory.generateCertificates(new ByteArrayInputStream(pem)))
            all.setCertificateEntry("" + all.size(), one);
        return all;
    }

    private static TrustManager[] managersOf(KeyStore store) throws GeneralSecurityException {
        String algorithm = TrustManagerFactory.getDefaultAlgorithm();
        TrustManagerFactory factory = TrustManagerFactory.getInstance(algorithm);
        factory.init(store);
        return factory.getTrustManagers();
    }

    private static Host.Response responseOf(HttpResponse<byte[]> response) {
        String location = response.headers().firstValue("Location").orElse(null);
        String whole = location == null ? null : response.uri().resolve(location).toString();
        return new Host.Response(response.statusCode(), whole, response.body());
    }

    /** A body that is not read beyond what the library takes. */
    private static final class LimitedBody implements BodySubscriber<byte[]> {
        private final CompletableFuture<byte[]> body = new CompletableFuture<>();
        private final ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        private Flow.Subscription subscription;

        @Override
        public CompletionStage<byte[]> getBody() {
            return body;
        }

        @Override
        public void onSubscribe(Flow.Subscription its) {
            subscription = its;
            subscription.request(Long.MAX_VALUE);
        }

        @Override
        public void onNext(List<ByteBuffer> parts) {
            for (ByteBuffer part : parts) {
                byte[] copy = new byte[part.remaining()];
                part.get(copy);
                bytes.writeBytes(copy);
            }
            if (bytes.size() <= LONGEST_BODY) return;
            subscription.cancel();
            body.completeExceptionally(new IOException("The answer is too long."));
        }

        @Override
        public void onError(Throwable failure) {
            body.completeExceptionally(failure);
        }

        @Override
        public void onComplete() {
            body.complete(bytes.toByteArray());
        }
    }
}
