package korvane;

import java.util.ArrayList;
import java.util.List;

/** The library's events as values. */
final class Events {
    private Events() {}

    /** The screen of an event. */
    static Screen screen(Json event) {
        boolean landscape = event.text("orientation").equals("LANDSCAPE");
        String submit = event.text("submit");
        return switch (event.text("uiType")) {
            case "01" ->
                new Screen.Code(landscape, body(event), event.text("typed"), submit, event.text("resend"));
            case "02" -> new Screen.Choice(landscape, body(event), false, options(event), submit);
            case "03" -> new Screen.Choice(landscape, body(event), true, options(event), submit);
            case "04" -> new Screen.OutOfBand(landscape, body(event), event.text("continue"));
            default -> new Screen.Page(landscape, event.text("html"));
        };
    }

    /** The ending of an event; null for one that tells none. */
    static Ending ending(Json event) {
        return switch (event.text("event")) {
            case "completed" ->
                new Ending.Completed(event.text("sdkTransactionID"), event.text("transactionStatus"));
            case "cancelled" -> new Ending.Cancelled();
            case "timedout" -> new Ending.TimedOut();
            case "protocolError" ->
                new Ending.ProtocolError(
                        event.text("sdkTransactionID"), event.text("errorCode"),
                        event.text("errorDescription"), event.text("errorDetails"),
                        event.text("transactionID"));
            case "runtimeError" ->
                new Ending.RuntimeError(event.text("errorCode"), event.text("errorMessage"));
            default -> null;
        };
    }

    /** What the checks of the device found. */
    static List<Korvane.Warning> warnings(Json list) {
        List<Korvane.Warning> warnings = new ArrayList<>();
        for (Json item : list.items())
            warnings.add(
                    new Korvane.Warning(
                            item.text("id"), item.text("message"),
                            Korvane.Severity.valueOf(item.text("severity"))));
        return List.copyOf(warnings);
    }

    private static Screen.Body body(Json event) {
        return new Screen.Body(
                event.text("header"), event.text("label"), event.text("text"), event.flag("warning"),
                event.text("whyLabel"), event.text("whyText"), event.text("expandLabel"),
                event.text("expandText"), event.text("whitelisting"));
    }

    private static List<Screen.Option> options(Json event) {
        List<Screen.Option> options = new ArrayList<>();
        for (Json row : event.items("options"))
            row.members().forEach((key, label) -> options.add(new Screen.Option(key, label.text())));
        return List.copyOf(options);
    }
}
