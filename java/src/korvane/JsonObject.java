package korvane;

import java.util.Arrays;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/**
 * A JSON object for the library, of texts, lists of texts and booleans. It is written in ASCII, half pairs of
 * surrogates too, which the library refuses then. What is written is in the bytes alone, which whoever asked
 * for them can wipe.
 */
final class JsonObject {
    private static final int LONGEST_ESCAPE = 6;
    private static final int AROUND_A_VALUE = 8;

    private final byte[] room;
    private int length;

    private JsonObject(int size) {
        room = new byte[size];
    }

    /** Members from names and values in turn; one without a value is left out. */
    static Map<String, Object> members(Object... namesAndValues) {
        Map<String, Object> members = new LinkedHashMap<>();
        for (int index = 0; index < namesAndValues.length; index += 2)
            if (namesAndValues[index + 1] != null)
                members.put((String) namesAndValues[index], namesAndValues[index + 1]);
        return members;
    }

    static byte[] bytes(Map<String, Object> members) {
        int size = AROUND_A_VALUE;
        for (Map.Entry<String, Object> member : members.entrySet())
            size += sizeOf(member.getKey()) + sizeOf(member.getValue());
        JsonObject object = new JsonObject(size);
        object.write(members);
        byte[] bytes = Arrays.copyOf(object.room, object.length);
        Arrays.fill(object.room, (byte) 0);
        return bytes;
    }

    private static int sizeOf(Object value) {
        int size = AROUND_A_VALUE;
        if (value instanceof CharSequence text) size += LONGEST_ESCAPE * text.length();
        if (value instanceof List<?> list)
            for (Object item : list) size += sizeOf(item);
        return size;
    }

    private void write(Map<String, Object> members) {
        put('{');
        for (Map.Entry<String, Object> member : members.entrySet()) {
            if (length > 1) put(',');
            write(member.getKey());
            put(':');
            write(member.getValue());
        }
        put('}');
    }

    private void write(Object value) {
        if (value instanceof List<?> list) {
            put('[');
            for (int index = 0; index < list.size(); ++index) {
                if (index > 0) put(',');
                write(list.get(index));
            }
            put(']');
        } else if (value instanceof Boolean flag) {
            for (char character : flag.toString().toCharArray()) put(character);
        } else {
            writeText((CharSequence) value);
        }
    }

    private void writeText(CharSequence text) {
        put('"');
        for (int index = 0; index < text.length(); ++index) {
            char character = text.charAt(index);
            if (character >= ' ' && character <= '~' && character != '"' && character != '\\') {
                put(character);
            } else {
                put('\\');
                put('u');
                for (int shift = 12; shift >= 0; shift -= 4)
                    put(Character.forDigit(character >> shift & 0xF, 16));
            }
        }
        put('"');
    }

    private void put(char ascii) {
        room[length++] = (byte) ascii;
    }
}
