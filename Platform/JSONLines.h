#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korvane {

/// On which line of a JSON text each member stands, from 1, by its path: `steps[0].screen.acsUiType`. The
/// empty path is the whole text.
class JSONLines {
public:
    /// @param text  one valid JSON text.
    explicit JSONLines(std::string_view text);

    /// The line of a path, or of the nearest that holds it where it is absent.
    [[nodiscard]] std::size_t lineOf(std::string_view path) const;

    /// The members whose names their objects have already: paths and lines.
    [[nodiscard]] const std::vector<std::pair<std::string, std::size_t>>& repeated() const noexcept {
        return repeated_;
    }

private:
    void readValue(const std::string& path);
    void readObject(const std::string& path);
    void readArray(const std::string& path);
    [[nodiscard]] std::string readString();
    void skipSpace();
    void readScalar();
    [[nodiscard]] bool skip(char wanted);
    [[nodiscard]] bool isAt(std::string_view anyOf) const;

    std::string_view text_;
    std::size_t position_ = 0;
    std::size_t line_ = 1;
    std::map<std::string, std::size_t, std::less<>> lines_;
    std::vector<std::pair<std::string, std::size_t>> repeated_;
};

/// The line of a position in a text, from 1.
[[nodiscard]] std::size_t lineAt(std::string_view text, std::size_t position);

/// The path of a member of the value at `path`.
[[nodiscard]] std::string memberPath(std::string_view path, std::string_view name);

/// The path of an element of the list at `path`.
[[nodiscard]] std::string elementPath(std::string_view path, std::size_t index);

} // namespace korvane
