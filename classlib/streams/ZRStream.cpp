#include "classlib/streams/ZRStream.h"

#include "classlib/streams/ZData.h"
#include "classlib/streams/big_endian.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"

#include <algorithm>

std::int64_t ZRStream::seek(std::int64_t /*position*/) {
    set_error(rstreamerr_unsupported);
    return -1;
}

void ZRStream::set_buffer(const unsigned char* block, int size) noexcept {
    if (m_error != rstreamerr_ok)
        return;
    m_buffer = block;
    m_size = size;
    m_without_cr = 0;
}

void ZRStream::set_position(int index, int position, int line) noexcept {
    if (m_error != rstreamerr_ok)
        return;
    m_index = index;
    m_position = position;
    m_line = line;
    m_without_cr = 0;
}

void ZRStream::count_lines(const unsigned char* bytes, int n) noexcept {
    if (m_error == rstreamerr_ok)
        count(m_line, static_cast<int>(std::count(bytes, bytes + n, static_cast<unsigned char>('\n'))));
}

void ZRStream::set_error(rstreamerr_t error) noexcept {
    if (m_error != rstreamerr_ok)
        return;
    m_error = error;
    drop_block(); // whoever finds a byte in the block need not look at the error
}

ZUString ZRStream::inq_position_text(bool in_bytes) const {
    ZUString text;
    if (m_error != rstreamerr_ok)
        return text;
    if (in_bytes)
        text << "[" << m_position << "]";
    else
        text << ":" << m_line + 1;
    return text;
}

bool ZRStream::fetch_block() {
    drop_block();
    if (m_error == rstreamerr_ok && fill_buffer(m_buffer, m_size) && m_size > 0 && m_error == rstreamerr_ok)
        return true;
    drop_block();
    return false;
}

void ZRStream::drop_block() noexcept {
    m_buffer = nullptr;
    m_size = 0;
    m_index = 0;
    m_without_cr = 0;
}

int ZRStream::peek_bytes(void* dst, int n) {
    if (m_error != rstreamerr_ok)
        return m_error == rstreamerr_end_of_data ? 0 : -1;
    if (peek() < 0)
        return -1;
    const int n_copied = std::clamp(n, 0, inq_n_unread());
    std::copy_n(m_buffer + m_index, n_copied, static_cast<unsigned char*>(dst));
    return n_copied;
}

bool ZRStream::read_byte(unsigned char& v) {
    const int c = peek();
    if (c < 0) {
        set_error(rstreamerr_end_of_data);
        return false;
    }
    v = static_cast<unsigned char>(c);
    consume(1);
    return true;
}

bool ZRStream::read_packed_int(unsigned int& v) {
    const int first = peek_byte();
    if (first < 0) {
        set_error(rstreamerr_end_of_data);
        return false;
    }
    constexpr int one_byte_end = 0x80;
    constexpr int two_byte_end = 0xC0;
    if (first < one_byte_end) {
        v = static_cast<unsigned int>(first);
        consume(1);
        return true;
    }
    if (first < two_byte_end) {
        unsigned short packed = 0;
        const bool is_read = read_uint16(packed);
        v = is_read ? packed & (packed_end_16 - 1) : v;
        return is_read;
    }
    unsigned int packed = 0;
    const bool is_read = read_uint32(packed);
    v = is_read ? packed & (packed_end_32 - 1) : v;
    return is_read;
}

bool ZRStream::read_bytes(void* dst, int n, bool count_lines, int* got) {
    auto* const first = static_cast<unsigned char*>(dst);
    const int wanted = std::max(n, 0);
    const bool has_block = m_buffer != nullptr && inq_n_unread() >= std::min(wanted, 1);
    int n_read = 0;
    bool is_complete = m_error == rstreamerr_ok && (has_block || fetch_for_read());
    while (is_complete && n_read < wanted) {
        const int n_copied = std::min(inq_n_unread(), wanted - n_read);
        std::copy_n(m_buffer + m_index, n_copied, first + n_read);
        consume(n_copied);
        n_read += n_copied;
        is_complete = n_read == wanted || fetch_for_read();
    }
    if (is_complete && count_lines)
        this->count_lines(first, wanted);
    if (got != nullptr)
        *got = n_read;
    return is_complete;
}

// Running out of blocks is an error for a binary read.
bool ZRStream::fetch_for_read() {
    if (fetch_block())
        return true;
    set_error(rstreamerr_end_of_data);
    return false;
}

bool ZRStream::read_data(ZData& d, bool count_lines) {
    return read_bytes(d.inq_data(), d.inq_n_bytes(), count_lines, nullptr);
}

bool ZRStream::read_cstring(ZString& out, bool count_lines) {
    ZData collected;
    unsigned char c = 1;
    while (c != 0) {
        if (!read_uint8(c) || !collected.append_byte(c))
            return false;
    }
    out.set_bytes(collected.inq_data(), static_cast<unsigned int>(collected.inq_n_bytes() - 1));
    if (count_lines)
        this->count_lines(collected.inq_data(), collected.inq_n_bytes());
    return true;
}

bool ZRStream::skip(int n) {
    constexpr int max_chunk = 16384;
    ZData scratch;
    for (; n > 0; n -= std::min(n, max_chunk)) {
        if (!scratch.set_size(std::min(n, max_chunk)) || !read_data(scratch, false))
            return false;
    }
    return m_error == rstreamerr_ok;
}

bool ZRStream::read_all(ZData& d) {
    if (!d.set_size(0)) {
        set_error(rstreamerr_no_memory);
        return false;
    }
    if (m_error != rstreamerr_ok)
        return m_error == rstreamerr_end_of_data;
    do {
        const int n_unread = inq_n_unread();
        if (!d.append(m_buffer + m_index, n_unread)) {
            set_error(rstreamerr_no_memory);
            return false;
        }
        consume(n_unread);
    } while (fetch_block());
    set_error(rstreamerr_end_of_data);
    return m_error == rstreamerr_end_of_data;
}
