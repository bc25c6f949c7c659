#pragma once

#include <cstddef>
#include <cstdint>
#include <libraw/libraw.h>
#include <span>
#include <vector>

namespace sdk_open {

// A file's bytes, as LibRaw reads them. LibRaw's own stream on memory reads beyond the bytes, and writes
// beyond what it is to fill, where lines and numbers are not ended as they should be; this one does not. And
// it stops what a hostile file can have LibRaw do while it identifies: read for ever, and call itself until
// the stack is full. It throws what LibRaw takes for damage then.
class bounded_datastream final : public LibRaw_buffer_datastream {
public:
    // The bytes must outlive the stream. The tags at the hidden positions, which are in order, are read as
    // ffff, which is none.
    bounded_datastream(std::span<const std::byte> bytes, std::vector<std::size_t> hidden_tags);

    // From now on LibRaw may read as often as it likes, and on whichever stack: it only decodes.
    void lift_limits() noexcept { m_is_limited = false; }

    // As LibRaw wants them: those of <cstdio> for a binary file.
    int read(void* target, std::size_t size, std::size_t count) override;
    int seek(INT64 offset, int origin) override;
    INT64 tell() override;
    int get_char() override;
    char* gets(char* line, int size) override;
    int eof() override;

    // Reads one number, as text of at most 24 characters.
    int scanf_one(const char* format, void* number) override;

private:
    void begin_call(std::size_t n_bytes = 0);
    [[nodiscard]] std::span<const std::byte> inq_rest() const noexcept { return m_bytes.subspan(m_position); }

    // Makes what was read into what is to be seen.
    void hide(std::span<std::byte> read) const noexcept;

    std::span<const std::byte> m_bytes;
    std::vector<std::size_t> m_hidden_tags;
    std::size_t m_position = 0; // never beyond the end
    bool m_is_limited = true;
    std::size_t m_work = 0; // that it was put to
    std::intptr_t m_stack;  // where it was when the stream was made
};

} // namespace sdk_open
