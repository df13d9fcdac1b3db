#include "text/TextScanner.h"

#include <cmath>

#include "TeskPartFiles/PartFiles.h"
#include "text/Message.h"
#include "text/Numbers.h"

namespace Tesk::files {

namespace {

bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}
bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}
bool isSpace(char c) {
    // Almost every character of a token is above all of these.
    return c <= ' ' && (isBlank(c) || isLineEnd(c));
}

}  // namespace

void TextScanner::passLineEnd() {
    if (m_text[m_pos] == '\r' && m_pos + 1 < m_text.size() && m_text[m_pos + 1] == '\n') ++m_pos;
    ++m_pos;
    ++m_line;
}

bool TextScanner::passContinuation() {
    if (!m_joinsLines || m_text[m_pos] != '\\') return false;
    std::size_t after = m_pos + 1;
    while (after < m_text.size() && isBlank(m_text[after])) ++after;
    if (after == m_text.size() || !isLineEnd(m_text[after])) return false;
    m_pos = after;
    passLineEnd();
    return true;
}

void TextScanner::passBlanks() {
    while (m_pos < m_text.size()) {
        if (isBlank(m_text[m_pos])) {
            ++m_pos;
        } else if (m_comment != '\0' && m_text[m_pos] == m_comment) {
            while (m_pos < m_text.size() && !isLineEnd(m_text[m_pos])) ++m_pos;
        } else if (!passContinuation()) {
            return;
        }
    }
}

std::string_view TextScanner::nextOnLine() {
    passBlanks();
    const char* const text = m_text.data();
    const std::size_t size = m_text.size();
    const std::size_t start = m_pos;
    std::size_t end = start;
    while (end < size && !isSpace(text[end])) ++end;
    // A backslash that ends the line right behind a token is none of its characters.
    const bool mayContinue = m_joinsLines && end < size && end > start + 1 && text[end - 1] == '\\';
    m_pos = mayContinue ? end - 1 : end;
    return m_text.substr(start, m_pos - start);
}

std::string_view TextScanner::next() {
    while (m_pos < m_text.size()) {
        const std::string_view token = nextOnLine();
        if (!token.empty()) return token;
        if (m_pos < m_text.size()) passLineEnd();
    }
    return {};
}

std::string_view TextScanner::restOfLine() {
    passBlanks();
    const std::size_t start = m_pos;
    skipLine();
    std::size_t end = m_pos;
    while (end > start && isSpace(m_text[end - 1])) --end;
    return m_text.substr(start, end - start);
}

void TextScanner::skipLine() {
    while (m_pos < m_text.size() && !isLineEnd(m_text[m_pos])) {
        if (!passContinuation()) ++m_pos;
    }
    if (m_pos < m_text.size()) passLineEnd();
}

void TextScanner::fail(const std::string& trouble) const {
    throw PartFileError(trouble, m_line);
}

double TextScanner::number(std::string_view token) const {
    if (token.empty()) fail("a number is missing");
    const auto value = doubleOf(token);
    if (!value) fail(quoted(token) + " is not a number");
    return *value;
}

float TextScanner::coordinate(std::string_view token, std::size_t vertex) const {
    if (token.empty()) fail("a number is missing");
    const auto value = floatOf(token);
    if (!value) fail(quoted(token) + " is not a number");
    if (!std::isfinite(*value)) {
        fail(message("vertex ", vertex, " has a coordinate that is not finite (", quoted(token),
                     ")"));
    }
    return *value;
}

long long TextScanner::integer(std::string_view token) const {
    if (token.empty()) fail("a whole number is missing");
    const auto value = wholeNumberOf(token);
    if (!value) fail(quoted(token) + " is not a whole number");
    return *value;
}

}  // namespace Tesk::files
