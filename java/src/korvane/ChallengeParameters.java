package korvane;

/**
 * The values of the authentication response; null where the response has none.
 *
 * @param threeDSServerTransactionId "threeDSServerTransID"
 * @param acsTransactionId "acsTransID"
 * @param acsReferenceNumber "acsReferenceNumber"
 * @param acsSignedContent "acsSignedContent", a compact JWS
 * @param threeDSRequestorAppUrl where the bank's application comes back to
 */
public record ChallengeParameters(
        String threeDSServerTransactionId,
        String acsTransactionId,
        String acsReferenceNumber,
        String acsSignedContent,
        String threeDSRequestorAppUrl) {
    byte[] json() {
        return JsonObject.bytes(
                JsonObject.members(
                        "threeDSServerTransID", threeDSServerTransactionId,
                        "acsTransID", acsTransactionId,
                        "acsRefNumber", acsReferenceNumber,
                        "acsSignedContent", acsSignedContent,
                        "threeDSRequestorAppURL", threeDSRequestorAppUrl));
    }
}
