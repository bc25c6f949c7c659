#pragma once

#include "classlib/streams/ZWStream.h"
#include "classlib/strings/ZTextBuffer.h"

#include <cstdint>
#include <utility>

// Byte text, and the write stream whose destination it is: what is written to it is appended to its text.
//
// The text is held as ZUString holds wide text: one owned pointer, null for the empty text, otherwise leading
// to a zero-terminated array; empty texts, null arguments, counts and failures are as described there. The
// formatting state of the stream is never copied: a new string, also a copy, starts with the defaults, and
// assignment keeps the target's own.
class ZString : public ZWStream {
public:
    ZString() noexcept = default;
    ZString(const char* text) : m_text(text, -1) {}
    ZString(const char* text, int count) : m_text(text, count) {}
    ZString(const ZString& other) : ZWStream(), m_text(other.m_text) {}
    ZString(ZString&& other) noexcept : ZWStream(), m_text(std::move(other.m_text)) {}
    ZString(const ZString& other, int count) : m_text(other.m_text.c_text(), count) {}

    // The range that sub_string selects.
    ZString(const ZString& other, int start, int count) : m_text(other.m_text.sub_string(start, count)) {}
    ZString(const char* text, int start, int count) : m_text(text_t::sub_string(text, start, count)) {}

    // count times c. Never the null form; a negative count is 0.
    ZString(int count, char c) : m_text(count, c) {}

    ~ZString() override = default;

    ZString& operator=(const ZString& other);
    ZString& operator=(ZString&& other) noexcept;
    ZString& operator=(const char* text);

    // Releases the text and resets the formatting state.
    void clear() noexcept;

    // The text becomes the n bytes, zeros among them too, and a terminator. Never the null form. The bytes
    // may lie in the string itself.
    void set_bytes(const void* data, unsigned int n);

    // Appends n bytes as they are to the bytes before the first zero; nothing when n is not positive. Always
    // true: a failed allocation throws and leaves the text unchanged.
    bool write_bytes(const void* data, int n) override;

    [[nodiscard]] int length() const noexcept { return m_text.length(); }
    [[nodiscard]] int inq_length() const noexcept { return m_text.length(); }

    // The number of bytes with the terminator: 4 for 'abc', 1 for an empty text.
    [[nodiscard]] int inq_size() const noexcept { return m_text.length() + 1; }

    // The text itself, null for the null form; valid until the next change of the string.
    operator const char*() const noexcept { return m_text.c_text(); }

private:
    using text_t = ZTextBuffer<char>;

    text_t m_text;
};
