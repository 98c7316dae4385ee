package korvane;

/**
 * A directory server of a card scheme and its certificates, which are looked at when a transaction needs
 * them. The arrays are not copied.
 *
 * @param identifier as the scheme calls it, such as "A000000003"
 * @param algorithm the kind of key in the certificate
 * @param certificate what device data is sealed for: DER of at most 64 KiB
 * @param root what the bank's chain must end in: DER of at most 64 KiB
 */
public record DirectoryServer(String identifier, Algorithm algorithm, byte[] certificate, byte[] root) {
    /** A kind of key. */
    public enum Algorithm {
        /** RSA. */
        RSA,
        /** Elliptic curves. */
        EC
    }
}
