package korvane;

import java.util.List;

/**
 * What the bank asks the cardholder, for the application to show. All of it comes from the bank and is plain
 * text, but for a page. Texts that a screen does not have are empty.
 */
public sealed interface Screen {
    /**
     * What all screens have but a page.
     *
     * @param header the title of the screen
     * @param label what the field or the list is called
     * @param text what is asked
     * @param warning whether that is a warning, as after a wrong code
     * @param whyLabel the title of a section that can be opened
     * @param whyText what it holds
     * @param expandLabel the title of another one
     * @param expandText what that holds
     * @param whitelisting a question with a box to tick: whether to trust this merchant from now on
     */
    record Body(
            String header,
            String label,
            String text,
            boolean warning,
            String whyLabel,
            String whyText,
            String expandLabel,
            String expandText,
            String whitelisting) {}

    /**
     * A row of a list.
     *
     * @param key what {@link Action.Select} names it by
     * @param label what is shown
     */
    record Option(String key, String label) {}

    /**
     * Asks for a code.
     *
     * @param landscape whether the library lays it out for a device that is held across
     * @param body the rest of the screen
     * @param typed what has been typed so far
     * @param submit the title of the button that sends the code
     * @param resend the title of the button that asks for another code
     */
    record Code(boolean landscape, Body body, String typed, String submit, String resend) implements Screen {}

    /**
     * Asks for a choice.
     *
     * @param landscape whether the library lays it out for a device that is held across
     * @param body the rest of the screen
     * @param takesSeveral whether any number of options can be chosen; one otherwise
     * @param options the rows, in their order
     * @param submit the title of the button to go on
     */
    record Choice(boolean landscape, Body body, boolean takesSeveral, List<Option> options, String submit)
            implements Screen {}

    /**
     * Asks for an approval elsewhere, as in the bank's application.
     *
     * @param landscape whether the library lays it out for a device that is held across
     * @param body the rest of the screen
     * @param goOn the title of the button to go on after that
     */
    record OutOfBand(boolean landscape, Body body, String goOn) implements Screen {}

    /**
     * The bank's own page. It is to be shown without scripts and without a network: where a form of it or a
     * link leads is told by {@link Action.Navigate}.
     *
     * @param landscape whether the device is held across
     * @param html the page
     */
    record Page(boolean landscape, String html) implements Screen {}
}
