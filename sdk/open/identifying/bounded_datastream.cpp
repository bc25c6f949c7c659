#include "sdk/open/identifying/bounded_datastream.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace sdk_open {
namespace {

// A call costs one, and as much for every block of bytes that it reads. A camera's file takes a thousand.
constexpr std::size_t most_work = 1'000'000;
constexpr std::size_t block_size = 256;

// In bytes. LibRaw takes a few thousand for directories within directories, and a thread's stack may have a
// megabyte.
constexpr std::intptr_t deepest_stack = 256 << 10;

std::intptr_t stack_position() noexcept {
    return std::bit_cast<std::intptr_t>(__builtin_frame_address(0));
}

bool is_blank(std::byte unit) noexcept {
    constexpr std::array blanks = {' ', '\t', '\n'};
    return std::ranges::find(blanks, static_cast<char>(unit)) != blanks.end();
}

} // namespace

// LibRaw takes the bytes as writable and writes nothing.
bounded_datastream::bounded_datastream(std::span<const std::byte> bytes, std::vector<std::size_t> hidden_tags)
    : LibRaw_buffer_datastream(const_cast<std::byte*>(bytes.data()), bytes.size()), // NOLINT
      m_bytes(bytes),
      m_hidden_tags(std::move(hidden_tags)),
      m_stack(stack_position()) {}

void bounded_datastream::begin_call(std::size_t n_bytes) {
    m_work += 1 + n_bytes / block_size;
    if (m_is_limited && (m_work > most_work || std::abs(m_stack - stack_position()) > deepest_stack))
        throw LibRaw_exceptions{LIBRAW_EXCEPTION_IO_CORRUPT};
}

int bounded_datastream::read(void* target, std::size_t size, std::size_t count) {
    const auto rest = inq_rest();
    const std::size_t there = size == 0 ? 0 : std::min(count, rest.size() / size);
    const bool is_cut_off = size != 0 && there < count; // what there is of the next one comes, too
    const std::size_t n_bytes = is_cut_off ? rest.size() : there * size;
    begin_call(n_bytes);
    if (n_bytes > 0) {
        std::memcpy(target, rest.data(), n_bytes);
        hide({static_cast<std::byte*>(target), n_bytes});
    }
    m_position += n_bytes;
    return static_cast<int>(there);
}

void bounded_datastream::hide(std::span<std::byte> read) const noexcept {
    const std::size_t before = m_position == 0 ? 0 : m_position - 1; // half a tag may have been read already
    for (auto tag = std::ranges::lower_bound(m_hidden_tags, before);
         tag != m_hidden_tags.end() && *tag < m_position + read.size(); ++tag)
        for (std::size_t at = std::max(*tag, m_position); at < *tag + 2 && at < m_position + read.size();
             ++at)
            read[at - m_position] = std::byte{0xff};
}

int bounded_datastream::seek(INT64 offset, int origin) {
    begin_call();
    const auto size = static_cast<INT64>(m_bytes.size());
    const INT64 start = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? tell() : size;
    m_position = static_cast<std::size_t>(start + std::clamp(offset, -start, size - start));
    return 0;
}

INT64 bounded_datastream::tell() {
    return static_cast<INT64>(m_position);
}

int bounded_datastream::get_char() {
    std::byte next{};
    return read(&next, 1, 1) == 1 ? std::to_integer<int>(next) : EOF;
}

char* bounded_datastream::gets(char* line, int size) {
    begin_call();
    if (size < 1 || eof() != 0)
        return nullptr;
    const auto text = inq_rest().first(std::min(inq_rest().size(), static_cast<std::size_t>(size) - 1));
    const auto end = std::ranges::find(text, std::byte{'\n'});
    const std::size_t length = static_cast<std::size_t>(end - text.begin()) + (end == text.end() ? 0 : 1);
    if (length > 0)
        std::memcpy(line, text.data(), length);
    line[length] = '\0';
    m_position += length;
    return line;
}

int bounded_datastream::eof() {
    return m_position == m_bytes.size() ? 1 : 0;
}

int bounded_datastream::scanf_one(const char* format, void* number) {
    begin_call();
    std::array<char, 25> text{};
    const auto rest = inq_rest();
    const auto first = std::ranges::find_if_not(rest, is_blank);
    const auto most = std::min<std::ptrdiff_t>(rest.end() - first, text.size() - 1);
    const auto end = std::find_if(first, first + most,
                                  [](std::byte unit) { return unit == std::byte{0} || is_blank(unit); });
    std::transform(first, end, text.begin(), [](std::byte unit) { return static_cast<char>(unit); });
    const int n_read = std::sscanf(text.data(), format, number);
    if (n_read > 0)
        m_position += static_cast<std::size_t>(end - rest.begin());
    return n_read;
}

} // namespace sdk_open
