#include "classlib/streams/ZData.h"

#include "classlib/errors/checks.h"
#include "classlib/streams/ZRStream.h"
#include "classlib/streams/ZWStream.h"
#include "classlib/streams/safe_strlen.h"
#include "classlib/strings/ZString.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>
#include <utility>

namespace {

constexpr int min_growth = 256;
constexpr int first_refused_length = 10'000'000;

// Null when there is no such block to be had.
unsigned char* try_allocate(std::int64_t n) noexcept {
    if (n > std::numeric_limits<std::int32_t>::max())
        return nullptr;
    return new (std::nothrow) unsigned char[static_cast<std::size_t>(n)];
}

const unsigned char* as_bytes(const void* bytes) noexcept {
    return static_cast<const unsigned char*>(bytes);
}

// Checks a number of bytes in use before the buffer takes it over.
bool is_within(std::int64_t m_nbytes, std::int64_t m_data_size) {
    ZASSERT(m_nbytes <= m_data_size);
    return m_nbytes <= m_data_size;
}

void throw_unless(bool has_memory) {
    if (!has_memory)
        throw std::bad_alloc();
}

} // namespace

ZData::ZData(int n) {
    throw_unless(set(nullptr, n));
}

ZData::ZData(const void* bytes, int n) {
    throw_unless(set(bytes, n));
}

ZData::ZData(const char* text) : ZData(text, safe_strlen(text)) {}

ZData::ZData(const ZString& s) : ZData(s, s.length()) {}

ZData::ZData(const ZData& other) : ZData(other.m_data, other.m_nbytes) {}

ZData& ZData::operator=(const ZData& other) {
    if (this != &other)
        copy_from(other.m_data, other.m_nbytes);
    return *this;
}

ZData& ZData::operator=(ZData&& other) noexcept {
    if (this != &other)
        take(other);
    return *this;
}

ZData& ZData::operator=(const ZString& s) {
    copy_from(s, s.length());
    return *this;
}

ZData& ZData::operator=(const char* text) {
    copy_from(text, safe_strlen(text));
    return *this;
}

bool ZData::set(const void* bytes, int n) {
    clear();
    const int size = std::max(n, 0);
    unsigned char* const block = try_allocate(size);
    if (block == nullptr)
        return false;
    if (bytes != nullptr)
        std::copy_n(as_bytes(bytes), size, block);
    hold(block, size, true);
    return true;
}

void ZData::adopt(void* block, int n) noexcept {
    clear();
    hold(static_cast<unsigned char*>(block), n, true);
}

void ZData::refer(void* block, int n) noexcept {
    clear();
    hold(static_cast<unsigned char*>(block), n, false);
}

unsigned char* ZData::detach() {
    if (m_data != nullptr && !m_own)
        throw_unless(reallocate(m_nbytes, m_nbytes));
    unsigned char* const block = m_data;
    hold(nullptr, 0, false);
    return block;
}

void ZData::take(ZData& other) noexcept {
    if (this == &other)
        return;
    clear();
    m_own = std::exchange(other.m_own, false);
    m_nbytes = std::exchange(other.m_nbytes, 0);
    m_data_size = std::exchange(other.m_data_size, 0);
    m_data = std::exchange(other.m_data, nullptr);
}

void ZData::clear() noexcept {
    if (m_own)
        delete[] m_data;
    hold(nullptr, 0, false);
}

void ZData::truncate(int n) {
    ZASSERT(n <= m_nbytes);
    if (n <= m_nbytes)
        m_nbytes = std::max(n, 0);
}

bool ZData::set_size(int n) {
    const int size = std::max(n, 0);
    return (m_nbytes == size && m_data_size == size) || reallocate(size, size);
}

bool ZData::grow(int extra) {
    return reallocate(inq_grown_size(extra), m_nbytes);
}

bool ZData::commit(int n) {
    const std::int64_t committed = std::int64_t{m_nbytes} + std::max(n, 0);
    if (!is_within(committed, m_data_size))
        return false;
    m_nbytes = static_cast<std::int32_t>(committed);
    return true;
}

bool ZData::append_growing(const void* bytes, int n) {
    const int need = n - (m_data_size - m_nbytes);
    ZData old; // the bytes may be the buffer's own: their block stays until they are copied
    if (!move_to_block(inq_grown_size(need), m_nbytes, old))
        return false;
    std::copy_n(as_bytes(bytes), n, m_data + m_nbytes);
    m_nbytes += n;
    return true;
}

bool ZData::append(const ZString& s) {
    return append(s, s.length());
}

ZData& ZData::operator+=(const ZData& d) {
    throw_unless(append(d));
    return *this;
}

ZData& ZData::operator+=(const ZString& s) {
    throw_unless(append(s));
    return *this;
}

ZData& ZData::operator+=(const char* text) {
    throw_unless(append(text, safe_strlen(text)));
    return *this;
}

void ZData::zero_fill() noexcept {
    std::fill_n(m_data, m_nbytes, static_cast<unsigned char>(0));
}

bool ZData::equals(const ZData& other) const noexcept {
    return std::equal(m_data, m_data + m_nbytes, other.m_data, other.m_data + other.m_nbytes);
}

bool ZData::equals_prefix(const ZData& other, int n) const noexcept {
    if (m_nbytes < n || other.m_nbytes < n)
        return equals(other);
    return std::equal(m_data, m_data + std::max(n, 0), other.m_data);
}

bool ZData::write(ZWStream& s) const {
    return s.write_int32(m_nbytes) && s.write(*this);
}

bool ZData::read(ZRStream& s) {
    int length = 0;
    if (!s.read_int32(length) || length < 0 || length >= first_refused_length)
        return false;
    return set_size(length) && s.read_data(*this, false);
}

// Without a block there is nothing to count or to own.
void ZData::hold(unsigned char* block, int n, bool own) noexcept {
    // Hosts rely on the places of the fields.
    static_assert(offsetof(ZData, m_own) == 0 && offsetof(ZData, m_nbytes) == 4 &&
                  offsetof(ZData, m_data_size) == 8 &&
                  offsetof(ZData, m_data) == sizeof(ZData) - sizeof(void*));
    m_own = own && block != nullptr;
    m_nbytes = block != nullptr ? std::max(n, 0) : 0;
    m_data_size = m_nbytes;
    m_data = block;
}

void ZData::copy_from(const void* bytes, int n) {
    ZData copy(bytes, n);
    take(copy);
}

// Doubles the block, or more where that is not enough.
std::int64_t ZData::inq_grown_size(int extra) const noexcept {
    return std::int64_t{m_data_size} + std::max({extra, m_data_size, min_growth});
}

bool ZData::reallocate(std::int64_t data_size, int nbytes) {
    ZData old;
    return move_to_block(data_size, nbytes, old);
}

// Moves the bytes in use, as far as they are wanted, to a new block, and the old block to old.
bool ZData::move_to_block(std::int64_t data_size, int nbytes, ZData& old) {
    unsigned char* const block = try_allocate(data_size);
    if (block == nullptr)
        return false;
    std::copy_n(m_data, std::min(m_nbytes, nbytes), block);
    old.take(*this);
    hold(block, static_cast<int>(data_size), true);
    m_nbytes = nbytes;
    return true;
}
