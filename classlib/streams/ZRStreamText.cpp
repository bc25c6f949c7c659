// The text parser of ZRStream, built on its character operations.

#include "classlib/streams/ZData.h"
#include "classlib/streams/ZRStream.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "platform/characters.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace {

constexpr int end_of_data = -1;

bool is_digit(int c) noexcept {
    return c >= '0' && c <= '9';
}

bool is_letter(int c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool is_blank(int c) noexcept {
    const bool is_printed = c > ' ' && c <= '~'; // blank in no locale, and not worth a call
    return !is_printed && c != end_of_data && platform::is_space(static_cast<char>(c));
}

bool is_token_character(int c) noexcept {
    return c != end_of_data && (platform::is_alnum(static_cast<char>(c)) || c == '_');
}

bool is_name_character(int c) noexcept {
    return is_letter(c) || is_digit(c) || c == '_' || is_blank(c);
}

bool is_real_character(int c) noexcept {
    return is_digit(c) || c == '+' || c == '-' || c == 'E' || c == 'e' || c == '.';
}

bool is_true_character(int c) noexcept {
    return c == 't' || c == 'T' || c == 'y' || c == 'Y' || c == '1';
}

// The value of a digit of the base, or -1. Above 9 only capital letters are digits.
template <int Base>
int digit_value(int c) noexcept {
    if (is_digit(c))
        return c - '0' < Base ? c - '0' : -1;
    return Base == 16 && c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

char unescaped(int c) noexcept {
    switch (c) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return static_cast<char>(c);
    }
}

// No failure value of the parser says that memory ran out.
void collect(ZData& collected, int c) {
    if (!collected.append_byte(static_cast<unsigned char>(c)))
        throw std::bad_alloc();
}

// The text ends at the first zero byte, if there is one.
void assign(ZString& out, const unsigned char* bytes, std::ptrdiff_t n) {
    out.set_bytes(bytes, static_cast<unsigned int>(n));
}

void assign(ZString& out, const ZData& collected) {
    assign(out, collected.inq_data(), collected.inq_n_bytes());
}

// Where a byte stands first, or the end.
const unsigned char* find_byte(const unsigned char* first, const unsigned char* last, char c) noexcept {
    const auto n = static_cast<std::size_t>(last - first);
    const void* const found = n > 0 ? std::memchr(first, c, n) : nullptr;
    return found != nullptr ? static_cast<const unsigned char*>(found) : last;
}

// Appends a piece of a line without its carriage returns.
void collect_without_cr(ZData& line, const unsigned char* first, const unsigned char* last) {
    while (first != last) {
        const unsigned char* const piece_end = find_byte(first, last, '\r');
        if (!line.append(first, static_cast<int>(piece_end - first)))
            throw std::bad_alloc();
        first = piece_end + (piece_end != last ? 1 : 0);
    }
}

} // namespace

template <typename Predicate>
void ZRStream::collect_while(Predicate is_wanted, ZData& collected) {
    for (int c = peek(); is_wanted(c); c = peek()) {
        collect(collected, c);
        advance();
    }
}

void ZRStream::skip_space() {
    for (int c = peek(); is_blank(c) || c == '#'; c = peek()) {
        if (c == '#')
            skip_comment();
        else
            advance();
    }
}

void ZRStream::skip_comment() {
    int c = get();
    while (c != end_of_data && c != '\n')
        c = get();
}

int ZRStream::peek_non_space() {
    skip_space();
    return peek();
}

ZRStream& ZRStream::operator>>(bool& v) {
    if (peek_non_space() != end_of_data)
        v = is_true_character(get());
    return *this;
}

ZRStream& ZRStream::operator>>(char& v) {
    if (peek_non_space() != end_of_data)
        v = static_cast<char>(get());
    return *this;
}

