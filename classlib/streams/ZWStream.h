#pragma once

#include <cstdint>

class ZData;
class ZPrintable;
class ZString;
class ZUString;

// The flags of the formatting state.
enum wsflag_t : unsigned int {
    wsflag_left = 1,       // a padded item stands to the left of its padding
    wsflag_scientific = 2, // floating-point numbers are written with an exponent
};

// The abstract write stream: a formatting state, and one operation through which all bytes leave. A derived
// class decides where they go.
//
// Text items follow the formatting state; each is one call of write_bytes, padding included, whose result
// they do not look at. The binary writers do not touch the state: they answer what write_bytes answers. The
// state is never copied with a stream.
class ZWStream {
public:
    using manipulator_t = ZWStream& (*)(ZWStream&);

    ZWStream(const ZWStream&) = delete;
    ZWStream& operator=(const ZWStream&) = delete;
    virtual ~ZWStream() = default;

    // Takes n bytes for the destination; false when it did not take them.
    virtual bool write_bytes(const void* data, int n) = 0;

    // Base 10, no flags, no width, blanks to fill with, precision 6. The error code stays.
    void reset_format() noexcept;

    // The base of integer text, 2 to 36; any other is a misuse and leaves the old one.
    void set_base(int base);

    // The least width of the next text item that is not empty, in bytes. A width below 0 is a misuse and pads
    // nothing.
    void set_width(int width);

    // What fills an item up to its width; stays until changed.
    void set_fill(char fill) noexcept { m_fill = fill; }

    // Digits of a floating-point number: after the point, or all of them in the exponent form, which has at
    // least one. Below 0 is 0.
    void set_precision(int precision) noexcept { m_precision = precision > 0 ? precision : 0; }

    void set_flag(wsflag_t flag) noexcept { m_flags |= flag; }
    void clear_flag(wsflag_t flag) noexcept { m_flags &= ~static_cast<unsigned int>(flag); }

    // 0 while the stream is healthy; 8 after an attempt to seek.
    [[nodiscard]] int inq_error() const noexcept { return m_error; }

    // Not supported: answers -1 and sets the error code to 8.
    std::int64_t seek(std::int64_t position) noexcept;

    // Text items. A null pointer and an empty text write nothing and leave the width for the next item.
    ZWStream& operator<<(const char* text);
    ZWStream& operator<<(char c);
    ZWStream& operator<<(const ZString& s);
    ZWStream& operator<<(const ZUString& s); // as UTF-8
    ZWStream& operator<<(int v) { return write_int64(v); }
    ZWStream& operator<<(unsigned int v) { return write_uint64(v); }
    ZWStream& operator<<(long v) { return write_int64(v); }
    ZWStream& operator<<(unsigned long v) { return write_uint64(v); }
    ZWStream& operator<<(long long v) { return write_int64(v); }
    ZWStream& operator<<(unsigned long long v) { return write_uint64(v); }

    // Correctly rounded, whatever the platform and its locale. 1234.5 is "1234.500000" or, in the exponent
    // form, "1.23450e003"; 0.000123 is "1.23000e-004". The point is always written. Negative zero keeps its
    // sign; what is not finite is "inf", "-inf" or "nan". A number that could take more than 512 bytes is
    // reported as a warning and not written.
    ZWStream& operator<<(double v);

    ZWStream& operator<<(manipulator_t manipulator);
    ZWStream& operator<<(const ZPrintable& object);

    // The padded write that every text item goes through.
    void write_text(const char* chars, int n);

    // Digits in the base, upper-case above 9, without prefix. In base 10 a minus sign is an item of its own,
    // which spends the width; in any other base a negative number is its 64-bit pattern. More than 31 digits,
    // in bases 2 to 4, are reported by a failed check, and all of them are written.
    ZWStream& write_int64(std::int64_t v);
    ZWStream& write_uint64(std::uint64_t v);

    // The character of one digit, 0 to base - 1.
    [[nodiscard]] char digit_char(int d) const noexcept;

    // Puts "0b" before digits of base 2 and "0x" before those of base 16.
    void add_base_prefix(ZString& digits) const;

    // Binary forms, big-endian: 300 as a 16-bit integer is 01 2C. A long is written as its low 32 bits.
    bool write_int8(signed char v);
    bool write_uint8(unsigned char v);
    bool write_int16(short v);
    bool write_uint16(unsigned short v);
    bool write_int32(int v);
    bool write_int32(long v);
    bool write_uint32(unsigned int v);
    bool write_uint32(unsigned long v);
    bool write_float(float v); // the IEEE 754 pattern of 32 bits

    // 1, 2 or 4 bytes, as few as the value takes: 5 is 05, 300 is 81 2C, 16384 is C0 00 40 00. From
    // 0x40000000 on the low 30 bits are written, and a warning reported.
    bool write_packed_int(unsigned int v);

    bool write(const void* data, int n) { return write_bytes(data, n); }

    // The bytes in use, without their number.
    bool write(const ZData& d);

    // The text and a zero byte.
    bool write_cstring(const ZString& s);

protected:
    ZWStream() noexcept = default;

private:
    [[nodiscard]] bool has_flag(wsflag_t flag) const noexcept { return (m_flags & flag) != 0; }

    std::int32_t m_error = 0;
    std::int32_t m_base = 10;
    std::uint32_t m_flags = 0;
    std::int32_t m_width = 0;
    char m_fill = ' ';
    std::int32_t m_precision = 6;
};

// Manipulators, for operator<<. A base, a justification or a form stays until changed.
ZWStream& base8(ZWStream& out);
ZWStream& base10(ZWStream& out);
ZWStream& base16(ZWStream& out);
ZWStream& left_justify(ZWStream& out);
ZWStream& right_justify(ZWStream& out);
ZWStream& scientific(ZWStream& out);
ZWStream& fixed_point(ZWStream& out);
ZWStream& new_line(ZWStream& out);      // the text "\n", an item like any other
ZWStream& wide_new_line(ZWStream& out); // the bytes 0D 00 0A 00, never padded
