#pragma once

#include "classlib/errors/checks.h"
#include "classlib/streams/big_endian.h"
#include "classlib/streams/rstreamerr.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>

class ZData;
class ZString;
class ZUString;

// The abstract read stream over a source that delivers bytes in blocks, with one cursor over the current
// block: it reads binary values, big-endian, as ZWStream writes them, and parses text. A derived class is the
// source. Where the blocks end makes no difference to anything but peek_bytes, and to read_wide_line only
// when a block ends amid a code unit.
//
// The first error sticks: while one is set every operation does nothing and answers its failure value: -1,
// false, 0, or an unchanged target. The end of the data is an error for binary reads (rstreamerr_end_of_data)
// and none for characters and text, which see -1.
class ZRStream {
public:
    ZRStream(const ZRStream&) = delete;
    ZRStream& operator=(const ZRStream&) = delete;
    virtual ~ZRStream() = default;

    // For sources that hold something until then; nothing here.
    virtual void close() {}

    // Not supported here: answers -1 and sets rstreamerr_unsupported.
    virtual std::int64_t seek(std::int64_t position);

    // The number of bytes that the whole source holds; -1 where it does not know.
    [[nodiscard]] virtual std::int64_t inq_source_size() const = 0;

protected:
    // The source: hands the next block out, of at least one byte, which stays valid and unchanged until the
    // next call; false at the end. A source that fails calls set_error before it answers false.
    virtual bool fill_buffer(const unsigned char*& block, int& size) = 0;

    ZRStream() noexcept = default;

    // For sources: install a block without moving the cursor in it; set the cursor in the block, the number
    // of bytes consumed and the line, from 0; add the line feeds among n bytes to the line; set the error,
    // unless there is one already.
    void set_buffer(const unsigned char* block, int size) noexcept;
    void set_position(int index, int position, int line) noexcept;
    void count_lines(const unsigned char* bytes, int n) noexcept;
    void set_error(rstreamerr_t error) noexcept;

public:
    [[nodiscard]] rstreamerr_t inq_error() const noexcept { return m_error; }

    // The number of bytes consumed, up to 2147483647, and the line of the cursor, from 0.
    [[nodiscard]] int inq_position() const noexcept { return m_position; }
    [[nodiscard]] int inq_line() const noexcept { return m_line; }

    // "[10]" after ten bytes, or ":3" on the third line; empty while there is an error.
    [[nodiscard]] ZUString inq_position_text(bool in_bytes) const;

    // Characters. peek and get answer the next byte as 0 to 255, and -1 at the end.

    [[nodiscard]] int peek() { return m_index < m_size || fetch_block() ? *inq_cursor() : -1; }
    [[nodiscard]] int peek_byte() { return peek(); }

    // Consumes the byte that peek has answered. Without one it is a misuse and moves nothing.
    void advance() {
        if (m_error != rstreamerr_ok)
            return;
        ZASSERT(m_index < m_size);
        if (m_index < m_size) {
            consume_character(m_buffer[m_index]);
        }
    }

    int get() {
        const int c = peek();
        if (c >= 0) {
            consume_character(c);
        }
        return c;
    }

    [[nodiscard]] bool at_end() { return peek() < 0; }

    // Copies up to n bytes without consuming them, none from beyond the current block. Answers their number;
    // -1 when there are none; 0 after a binary read that met the end, and -1 after any other error.
    int peek_bytes(void* dst, int n);

    // Binary values. False leaves the target unchanged. They count no lines unless told to.
    bool read_byte(unsigned char& v);
    bool read_uint8(unsigned char& v) { return read_byte(v); }
    bool read_int16(short& v) { return read_big_endian(v); }
    bool read_uint16(unsigned short& v) { return read_big_endian(v); }
    bool read_int32(int& v) { return read_big_endian(v); }
    bool read_int32(long& v) { return read_big_endian(v); }
    bool read_uint32(unsigned int& v) { return read_big_endian(v); }
    bool read_uint32(unsigned long& v) { return read_big_endian(v); }
    bool read_float(float& v) { return read_big_endian(v); }
    bool read_packed_int(unsigned int& v);

    // Exactly n bytes, or false with those that there were; got, when not null, receives their number either
    // way.
    bool read_bytes(void* dst, int n, bool count_lines, int* got);

    // As many bytes as d has in use.
    bool read_data(ZData& d, bool count_lines);

    // The bytes before the next zero byte, which is consumed.
    bool read_cstring(ZString& out, bool count_lines);

    // Consumes n bytes.
    bool skip(int n);

    // All that is left; the stream then stands at rstreamerr_end_of_data, where it answers an empty d and
    // true.
    bool read_all(ZData& d);

    // Text. Blanks are those of the C runtime's isspace; skipping them also skips comments, from "#" through
    // the end of the line. Malformed text is no error; only a number that does not fit its target is
    // (rstreamerr_out_of_range).

    void skip_space();
    void skip_comment();

    // The next byte that is neither blank nor comment, not consumed.
    [[nodiscard]] int peek_non_space();

