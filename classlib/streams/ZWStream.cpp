#include "classlib/streams/ZWStream.h"

#include "classlib/errors/checks.h"
#include "classlib/streams/ZData.h"
#include "classlib/streams/ZPrintable.h"
#include "classlib/streams/big_endian.h"
#include "classlib/streams/float_text.h"
#include "classlib/streams/safe_strlen.h"
#include "classlib/strings/ZMBString.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <limits>
#include <string>

namespace {

constexpr int error_unsupported = 8;

// Digits of the usual bases; more than these are reported.
constexpr int max_digits = 31;

char upper_case_digit(char digit) noexcept {
    return digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit;
}

template <typename T>
bool write_big_endian(ZWStream& out, T value) {
    const auto bytes = to_big_endian(value);
    return out.write_bytes(bytes.data(), static_cast<int>(bytes.size()));
}

} // namespace

void ZWStream::reset_format() noexcept {
    m_base = 10;
    m_flags = 0;
    m_width = 0;
    m_fill = ' ';
    m_precision = 6;
}

void ZWStream::set_base(int base) {
    ZASSERT(base >= 2 && base <= 36);
    if (base >= 2 && base <= 36)
        m_base = base;
}

void ZWStream::set_width(int width) {
    ZASSERT(width >= 0);
    m_width = width;
}

std::int64_t ZWStream::seek(std::int64_t /*position*/) noexcept {
    m_error = error_unsupported;
    return -1;
}

ZWStream& ZWStream::operator<<(const char* text) {
    write_text(text, safe_strlen(text));
    return *this;
}

ZWStream& ZWStream::operator<<(char c) {
    write_text(&c, 1);
    return *this;
}

ZWStream& ZWStream::operator<<(const ZString& s) {
    write_text(s, s.length());
    return *this;
}

ZWStream& ZWStream::operator<<(const ZUString& s) {
    const ZMBString utf8(s);
    return *this << static_cast<const ZString&>(utf8);
}

ZWStream& ZWStream::operator<<(double v) {
    const auto form = has_flag(wsflag_scientific) ? float_text::form_t::exponent : float_text::form_t::fixed;
    const float_text text(v, form, m_precision);
    if (text.inq_fits())
        write_text(text.view().data(), static_cast<int>(text.view().size()));
    else
        ZWARNING("Buffer too small");
    return *this;
}

ZWStream& ZWStream::operator<<(manipulator_t manipulator) {
    manipulator(*this);
    return *this;
}

ZWStream& ZWStream::operator<<(const ZPrintable& object) {
    object.print_to(*this);
    return *this;
}

void ZWStream::write_text(const char* chars, int n) {
    if (chars == nullptr || n <= 0)
        return;
    const int width = m_width;
    m_width = 0;
    if (width <= n) {
        write_bytes(chars, n);
        return;
    }
    std::string padded(static_cast<std::size_t>(width), m_fill);
    padded.replace(has_flag(wsflag_left) ? 0 : static_cast<std::size_t>(width - n),
                   static_cast<std::size_t>(n), chars, static_cast<std::size_t>(n));
    write_bytes(padded.data(), width);
}

ZWStream& ZWStream::write_int64(std::int64_t v) {
    const auto pattern = static_cast<std::uint64_t>(v);
    if (m_base != 10 || v >= 0)
        return write_uint64(pattern);
    write_text("-", 1);
    return write_uint64(0 - pattern);
}

ZWStream& ZWStream::write_uint64(std::uint64_t v) {
    std::array<char, std::numeric_limits<std::uint64_t>::digits> digits;
    char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), v, m_base).ptr;
    const auto n_digits = static_cast<int>(end - digits.data());
    if (m_base > 10)
        std::transform(digits.data(), end, digits.data(), upper_case_digit);

    // Where the first digit stands in the room for max_digits, filled from its end.
    const int str = 0;
    const int c = max_digits - n_digits;
    ZASSERT(c >= str);
    write_text(digits.data(), n_digits);
    return *this;
}

char ZWStream::digit_char(int d) const noexcept {
    return static_cast<char>(m_base > 10 && d >= 10 ? 'A' + d - 10 : '0' + d);
}

void ZWStream::add_base_prefix(ZString& digits) const {
    if (m_base == 2)
        digits = "0b" + digits;
    else if (m_base == 16)
        digits = "0x" + digits;
}

bool ZWStream::write_int8(signed char v) {
    return write_uint8(static_cast<unsigned char>(v));
}

bool ZWStream::write_uint8(unsigned char v) {
    return write_bytes(&v, 1);
}

bool ZWStream::write_int16(short v) {
    return write_big_endian(*this, static_cast<std::uint16_t>(v));
}

bool ZWStream::write_uint16(unsigned short v) {
    return write_big_endian(*this, std::uint16_t{v});
}

bool ZWStream::write_int32(int v) {
    return write_big_endian(*this, static_cast<std::uint32_t>(v));
}

bool ZWStream::write_int32(long v) {
    return write_big_endian(*this, static_cast<std::uint32_t>(v));
}

bool ZWStream::write_uint32(unsigned int v) {
    return write_big_endian(*this, std::uint32_t{v});
}

bool ZWStream::write_uint32(unsigned long v) {
    return write_big_endian(*this, static_cast<std::uint32_t>(v));
}

bool ZWStream::write_float(float v) {
    return write_big_endian(*this, std::bit_cast<std::uint32_t>(v));
}

bool ZWStream::write_packed_int(unsigned int v) {
    if (v < packed_end_8)
        return write_uint8(static_cast<unsigned char>(v));
    if (v < packed_end_16)
        return write_uint16(static_cast<unsigned short>(v | packed_marker_16));
    const bool is_written = write_uint32(v | packed_marker_32);
    if (v >= packed_end_32)
        ZWARNING("PackedInt out of range");
    return is_written;
}

bool ZWStream::write(const ZData& d) {
    return write_bytes(d.inq_data(), d.inq_n_bytes());
}

bool ZWStream::write_cstring(const ZString& s) {
    return s.length() > 0 ? write_bytes(s, s.inq_size()) : write_uint8(0);
}

ZWStream& base8(ZWStream& out) {
    out.set_base(8);
    return out;
}

ZWStream& base10(ZWStream& out) {
    out.set_base(10);
    return out;
}

ZWStream& base16(ZWStream& out) {
    out.set_base(16);
    return out;
}

ZWStream& left_justify(ZWStream& out) {
    out.set_flag(wsflag_left);
    return out;
}

ZWStream& right_justify(ZWStream& out) {
    out.clear_flag(wsflag_left);
    return out;
}

ZWStream& scientific(ZWStream& out) {
    out.set_flag(wsflag_scientific);
    return out;
}

ZWStream& fixed_point(ZWStream& out) {
    out.clear_flag(wsflag_scientific);
    return out;
}

ZWStream& new_line(ZWStream& out) {
    return out << "\n";
}

ZWStream& wide_new_line(ZWStream& out) {
    constexpr unsigned char line_end[] = {0x0D, 0x00, 0x0A, 0x00};
    out.write_bytes(line_end, sizeof line_end);
    return out;
}
