package korvane;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/**
 * A JSON value (RFC 8259) that the library wrote. What it writes is well-formed: text that is not ends in an
 * exception, whichever. Immutable.
 */
final class Json {
    /** A map or a list of further values, a text, a number, a boolean or null. */
    private final Object value;

    private Json(Object value) {
        this.value = value;
    }

    static Json of(String text) {
        return new Reader(text).whole();
    }

    /** A member's text; empty where there is none. */
    String text(String name) {
        return member(name) instanceof String text ? text : "";
    }

    boolean flag(String name) {
        return Boolean.TRUE.equals(member(name));
    }

    /** This value's own text; empty where it is none. */
    String text() {
        return value instanceof String text ? text : "";
    }

    List<Json> items() {
        List<Json> items = new ArrayList<>();
        if (value instanceof List<?> list)
            for (Object item : list) items.add((Json) item);
        return items;
    }

    List<Json> items(String name) {
        return new Json(member(name)).items();
    }

    Map<String, Json> members() {
        Map<String, Json> members = new LinkedHashMap<>();
        if (value instanceof Map<?, ?> map)
            map.forEach((name, member) -> members.put((String) name, (Json) member));
        return members;
    }

    private Object member(String name) {
        return value instanceof Map<?, ?> map && map.get(name) instanceof Json json ? json.value : null;
    }

    private static final class Reader {
        private final String text;
        private int at;

        Reader(String text) {
            this.text = text;
        }

        Json whole() {
            Json whole = value();
            if (next() != '\0') throw wrong();
            return whole;
        }

        private Json value() {
            return new Json(
                switch (next()) {
                    case '{' -> object();
                    case '[' -> list();
                    case '"' -> string();
                    default -> word();
                });
        }

        private Map<String, Json> object() {
            Map<String, Json> members = new LinkedHashMap<>();
            for (take('{'); next() != '}'; skipComma('}')) {
                next();
                String name = string();
                take(':');
                members.put(name, value());
            }
            take('}');
            return members;
        }

        private List<Json> list() {
            List<Json> items = new ArrayList<>();
            for (take('['); next() != ']'; skipComma(']')) items.add(value());
            take(']');
            return items;
        }

        private String string() {
            StringBuilder string = new StringBuilder();
            take('"');
            while (text.charAt(at) != '"') {
                char character = text.charAt(at++);
                string.append(character == '\\' ? escaped() : character);
            }
            take('"');
            return string.toString();
        }

        private char escaped() {
            char kind = text.charAt(at++);
            if (kind == 'u') return (char) Integer.parseInt(text.substring(at, at += 4), 16);
            int known = "bfnrt".indexOf(kind);
            return known < 0 ? kind : "\b\f\n\r\t".charAt(known);
        }

        private Object word() {
            int begin = at;
            while (at < text.length() && ",]} \t\r\n".indexOf(text.charAt(at)) < 0) ++at;
            String word = text.substring(begin, at);
            return switch (word) {
                case "true", "false" -> Boolean.valueOf(word);
                case "null" -> null;
                default -> Double.valueOf(word);
            };
        }

        /** The next character that is no space, which stays; 0 at the end. */
        private char next() {
            while (at < text.length() && " \t\r\n".indexOf(text.charAt(at)) >= 0) ++at;
            return at < text.length() ? text.charAt(at) : '\0';
        }

        private void take(char expected) {
            if (next() != expected) throw wrong();
            ++at;
        }

        private void skipComma(char end) {
            if (next() != end) take(',');
        }

        private IllegalArgumentException wrong() {
            return new IllegalArgumentException("What the library wrote is no JSON at " + at + ".");
        }
    }
}