ZRStream& ZRStream::operator>>(ZString& v) {
    const int first = peek_non_space();
    if (first == end_of_data)
        return *this;
    ZData token;
    if (is_token_character(first))
        collect_while(is_token_character, token);
    else
        collect(token, get());
    assign(v, token);
    return *this;
}

template <typename T>
ZRStream& ZRStream::extract_integer(T& v) {
    if (m_error != rstreamerr_ok)
        return *this;
    const auto read = [this] {
        if constexpr (std::is_signed_v<T>)
            return read_signed();
        else
            return read_unsigned();
    }();
    if (!std::in_range<T>(read))
        set_error(rstreamerr_out_of_range);
    v = static_cast<T>(read);
    return *this;
}

ZRStream& ZRStream::operator>>(unsigned char& v) {
    return extract_integer(v);
}

ZRStream& ZRStream::operator>>(short& v) {
    return extract_integer(v);
}

ZRStream& ZRStream::operator>>(unsigned short& v) {
    return extract_integer(v);
}

ZRStream& ZRStream::operator>>(int& v) {
    return extract_integer(v);
}

ZRStream& ZRStream::operator>>(unsigned int& v) {
    return extract_integer(v);
}

ZRStream& ZRStream::operator>>(long& v) {
    return extract_integer(v);
}

ZRStream& ZRStream::operator>>(unsigned long& v) {
    return extract_integer(v);
}

ZRStream& ZRStream::operator>>(long long& v) {
    return extract_integer(v);
}

ZRStream& ZRStream::operator>>(unsigned long long& v) {
    return extract_integer(v);
}

ZRStream& ZRStream::operator>>(float& v) {
    if (m_error == rstreamerr_ok)
        v = static_cast<float>(read_real());
    return *this;
}

ZRStream& ZRStream::operator>>(double& v) {
    if (m_error == rstreamerr_ok)
        v = read_real();
    return *this;
}

std::int64_t ZRStream::read_signed() {
    constexpr std::uint64_t first_too_large = std::uint64_t{1} << 63;
    const int sign = peek_non_space();
    if (sign == '-' || sign == '+')
        advance();
    const std::uint64_t magnitude = read_unsigned();
    if (magnitude >= first_too_large) {
        set_error(rstreamerr_out_of_range);
        return 0;
    }
    const auto value = static_cast<std::int64_t>(magnitude);
    return sign == '-' ? -value : value;
}

std::uint64_t ZRStream::read_unsigned() {
    if (peek_non_space() != '0')
        return read_digits<10>();
    advance();
    const int prefix = peek();
    if (prefix != 'x' && prefix != 'b')
        return read_digits<10>();
    advance();
    return prefix == 'x' ? read_digits<16>() : read_digits<2>();
}

template <int Base>
std::uint64_t ZRStream::read_digits() {
    std::uint64_t value = 0;
    while (digit_value<Base>(peek()) >= 0) { // they may go on in the next block
        const unsigned char* const first = m_buffer + m_index;
        const unsigned char* const last = m_buffer + m_size;
        const unsigned char* c = first;
        for (int digit = digit_value<Base>(*c); digit >= 0; digit = ++c != last ? digit_value<Base>(*c) : -1)
            value = value * Base + static_cast<unsigned int>(digit);
        consume(static_cast<int>(c - first));
    }
    return value;
}

double ZRStream::read_real() {
    constexpr std::size_t max_length = 100;
    std::array<char, max_length + 1> text{};
    skip_space();
    for (std::size_t n = 0; n < max_length && is_real_character(peek()); ++n)
        text[n] = static_cast<char>(get());
    return std::atof(text.data());
}

int ZRStream::read_name(ZString& out) {
    if (m_error != rstreamerr_ok)
        return end_of_data;
    ZData name;
    skip_space();
    collect_while(is_name_character, name);
    assign(out, name);
    return peek();
}

