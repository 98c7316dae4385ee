#include "tools/jose/Batch.h"

#include "Input/InputError.h"
#include "Platform/JSON.h"
#include "Platform/JSONBreak.h"
#include "Platform/Security/Secret.h"
#include "tools/common/Terminal.h"
#include "tools/jose/OperationTable.h"

#include <optional>

namespace korvane::jose {

using namespace input;
using namespace tools;

namespace {

constexpr std::size_t kLongestLine = std::size_t{64} << 20U;

/// One line as it was read. Lines hold keys.
struct Line {
    SecretBytes text;
    bool isTooLong = false;
};

/// The next line without its end, or no value at the end of the input. What a line has beyond
/// the limit is dropped.
std::optional<Line> readLine(std::streambuf& in) {
    using Traits = std::streambuf::traits_type;
    auto next = in.sbumpc();
    if (Traits::eq_int_type(next, Traits::eof())) return std::nullopt;
    Line line;
    for (; !Traits::eq_int_type(next, Traits::eof()) && next != '\n'; next = in.sbumpc()) {
        line.isTooLong = line.isTooLong || line.text.size() == kLongestLine;
        if (!line.isTooLong) line.text.push_back(static_cast<std::uint8_t>(next));
    }
    return line;
}

JSON performed(const Line& line) {
    if (line.isTooLong)
        throw InputError(InputErrorCase::lineTooLong, Description{"The line has more than 64 MiB."});
    std::optional<JSON> read = JSONSerialization::jsonObject(asText(line.text));
    if (!read || !read->is_object())
        throw InputError(InputErrorCase::notJSON, Description{complaintAboutLine(asText(line.text))});
    const SecretJSON object(std::move(*read));
    JSON answer{{"ok", true}};
    answer.update(performLine(*object));
    return answer;
}

bool isUpper(char character) {
    return character >= 'A' && character <= 'Z';
}

JSON refused(std::string_view error, std::string description) {
    return {{"ok", false}, {"error", error}, {"description", std::move(description)}};
}

/// The name of a failure's case as words: "component not valid base64URL".
std::string wordsOf(std::string_view name) {
    name.remove_prefix(name.find('.') + 1);
    std::string words;
    for (std::size_t index = 0; index < name.size(); ++index) {
        const bool isCapital = isUpper(name[index]);
        const bool isStart = isCapital && index > 0 && !isUpper(name[index - 1]);
        const bool isWord = index + 1 < name.size() && !isUpper(name[index + 1]);
        if (isStart) words += ' ';
        words += isStart && isWord ? static_cast<char>(name[index] - 'A' + 'a') : name[index];
    }
    return words;
}

/// A failure that carries no words says its number, which tells nobody anything.
std::string descriptionOf(const Failure& failure) {
    const std::string own = failure.localizedDescription();
    return own == failure.genericDescription() ? "The operation failed: " + wordsOf(failure.what()) + "."
                                               : own;
}

JSON answerTo(const Line& line) {
    try {
        return performed(line);
    } catch (const Failure& failure) {
        return refused(failure.what(), descriptionOf(failure));
    } catch (const std::exception& error) {
        return refused("InternalError", error.what());
    }
}

} // namespace

BatchEnd serveBatch(std::istream& in, std::ostream& out) {
    auto end = BatchEnd::allServed;
    while (const std::optional<Line> line = readLine(*in.rdbuf())) {
        const SecretJSON answer(answerTo(*line));
        std::string text = jsonLine(*answer);
        out << text << std::flush;
        cleanse(text);
        if (!out) return BatchEnd::outputLost;
        if (!(*answer)["ok"].get<bool>()) end = BatchEnd::someRefused;
    }
    return end;
}

} // namespace korvane::jose
