/**
 * The library for Java: a payment's challenge, by screens that the application draws itself.
 *
 * <p>{@link korvane.Korvane#open Korvane.open} makes the library ready, {@link korvane.Korvane#transaction}
 * begins a payment, and {@link korvane.Transaction#challenge} takes the cardholder through the bank's
 * questions: the application hears of each {@link korvane.Screen}, answers it by an {@link korvane.Action},
 * and hears of the {@link korvane.Ending}. What a phone or a desktop gives the library is a {@link
 * korvane.Host}.
 *
 * <p>All of it may be called on any thread. What the library tells it tells on one thread, the main one,
 * which is the application's own where the {@link korvane.Configuration} names its executor. No parameter may
 * be null that does not say so; one that is ends in a {@link NullPointerException} before anything is done.
 * Texts that are missing on a screen are empty.
 */
package korvane;
