package korvane;

/**
 * What the application sends through its 3DS server.
 *
 * @param deviceData the sealed device data, a compact JWE
 * @param sdkTransactionId the transaction
 * @param sdkAppId the application's installation
 * @param sdkReferenceNumber the library's reference number
 * @param sdkEphemeralPublicKey a JWK as JSON
 * @param messageVersion the version of the protocol
 * @param json all of it as a JSON object: "deviceData", "sdkTransId", "sdkAppID", "sdkReferenceNum",
 *     "ephemeralPublic" (an object) and "messageVersion"
 */
public record AuthenticationRequest(
        String deviceData,
        String sdkTransactionId,
        String sdkAppId,
        String sdkReferenceNumber,
        String sdkEphemeralPublicKey,
        String messageVersion,
        String json) {}
