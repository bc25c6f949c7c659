#pragma once

#include "classlib/streams/ZWStream.h"
#include "classlib/strings/ZTextBuffer.h"

#include <cstdint>
#include <span>
#include <utility>

class ZRStream;

// Byte text, and the write stream whose destination it is: what is written to it is appended to its text, one
// allocation for each write. Any ZString can be built with operator<<.
//
// The text is held as ZUString holds wide text: one owned pointer, null for the empty text, otherwise leading
// to a zero-terminated array; empty texts, null arguments, counts and failures are as described there, and so
// are the operations that both classes have. The text ends at its first zero byte.
//
// The formatting state of the stream is never copied: a new string, even a copy, starts with the defaults,
// and assignment keeps the target's own.
class ZString : public ZWStream {
public:
    ZString() noexcept = default;
    ZString(const char* text) : m_text(text, -1) {}
    ZString(const char* text, int count) : m_text(text, count) {}
    ZString(const ZString& other) : ZWStream(), m_text(other.m_text) {}
    ZString(ZString&& other) noexcept : ZWStream(), m_text(std::move(other.m_text)) {}
    ZString(const ZString& other, int count) : m_text(other.m_text.c_text(), count) {}
    ZString(const ZString& other, int start, int count) : m_text(other.m_text.sub_string(start, count)) {}
    ZString(const char* text, int start, int count) : m_text(text_t::sub_string(text, start, count)) {}
    ZString(int count, char c) : m_text(count, c) {}
    ~ZString() override = default;

    ZString& operator=(const ZString& other);
    ZString& operator=(ZString&& other) noexcept;
    ZString& operator=(const char* text);

    // Releases the text and resets the formatting state.
    void clear() noexcept;

    // The text becomes the n bytes, zeros among them too, and a terminator. Never the null form. The bytes
    // may lie in the string itself.
    void set_bytes(const void* data, unsigned int n) {
        m_text = text_t(std::span(static_cast<const char*>(data), n));
    }

    // Gives a string that is null the bytes of a wide text: a unit below 256 becomes the byte of the same
    // value, any other a "?". The text must not be null.
    void init_narrow(const utf16_t* text);

    // Appends n bytes as they are to the bytes before the first zero; nothing when n is not positive. Always
    // true: a failed allocation throws and leaves the text unchanged.
    bool write_bytes(const void* data, int n) override;

    // The zero-terminated binary form: 'abc' is 61 62 63 00, an empty text 00. write_to answers what the
    // stream answers. read_from keeps what came before the data ran out, and answers false then.
    bool write_to(ZWStream& out) const { return out.write_cstring(*this); }
    bool read_from(ZRStream& in);

    [[nodiscard]] int length() const noexcept { return m_text.length(); }
    [[nodiscard]] int inq_length() const noexcept { return m_text.length(); }

    // The number of bytes with the terminator: 4 for 'abc', 1 for an empty text.
    [[nodiscard]] int inq_size() const noexcept { return m_text.length() + 1; }

    // The text itself, null for the null form; valid until the next change of the string.
    operator const char*() const noexcept { return m_text.c_text(); }

    [[nodiscard]] char inq_char(int index) const noexcept { return m_text.inq_char(index); }

    [[nodiscard]] int compare(const ZString& other) const noexcept { return m_text.compare(other.m_text); }
    [[nodiscard]] int compare_no_case(const ZString& other) const noexcept {
        return m_text.compare_no_case(other.m_text);
    }
    [[nodiscard]] bool is_equal(const ZString& other) const noexcept { return compare(other) == 0; }
    [[nodiscard]] bool is_equal_no_case(const ZString& other) const noexcept {
        return compare_no_case(other) == 0;
    }
    [[nodiscard]] bool operator==(const ZString& other) const noexcept { return compare(other) == 0; }
    [[nodiscard]] bool operator==(const char* text) const { return compare(ZString(text)) == 0; }
    [[nodiscard]] bool operator<(const ZString& other) const noexcept { return compare(other) < 0; }
    [[nodiscard]] bool operator>(const ZString& other) const noexcept { return compare(other) > 0; }

    [[nodiscard]] int find(char c, int start) const noexcept { return m_text.find(c, start); }
    [[nodiscard]] int find(const char* text, int start) const noexcept { return m_text.find(text, start); }
    [[nodiscard]] int find_last(char c) const noexcept { return m_text.find_last(c); }

    [[nodiscard]] ZString sub_string(int start, int count) const { return ZString(*this, start, count); }
    [[nodiscard]] ZString left(int count) const { return ZString(m_text.left(count)); }
    [[nodiscard]] ZString right(int count) const { return ZString(m_text.right(count)); }
    [[nodiscard]] ZString mid(int start, int count) const { return ZString(m_text.mid(start, count)); }

    [[nodiscard]] ZString operator+(const ZString& other) const { return *this + other.m_text.c_text(); }
    [[nodiscard]] ZString operator+(const char* text) const { return ZString(m_text.plus(text)); }
    [[nodiscard]] ZString operator+(char c) const { return ZString(m_text.plus(c)); }

    ZString& operator+=(const ZString& other) { return *this += other.m_text.c_text(); }
    ZString& operator+=(const char* text);
    ZString& operator+=(char c);
    void append(const char* text, int count) { m_text.append(text, count); }
    void replace(const ZString& search, const ZString& replacement);

    void trim() noexcept { m_text.trim(); }
    void to_upper() noexcept { m_text.to_upper(); }
    void to_lower() noexcept { m_text.to_lower(); }
    void strip_cr() { m_text.strip_cr(); }
    void lf_to_crlf() { m_text.lf_to_crlf(); }

    [[nodiscard]] bool to_double(double& value) const;
    [[nodiscard]] bool to_int64(std::int64_t& value, int* base) const noexcept;
    [[nodiscard]] bool to_int(int& value, int* base) const noexcept;
    [[nodiscard]] bool to_uint(unsigned int& value, int* base) const noexcept;

private:
    using text_t = ZTextBuffer<char>;

    explicit ZString(text_t text) noexcept : m_text(std::move(text)) {}

    text_t m_text;
};

[[nodiscard]] inline ZString operator+(const char* text, const ZString& s) {
    return ZString(text) + s;
}
