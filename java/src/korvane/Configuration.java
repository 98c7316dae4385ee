package korvane;

import java.util.List;
import java.util.Objects;
import java.util.concurrent.Executor;

/**
 * What the library is made ready with.
 *
 * @param servers the directory servers that payments go to, at most 1,000
 * @param locale for the device data, as in "fr-CA"; null for the machine's
 * @param theme the look of the screens as JSON by {@code theme.schema.json}; null for the library's own
 * @param authorities certificates in PEM that are trusted for HTTPS beside the system's, as a test bed needs;
 *     null for none
 * @param host what the machine gives the library; null for the operating system's own
 * @param mainThread runs what it is given one after the other, always on one thread: the application's main
 *     one. Null for a thread of the library's own. It may not be shut down before {@link Korvane#close} has
 *     returned.
 */
public record Configuration(
        List<DirectoryServer> servers,
        String locale,
        String theme,
        String authorities,
        Host host,
        Executor mainThread) {
    /**
     * With all else as the machine has it.
     *
     * @param servers the directory servers that payments go to
     */
    public Configuration(DirectoryServer... servers) {
        this(List.of(servers), null, null, null, null, null);
    }

    /**
     * The same with a locale.
     *
     * @param locale for the device data, as in "fr-CA"
     * @return another configuration
     */
    public Configuration withLocale(String locale) {
        Objects.requireNonNull(locale, "locale");
        return new Configuration(servers, locale, theme, authorities, host, mainThread);
    }

    /**
     * The same with a look. What is wrong with it is told by {@link Korvane#open}, line by line.
     *
     * @param theme JSON by {@code theme.schema.json}
     * @return another configuration
     */
    public Configuration withTheme(String theme) {
        Objects.requireNonNull(theme, "theme");
        return new Configuration(servers, locale, theme, authorities, host, mainThread);
    }

    /**
     * The same with further authorities for HTTPS.
     *
     * @param authorities certificates in PEM, one after the other
     * @return another configuration
     */
    public Configuration withAuthorities(String authorities) {
        Objects.requireNonNull(authorities, "authorities");
        return new Configuration(servers, locale, theme, authorities, host, mainThread);
    }

    /**
     * The same on what a machine gives.
     *
     * @param host the machine
     * @return another configuration
     */
    public Configuration withHost(Host host) {
        Objects.requireNonNull(host, "host");
        return new Configuration(servers, locale, theme, authorities, host, mainThread);
    }

    /**
     * The same with the application's main thread, on which everything is told then.
     *
     * @param mainThread runs what it is given one after the other, always on one thread
     * @return another configuration
     */
    public Configuration withMainThread(Executor mainThread) {
        Objects.requireNonNull(mainThread, "mainThread");
        return new Configuration(servers, locale, theme, authorities, host, mainThread);
    }
}
