#pragma once

#include "classlib/strings/ZTextBuffer.h"
#include "platform/utf16.h"

#include <cstdint>
#include <utility>

// Wide text: a value of UTF-16 units behind one owned pointer, which is null for the empty text and otherwise
// leads to a zero-terminated array. A host builds such values itself, so this layout is fixed.
//
// An empty text has two forms, null and an array of only the terminator, which differ in nothing but the
// pointer that operator const utf16_t* answers. Copies are deep. A text argument may be null, which is the
// empty text, and may lie in the string itself. Appending and replacing leave the string unchanged when they
// fail to allocate; a failed assignment leaves it null. Positions and lengths count units, and a negative
// count means up to the end.
class ZUString final {
public:
    ZUString() noexcept = default;
    ZUString(const utf16_t* text) : m_text(text, -1) {}
    ZUString(const utf16_t* text, int count) : m_text(text, count) {}
    ZUString(const ZUString& other, int count) : m_text(other.m_text.c_text(), count) {}

    // The range that sub_string selects.
    ZUString(const ZUString& other, int start, int count) : m_text(other.m_text.sub_string(start, count)) {}
    ZUString(const utf16_t* text, int start, int count) : m_text(text_t::sub_string(text, start, count)) {}

    // count times c. Never the null form; a negative count is 0.
    ZUString(int count, utf16_t c) : m_text(count, c) {}

    // Widens each byte to the unit of the same value (ISO 8859-1), without decoding: E9 gives U+00E9. Never
    // the null form.
    ZUString(const char* text);

    // The UTF-16 form of a UTF-8 text, malformed bytes becoming U+FFFD; empty when it cannot be converted.
    [[nodiscard]] static ZUString from_utf8(const char* text);

    ZUString& operator=(const utf16_t* text);
    void clear() noexcept { m_text.clear(); }

    [[nodiscard]] int length() const noexcept { return m_text.length(); }
    [[nodiscard]] int inq_length() const noexcept { return m_text.length(); }

    // The text itself, null for the null form; valid until the next change of the string.
    operator const utf16_t*() const noexcept { return m_text.c_text(); }

    // The unit at an index; 0 outside the text.
    [[nodiscard]] utf16_t inq_char(int index) const noexcept { return m_text.inq_char(index); }

    // -1, 0 or 1 as the text sorts before, with or after the other, unit by unit. Without case the units are
    // compared as the C runtime's lower case.
    [[nodiscard]] int compare(const ZUString& other) const noexcept { return m_text.compare(other.m_text); }
    [[nodiscard]] int compare_no_case(const ZUString& other) const noexcept {
        return m_text.compare_no_case(other.m_text);
    }
    [[nodiscard]] bool is_equal(const ZUString& other) const noexcept { return compare(other) == 0; }
    [[nodiscard]] bool is_equal_no_case(const ZUString& other) const noexcept {
        return compare_no_case(other) == 0;
    }
    [[nodiscard]] bool operator==(const ZUString& other) const noexcept { return compare(other) == 0; }
    [[nodiscard]] bool operator==(const utf16_t* text) const { return compare(ZUString(text)) == 0; }
    [[nodiscard]] bool operator<(const ZUString& other) const noexcept { return compare(other) < 0; }
    [[nodiscard]] bool operator>(const ZUString& other) const noexcept { return compare(other) > 0; }

    // The first position from start on, -1 when there is none or start lies beyond the text. A start below 0
    // is 0. An empty text is found at start.
    [[nodiscard]] int find(utf16_t c, int start) const noexcept { return m_text.find(c, start); }
    [[nodiscard]] int find(const utf16_t* text, int start) const noexcept { return m_text.find(text, start); }

    // The last position, or -1.
    [[nodiscard]] int find_last(utf16_t c) const noexcept { return m_text.find_last(c); }

    // The count units from start. A negative start counts from the end, and what it then lacks to 0 is taken
    // off the count; what lies beyond the text is left out. Of "filename", (-4, 2) is "na" and (-10, 4) is
    // "fi".
    [[nodiscard]] ZUString sub_string(int start, int count) const { return ZUString(*this, start, count); }

    // The first count units, or all there are.
    [[nodiscard]] ZUString left(int count) const { return ZUString(m_text.left(count)); }

    // The last count units, and the count units from start: the whole text when it does not hold as many.
    // Negative arguments are 0.
    [[nodiscard]] ZUString right(int count) const { return ZUString(m_text.right(count)); }
    [[nodiscard]] ZUString mid(int start, int count) const { return ZUString(m_text.mid(start, count)); }

    [[nodiscard]] ZUString operator+(const ZUString& other) const { return *this + other.m_text.c_text(); }
    [[nodiscard]] ZUString operator+(const utf16_t* text) const { return ZUString(m_text.plus(text)); }
    [[nodiscard]] ZUString operator+(utf16_t c) const { return ZUString(m_text.plus(c)); }

    // Each appends with one allocation of the exact new size. A character 0 and a null text append nothing.
    ZUString& operator+=(const ZUString& other) { return *this += other.m_text.c_text(); }
    ZUString& operator+=(const utf16_t* text);
    ZUString& operator+=(utf16_t c);
    ZUString& operator<<(const ZUString& other) { return *this += other; }
    ZUString& operator<<(const utf16_t* text) { return *this += text; }
    ZUString& operator<<(const char* text) { return *this += ZUString(text); } // widened
    ZUString& operator<<(int value);                                           // in decimal

    // Appends at most count units of text. Never leaves the null form.
    void append(const utf16_t* text, int count) { m_text.append(text, count); }

    // Replaces every occurrence of search, from left to right and without overlap: 'aa' by 'b' makes 'ba' of
    // 'aaa'. An empty search is a misuse, reported by a failed check, and changes nothing.
    void replace(const ZUString& search, const ZUString& replacement);

    // Removes white space, as the C runtime knows it, at both ends. Allocates nothing.
    void trim() noexcept { m_text.trim(); }

    // The C runtime's case mapping, unit by unit. Allocates nothing.
    void to_upper() noexcept { m_text.to_upper(); }
    void to_lower() noexcept { m_text.to_lower(); }

    void strip_cr() { m_text.strip_cr(); }

    // Puts a carriage return before every line feed, even where one already stands.
    void lf_to_crlf() { m_text.lf_to_crlf(); }

    // The number at the beginning of the text, after white space; what follows it is ignored. A
    // floating-point number is what the C runtime's "%lf" reads. An integer has an optional "-" and a prefix
    // 0x, 0X, 0b or 0B; its base, 2, 10 or 16, is stored where base is not null. False, and the value
    // unchanged, when there is no number or it does not fit; beyond 64 bits integers wrap.
    [[nodiscard]] bool to_double(double& value) const;
    [[nodiscard]] bool to_int64(std::int64_t& value, int* base) const noexcept;
    [[nodiscard]] bool to_int(int& value, int* base) const noexcept;
    [[nodiscard]] bool to_uint(unsigned int& value, int* base) const noexcept;

private:
    using text_t = ZTextBuffer<utf16_t>;

    explicit ZUString(text_t text) noexcept : m_text(std::move(text)) {}

    text_t m_text;
};

[[nodiscard]] inline ZUString operator+(const utf16_t* text, const ZUString& s) {
    return ZUString(text) + s;
}

static_assert(sizeof(ZUString) == sizeof(void*));
