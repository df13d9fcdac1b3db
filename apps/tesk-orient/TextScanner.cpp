#include "TextScanner.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <limits>

#include "Failure.h"

namespace App {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}
bool isSpace(char c) {
    return isBlank(c) || c == '\n' || c == '\r';
}

std::string_view withoutPlus(std::string_view token) {
    if (token.size() > 1 && token[0] == '+' && token[1] != '-') token.remove_prefix(1);
    return token;
}

// from_chars tells overflow and underflow alike; a negative exponent is underflow.
double outOfRange(std::string_view token) {
    const bool isTiny = token.find("e-") != token.npos || token.find("E-") != token.npos;
    return isTiny ? 0.0 : std::numeric_limits<double>::infinity();
}

}  // namespace

std::string quoted(std::string_view token) {
    constexpr std::size_t kLongest = 24;
    std::string text = "\"";
    for (const char c : token.substr(0, kLongest)) {
        const auto byte = static_cast<unsigned char>(c);
        text += byte < 0x20 || byte >= 0x7f ? '?' : c;
    }
    text += token.size() > kLongest ? "...\"" : "\"";
    return text;
}

std::string quotedName(std::string_view name) {
    constexpr std::size_t kLongest = 150;
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(name[i]); };
    std::size_t end = name.size();
    if (end > kLongest) {
        end = kLongest;
        while (end > 0 && (byteAt(end) & 0xc0) == 0x80) --end;  // not inside a character
    }
    std::string text = "\"";
    for (std::size_t i = 0; i < end; ++i) {
        // Of the control characters, those of ASCII and the second half of Latin-1's.
        const bool isControl = byteAt(i) < 0x20 || byteAt(i) == 0x7f ||
                               (i > 0 && byteAt(i - 1) == 0xc2 && byteAt(i) < 0xa0);
        if (!isControl) text += name[i];
        if (isControl && byteAt(i) >= 0x80) text.pop_back();
        if (isControl) text += '?';
    }
    text += end < name.size() ? "...\"" : "\"";
    return text;
}

void TextScanner::passLineEnd() {
    if (m_text[m_pos] == '\r' && m_pos + 1 < m_text.size() && m_text[m_pos + 1] == '\n') ++m_pos;
    ++m_pos;
    ++m_line;
}

bool TextScanner::passContinuation() {
    if (!m_joinsLines || m_text[m_pos] != '\\' || m_pos + 1 >= m_text.size()) return false;
    const char after = m_text[m_pos + 1];
    if (after != '\n' && after != '\r') return false;
    ++m_pos;
    passLineEnd();
    return true;
}

void TextScanner::passBlanks() {
    while (m_pos < m_text.size()) {
        if (isBlank(m_text[m_pos])) {
            ++m_pos;
        } else if (m_comment != '\0' && m_text[m_pos] == m_comment) {
            while (m_pos < m_text.size() && !atLineEnd()) ++m_pos;
        } else if (!passContinuation()) {
            return;
        }
    }
}

std::string_view TextScanner::nextOnLine() {
    passBlanks();
    const std::size_t start = m_pos;
    while (m_pos < m_text.size() && !isSpace(m_text[m_pos])) {
        const bool mayContinue = m_joinsLines && m_text[m_pos] == '\\' && m_pos > start;
        if (mayContinue && m_pos + 1 < m_text.size() && isSpace(m_text[m_pos + 1])) break;
        ++m_pos;
    }
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

void TextScanner::skipLine() {
    while (m_pos < m_text.size() && !atLineEnd()) {
        if (!passContinuation()) ++m_pos;
    }
    if (m_pos < m_text.size()) passLineEnd();
}

void TextScanner::fail(const std::string& trouble) const {
    throw InputFailure(fmt::format("line {}: {}", m_line, trouble));
}

double TextScanner::number(std::string_view token) const {
    const std::string_view digits = withoutPlus(token);
    double value = 0.0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty()) fail("a number is missing");
    if (error == std::errc::invalid_argument || end != digits.data() + digits.size()) {
        fail(quoted(token) + " is not a number");
    }
    return error == std::errc::result_out_of_range ? outOfRange(digits) : value;
}

float TextScanner::coordinate(std::string_view token, std::size_t vertex) const {
    const auto value = static_cast<float>(number(token));
    if (!std::isfinite(value)) {
        fail(fmt::format("vertex {} has a coordinate that is not finite ({})", vertex,
                         quoted(token)));
    }
    return value;
}

long long TextScanner::integer(std::string_view token) const {
    const std::string_view digits = withoutPlus(token);
    long long value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty()) fail("a whole number is missing");
    if (error != std::errc() || end != digits.data() + digits.size()) {
        fail(quoted(token) + " is not a whole number");
    }
    return value;
}

}  // namespace App
