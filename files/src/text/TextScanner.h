#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Tesk::files {

/// Steps through a text token by token and knows the line it is on. Tokens are separated by white
/// space; "\n", "\r\n" and a lone "\r" end a line.
class TextScanner {
 public:
    /// The text must outlive the scanner. If `comment` is not 0, a token that begins with it is
    /// skipped, with the rest of its line. If `joinsLines` is set, a backslash at the end of a
    /// line continues it. `line` is the number of the first line.
    explicit TextScanner(std::string_view text, char comment = '\0', bool joinsLines = false,
                         std::size_t line = 1)
        : m_text(text), m_line(line), m_comment(comment), m_joinsLines(joinsLines) {}

    /// The next token, on this line or a later one; empty at the end of the text.
    std::string_view next();

    /// The next token on this line; empty if the line has no more.
    std::string_view nextOnLine();

    /// What is left of this line, without blanks at its ends; goes on to the next line.
    std::string_view restOfLine();

    void skipLine();

    /// Counted from 1: the line of the token that was returned last.
    std::size_t line() const { return m_line; }

    /// How many bytes are left.
    std::size_t left() const { return m_text.size() - m_pos; }

    /// The place from which the next token is searched, in bytes from the start.
    std::size_t position() const { return m_pos; }

    bool isAtEnd() const { return m_pos >= m_text.size(); }

    /// Throws PartFileError with line().
    [[noreturn]] void fail(const std::string& trouble) const;

    /// The token as a number; "nan" and "inf" are numbers too. Throws PartFileError if it is
    /// not a number.
    double number(std::string_view token) const;

    /// A position's coordinate: the nearest float, finite. `vertex`, counted from 1, goes into the
    /// message of the PartFileError that it throws otherwise.
    float coordinate(std::string_view token, std::size_t vertex) const;

    /// A whole number. Throws PartFileError if the token is not one.
    long long integer(std::string_view token) const;

 private:
    void passLineEnd();
    bool passContinuation();
    void passBlanks();

    std::string_view m_text;
    std::size_t m_pos = 0;
    std::size_t m_line;
    char m_comment;
    bool m_joinsLines;
};

}  // namespace Tesk::files
