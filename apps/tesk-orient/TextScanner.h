#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace App {

/// Steps through a text token by token and knows the line it is on. Tokens are separated by white
/// space; "\n", "\r\n" and a lone "\r" end a line.
class TextScanner {
 public:
    /// The text must outlive the scanner. Where `comment` is not 0, a token that begins with it
    /// and the rest of its line are passed over. Where `joinsLines` is set, a backslash at the end
    /// of a line continues it.
    explicit TextScanner(std::string_view text, char comment = '\0', bool joinsLines = false)
        : m_text(text), m_comment(comment), m_joinsLines(joinsLines) {}

    /// The next token, on this line or a later one; empty at the end of the text.
    std::string_view next();

    /// The next token on this line; empty where the line has no more.
    std::string_view nextOnLine();

    void skipLine();

    /// Counted from 1: the line of the token that was returned last.
    std::size_t line() const { return m_line; }

    /// Where the next token is looked for, in bytes from the start.
    std::size_t position() const { return m_pos; }

    /// Throws InputFailure "line N: <trouble>", N being line().
    [[noreturn]] void fail(const std::string& trouble) const;

    /// The token as a number, by the rules of C, '.' as the decimal point; "nan" and "inf" are
    /// numbers too. Throws InputFailure that names the line where it is none.
    double number(std::string_view token) const;

    /// A position's coordinate: a finite float. `vertex`, counted from 1, goes into the message.
    float coordinate(std::string_view token, std::size_t vertex) const;

    /// A whole number. Throws InputFailure that names the line where it is none.
    long long integer(std::string_view token) const;

 private:
    bool atLineEnd() const { return m_text[m_pos] == '\n' || m_text[m_pos] == '\r'; }
    void passLineEnd();
    bool passContinuation();
    void passBlanks();

    std::string_view m_text;
    std::size_t m_pos = 0;
    std::size_t m_line = 1;
    char m_comment;
    bool m_joinsLines;
};

/// A token for a message: shortened, and without control characters.
std::string quoted(std::string_view token);

/// A file's name in UTF-8 for a message: whole unless it is very long, without control characters.
std::string quotedName(std::string_view name);

}  // namespace App
