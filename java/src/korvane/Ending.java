package korvane;

/** How a challenge ended: once for each, and in one of these ways. */
public sealed interface Ending {
    /**
     * The bank has decided. What counts is what the 3DS server hears of it; this says when to ask there.
     *
     * @param sdkTransactionId the transaction, as in the authentication request
     * @param transactionStatus one letter, such as "Y" for authenticated and "N" for not
     */
    record Completed(String sdkTransactionId, String transactionStatus) implements Ending {}

    /** The cardholder has cancelled. */
    record Cancelled() implements Ending {}

    /** The time that the challenge was given is over. */
    record TimedOut() implements Ending {}

    /**
     * The bank, or the library for what the bank sent, has ended the challenge by an error message.
     *
     * @param sdkTransactionId the transaction, as in the authentication request
     * @param errorCode three digits
     * @param errorDescription what the code says
     * @param errorDetails more of it, such as the members at fault
     * @param transactionId the transaction that the error message names
     */
    record ProtocolError(
            String sdkTransactionId,
            String errorCode,
            String errorDescription,
            String errorDetails,
            String transactionId)
            implements Ending {}

    /**
     * The library cannot go on.
     *
     * @param errorCode a number
     * @param errorMessage why
     */
    record RuntimeError(String errorCode, String errorMessage) implements Ending {}
}
