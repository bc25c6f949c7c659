#include "classlib/values/ZStringArray.h"

#include "classlib/errors/checks.h"
#include "classlib/values/ZKVString.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

std::unique_ptr<ZString[]> make_elements(int n_elements) {
    return n_elements >= 1 ? std::make_unique<ZString[]>(static_cast<std::size_t>(n_elements)) : nullptr;
}

// What stands at every index outside an array. One for each thread, as the writable one is written to.
ZString& inq_no_element() {
    thread_local ZString none;
    none.clear();
    return none;
}

} // namespace

ZStringArray::ZStringArray(int n_elements)
    : m_n_elements(n_elements), m_elements(make_elements(n_elements)) {}

ZStringArray::ZStringArray(const ZStringArray& other) {
    copy_from(other);
}

ZStringArray::ZStringArray(ZStringArray&& other) noexcept
    : m_n_elements(std::exchange(other.m_n_elements, 0)), m_elements(std::move(other.m_elements)) {}

ZStringArray::ZStringArray(const ZKV& kv) {
    assign_from(kv);
}

ZStringArray& ZStringArray::operator=(const ZStringArray& other) {
    if (this != &other) {
        clear();
        copy_from(other);
    }
    return *this;
}

ZStringArray& ZStringArray::operator=(ZStringArray&& other) noexcept {
    m_n_elements = std::exchange(other.m_n_elements, 0);
    m_elements = std::move(other.m_elements);
    return *this;
}

void ZStringArray::set_n_elements(int n_elements) {
    auto elements = make_elements(n_elements);
    for (int i = 0; i < std::min(n_elements, m_n_elements); ++i)
        elements[static_cast<std::size_t>(i)] = m_elements[static_cast<std::size_t>(i)];
    m_elements = std::move(elements);
    m_n_elements = n_elements;
}

const ZString& ZStringArray::operator[](int i) const {
    return inq_element(i);
}

ZString& ZStringArray::operator[](int i) {
    return inq_element(i);
}

ZString& ZStringArray::inq_element(int i) const {
    ZASSERT(i >= 0 && i < m_n_elements);
    return i >= 0 && i < m_n_elements ? m_elements[static_cast<std::size_t>(i)] : inq_no_element();
}

bool ZStringArray::operator==(const ZStringArray& other) const noexcept {
    if (m_n_elements != other.m_n_elements)
        return false;
    const auto n = static_cast<std::ptrdiff_t>(std::max(m_n_elements, 0));
    return std::equal(m_elements.get(), m_elements.get() + n, other.m_elements.get());
}

void ZStringArray::assign_from(const ZKV& kv) {
    clear();
    copy_from(kv.as_string(0).inq_values());
}

ZKVString* ZStringArray::make_kv(const ZString& key) const {
    return new ZKVString(key, *this);
}

void ZStringArray::clear() noexcept {
    m_elements.reset();
    m_n_elements = 0;
}

// Fills an array without elements.
void ZStringArray::copy_from(const ZStringArray& other) {
    auto elements = make_elements(other.m_n_elements);
    std::copy_n(other.m_elements.get(), std::max(other.m_n_elements, 0), elements.get());
    m_elements = std::move(elements);
    m_n_elements = other.m_n_elements;
}