    // Each skips blanks first. A bool is one character, true for t, T, y, Y and 1; a string is a run of
    // letters, digits and "_", or one other character. At the end of the data these three leave their targets
    // unchanged, while numbers become 0.
    ZRStream& operator>>(bool& v);
    ZRStream& operator>>(char& v);
    ZRStream& operator>>(ZString& v);

    // A number that does not fit is stored cut to the target's width: "300" gives an unsigned char of 44 and
    // the error. An unsigned target takes no sign: it reads 0 there.
    ZRStream& operator>>(unsigned char& v);
    ZRStream& operator>>(short& v);
    ZRStream& operator>>(unsigned short& v);
    ZRStream& operator>>(int& v);
    ZRStream& operator>>(unsigned int& v);
    ZRStream& operator>>(long& v);
    ZRStream& operator>>(unsigned long& v);
    ZRStream& operator>>(long long& v);
    ZRStream& operator>>(unsigned long long& v);
    ZRStream& operator>>(float& v);
    ZRStream& operator>>(double& v);

    // "-" or "+", then as below; 0 and the error for magnitudes of 2^63 and more.
    std::int64_t read_signed();

    // Decimal digits, "0x" with digits 0-9 and A-F, or "0b" with 0 and 1; wraps beyond 64 bits.
    std::uint64_t read_unsigned();

    // At most 100 of the characters 0-9 + - E e . as the C runtime's atof understands them.
    double read_real();

    // A run of ASCII letters, digits, "_" and blanks. Answers the character after it, not consumed, or -1.
    int read_name(ZString& out);

    // Everything up to one of the stop characters, which is answered, not consumed; -1 at the end. A
    // backslash makes the next character ordinary, but for \n, \r and \t.
    int read_until(const char* stops, ZString& out);

    // One line of text without its line feed and without any carriage return. False, and an empty text, at
    // the end of the data.
    bool read_line(ZString& out);

    // The same for UTF-16 little-endian text, whose lines end at CR LF, LF CR, CR or LF. The second half of
    // such a pair is recognised only where both its bytes lie in one block.
    bool read_wide_line(ZUString& out);

private:
    // Fetches the next block when the current one is used up; false at the end of the source.
    bool fetch_block();
    bool fetch_for_read();
    void drop_block() noexcept;
    [[nodiscard]] int inq_n_unread() const noexcept { return m_index < m_size ? m_size - m_index : 0; }

    // Where the next byte of the block lies. An index that is extended without its sign is loaded faster.
    [[nodiscard]] const unsigned char* inq_cursor() const noexcept {
        return m_buffer + static_cast<std::uint32_t>(m_index);
    }

    // Counts no further than the counters go.
    static void count(std::int32_t& counter, int n) noexcept {
        constexpr std::int32_t last = std::numeric_limits<std::int32_t>::max();
        counter = n < last - counter ? counter + n : last;
    }

    // Moves the cursor over n bytes of the block.
    void consume(int n) noexcept {
        m_index += n;
        count(m_position, n);
    }

    void consume_character(int c) noexcept {
        consume(1);
        if (c == '\n')
            count(m_line, 1);
    }

    template <typename T>
    bool read_big_endian(T& v);
    template <int Base>
    std::uint64_t read_digits();
    template <typename T>
    ZRStream& extract_integer(T& v);
    template <typename Predicate>
    void collect_while(Predicate is_wanted, ZData& collected);
    [[nodiscard]] bool has_cr_before(const unsigned char* end) noexcept;
    bool collect_line(ZString& out);
    void consume_line(const unsigned char* first, const unsigned char* line_feed, const unsigned char* last);
    bool take_wide_unit(unsigned int& unit);

    const unsigned char* m_buffer = nullptr;
    std::int32_t m_size = 0;
    std::int32_t m_index = 0;
    std::int32_t m_position = 0;
    std::int32_t m_line = 0;
    rstreamerr_t m_error = rstreamerr_ok;
    std::int32_t m_without_cr = 0; // from the cursor to this index no carriage return stands in the block
};

// A value has as many bytes as its binary form. One that lies in the block is read where it is; there is no
// block while there is an error.
template <typename T>
bool ZRStream::read_big_endian(T& v) {
    using pattern_t = std::conditional_t<sizeof(T) == sizeof(std::uint16_t), std::uint16_t, std::uint32_t>;
    using value_t = std::conditional_t<std::is_signed_v<T>, std::make_signed_t<pattern_t>, pattern_t>;
    constexpr std::size_t n_bytes = sizeof(pattern_t);

    std::array<unsigned char, n_bytes> collected;
    const unsigned char* bytes = collected.data();
    if (m_index <= m_size - int{n_bytes}) {
        bytes = inq_cursor();
        consume(int{n_bytes});
    } else if (!read_bytes(collected.data(), int{n_bytes}, false, nullptr)) {
        return false;
    }
    const auto pattern = from_big_endian<pattern_t>(std::span<const unsigned char, n_bytes>(bytes, n_bytes));
    if constexpr (std::is_same_v<T, float>)
        v = std::bit_cast<float>(pattern);
    else
        v = static_cast<value_t>(pattern);
    return true;
}
