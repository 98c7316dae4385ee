package korvane;

import java.nio.ByteBuffer;
import java.nio.CharBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.StandardCharsets;
import korvane.KorvaneException.Result;

/** Texts as the library has them: UTF-8. The zero behind them is put there by the native half. */
final class Text {
    private Text() {}

    /**
     * The bytes of a text; null for null. What would arrive as another text is refused: half of a pair of
     * surrogates, and a character 0, with which it would end.
     */
    static byte[] bytes(String text) {
        if (text == null) return null;
        if (text.indexOf('\0') >= 0) throw KorvaneException.of(Result.BAD_ARGUMENT, "A text has a character 0.");
        try {
            ByteBuffer encoded = StandardCharsets.UTF_8.newEncoder().encode(CharBuffer.wrap(text));
            byte[] bytes = new byte[encoded.remaining()];
            encoded.get(bytes);
            return bytes;
        } catch (CharacterCodingException failure) {
            throw KorvaneException.of(Result.BAD_ARGUMENT, "A text has half of a pair of surrogates.");
        }
    }

    /** The text of bytes; null for null. */
    static String of(byte[] bytes) {
        return bytes == null ? null : new String(bytes, StandardCharsets.UTF_8);
    }
}