int ZRStream::read_until(const char* stops, ZString& out) {
    if (m_error != rstreamerr_ok)
        return end_of_data;
    const std::string_view stop_characters(stops != nullptr ? stops : "");
    const auto is_stop = [&](int c) {
        return stop_characters.find(static_cast<char>(c)) != std::string_view::npos;
    };
    ZData text;
    int c = peek();
    while (c != end_of_data && !is_stop(c)) {
        advance();
        const bool is_escape = c == '\\';
        if (is_escape)
            c = get();
        if (c == end_of_data)
            break;
        collect(text, is_escape ? unescaped(c) : c);
        c = peek();
    }
    assign(out, text);
    return c;
}

bool ZRStream::read_line(ZString& out) {
    if (peek() == end_of_data) {
        if (m_error == rstreamerr_ok)
            out = ZString();
        return false;
    }
    const unsigned char* const first = m_buffer + m_index;
    const unsigned char* const last = m_buffer + m_size;
    const unsigned char* const line_feed = find_byte(first, last, '\n');
    if (line_feed == last || has_cr_before(line_feed))
        return collect_line(out);
    assign(out, first, line_feed - first); // most lines lie in one block and are copied once
    consume(static_cast<int>(line_feed - first) + 1);
    count(m_line, 1);
    return true;
}

// Whether a carriage return stands between the cursor and a place in the block. Looks some lines ahead, since
// most text has none at all.
bool ZRStream::has_cr_before(const unsigned char* end) noexcept {
    constexpr std::ptrdiff_t most_ahead = 4096;
    const unsigned char* const last = m_buffer + m_size;
    if (m_buffer + m_without_cr < end) {
        const unsigned char* const found =
            find_byte(m_buffer + m_index, last - end > most_ahead ? end + most_ahead : last, '\r');
        m_without_cr = static_cast<std::int32_t>(found - m_buffer);
    }
    return m_buffer + m_without_cr < end;
}

// Reads a line that goes on in the next block, or has carriage returns to be left out.
bool ZRStream::collect_line(ZString& out) {
    ZData line;
    bool is_ended = false;
    while (!is_ended && peek() != end_of_data) {
        const unsigned char* const first = m_buffer + m_index;
        const unsigned char* const last = m_buffer + m_size;
        const unsigned char* const line_feed = find_byte(first, last, '\n');
        collect_without_cr(line, first, line_feed);
        consume_line(first, line_feed, last);
        is_ended = line_feed != last;
    }
    assign(out, line);
    return true;
}

// Moves the cursor past a line feed, or past the block when that has none.
void ZRStream::consume_line(const unsigned char* first, const unsigned char* line_feed,
                            const unsigned char* last) {
    consume(static_cast<int>(line_feed - first));
    if (line_feed != last)
        consume_character('\n');
}

// Takes a code unit, low byte first; false at the end of the data, where a lone byte is dropped.
bool ZRStream::take_wide_unit(unsigned int& unit) {
    const int low = get();
    const int high = low != end_of_data ? get() : end_of_data;
    if (high == end_of_data)
        return false;
    unit = static_cast<unsigned int>(low) | static_cast<unsigned int>(high) << 8;
    return true;
}

bool ZRStream::read_wide_line(ZUString& out) {
    const bool has_data = peek() != end_of_data;
    if (m_error != rstreamerr_ok)
        return false;
    std::basic_string<utf16_t> line;
    unsigned int unit = 0;
    bool is_unit = take_wide_unit(unit);
    for (; is_unit && unit != '\r' && unit != '\n'; is_unit = take_wide_unit(unit))
        line += static_cast<utf16_t>(unit);
    if (is_unit) {
        const unsigned char partner[] = {static_cast<unsigned char>(unit == '\r' ? '\n' : '\r'), 0};
        unsigned char next[] = {0, 0};
        if (peek_bytes(next, sizeof next) == sizeof next && std::ranges::equal(next, partner))
            consume(sizeof next); // they lie in the block, and a line feed here is no line of its own
    }
    out = line.c_str();
    return has_data;
}
