#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

class ZRStream;
class ZString;
class ZWStream;

// A growable block of bytes, owned or belonging to someone else. The bytes in use are counted apart from
// those allocated. Blocks are allocated with new unsigned char[n]; bytes that nobody wrote are not
// initialised.
//
// The operations that answer a bool answer false when memory runs out, and keep what the buffer held; those
// that answer something else, and the constructors, throw std::bad_alloc then and keep it as well. Negative
// counts are taken as 0; a size that an int does not hold counts as a lack of memory.
class ZData final {
public:
    ZData() noexcept = default;

    // n bytes in use, not initialised.
    explicit ZData(int n);

    // An owned copy: of n bytes, of a text without its terminating zero, of another buffer's bytes in use.
    ZData(const void* bytes, int n);
    ZData(const char* text);
    ZData(const ZString& s);
    ZData(const ZData& other);
    ZData(ZData&& other) noexcept { take(other); }
    ~ZData() { clear(); }

    // The same; the allocation is exact, and replaces the old block only when it is complete.
    ZData& operator=(const ZData& other);
    ZData& operator=(ZData&& other) noexcept;
    ZData& operator=(const ZString& s);
    ZData& operator=(const char* text);

    [[nodiscard]] const unsigned char* inq_data() const noexcept { return m_data; }
    [[nodiscard]] unsigned char* inq_data() noexcept { return m_data; }
    [[nodiscard]] int inq_n_bytes() const noexcept { return m_nbytes; }      // in use
    [[nodiscard]] int inq_data_size() const noexcept { return m_data_size; } // allocated
    [[nodiscard]] bool inq_owns() const noexcept { return m_own; }

    // Releases the block, then holds a copy of n bytes; of no defined bytes when bytes is null.
    [[nodiscard]] bool set(const void* bytes, int n);

    // Take a block of n bytes, all in use: adopt owns it from now on, refer leaves it to the caller, who
    // keeps it alive.
    void adopt(void* block, int n) noexcept;
    void refer(void* block, int n) noexcept;

    // Hands the block to the caller, who releases it with delete[], and leaves the buffer empty. A block that
    // is only referred to is handed over as a copy. Null when there is none.
    [[nodiscard]] unsigned char* detach();

    // Takes the block over from another buffer, which is left empty.
    void take(ZData& other) noexcept;

    // Releases the block.
    void clear() noexcept;

    // Keep the block, with no bytes in use or the first n; n beyond those in use is a misuse and changes
    // nothing.
    void empty() noexcept { m_nbytes = 0; }
    void truncate(int n);

    // Makes the block exactly n bytes, all in use; those beyond the old ones are not defined.
    [[nodiscard]] bool set_size(int n);

    // Makes room for at least extra bytes more: doubles the block, and adds no less than 256 bytes.
    [[nodiscard]] bool grow(int extra);

    // Counts n bytes that the caller wrote after those in use; more than are allocated is a misuse, changes
    // nothing and answers false.
    [[nodiscard]] bool commit(int n);

    // Append; the bytes may be the buffer's own. A referred block becomes an owned copy when it has to grow.
    [[nodiscard]] bool append_byte(unsigned char c) {
        if (m_nbytes == m_data_size && !grow(1))
            return false;
        *inq_end() = c;
        ++m_nbytes;
        return true;
    }
    [[nodiscard]] bool append(const void* bytes, int n) {
        const int size = n > 0 ? n : 0;
        if (size > m_data_size - m_nbytes)
            return append_growing(bytes, size);
        if (size > 0) // neither block may be null otherwise
            std::memcpy(inq_end(), bytes, static_cast<std::size_t>(size));
        m_nbytes += size;
        return true;
    }
    [[nodiscard]] bool append(const ZData& d) { return append(d.m_data, d.m_nbytes); }
    [[nodiscard]] bool append(const ZString& s);
    ZData& operator+=(const ZData& d);
    ZData& operator+=(const ZString& s);
    ZData& operator+=(const char* text);

    // Sets the bytes in use to 0.
    void zero_fill() noexcept;

    [[nodiscard]] bool equals(const ZData& other) const noexcept;

    // Whether the first n bytes are equal; where one of both has fewer, whether both are.
    [[nodiscard]] bool equals_prefix(const ZData& other, int n) const noexcept;

    // The stream form: the number of bytes in use as a big-endian 32-bit integer, and the bytes. Three bytes
    // are 00 00 00 03 and the three. False when the stream did not take them.
    [[nodiscard]] bool write(ZWStream& s) const;

    // Reads the stream form. Lengths that are negative or 10,000,000 or more are refused, and the buffer left
    // as it was. The announced length is allocated before the bytes are read: a damaged length costs up to 10
    // MB of memory for a moment. When the bytes run out, false; those that came stand at the beginning.
    [[nodiscard]] bool read(ZRStream& s);

private:
    void hold(unsigned char* block, int n, bool own) noexcept;
    void copy_from(const void* bytes, int n);

    // Where the next byte goes. The count is never negative, and as an unsigned number it is read back faster
    // after it was stored.
    [[nodiscard]] unsigned char* inq_end() const noexcept {
        return m_data + static_cast<std::uint32_t>(m_nbytes);
    }

    [[nodiscard]] bool append_growing(const void* bytes, int n);
    [[nodiscard]] std::int64_t inq_grown_size(int extra) const noexcept;
    [[nodiscard]] bool reallocate(std::int64_t data_size, int nbytes);
    [[nodiscard]] bool move_to_block(std::int64_t data_size, int nbytes, ZData& old);

    bool m_own = false;
    std::int32_t m_nbytes = 0;
    std::int32_t m_data_size = 0;
    unsigned char* m_data = nullptr;
};
