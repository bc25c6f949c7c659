#pragma once

#include "platform/utf16.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <utility>

// A zero-terminated text of bytes or UTF-16 units behind one owning pointer, and every algorithm on it: the
// body that ZUString and ZString share. What the operations mean to their callers stands there.
//
// The null pointer is the empty text. Any other pointer leads to a zero-terminated array, which each
// operation that fills it allocates at exactly the length + 1 units; a text with only the terminator is empty
// as well. Positions and lengths are counted in units. A null text argument is the empty text; no argument is
// written to, and any may lie inside the buffer's own array.
template <typename Unit>
class ZTextBuffer final {
public:
    using view_t = std::basic_string_view<Unit>;

    ZTextBuffer() noexcept = default;

    // At most count units of text, all of them when count is negative. Null for a null text or a count of 0.
    ZTextBuffer(const Unit* text, int count);

    // Exactly these units, zeros among them too; always allocates.
    explicit ZTextBuffer(std::span<const Unit> units) : m_units(allocate(units.size())) {
        std::copy_n(units.data(), units.size(), m_units.get());
    }

    // count times c; always allocates. A negative count is 0.
    ZTextBuffer(int count, Unit c);

    // Each unit of another text, mapped to one of this; always allocates.
    template <typename Other, typename Map>
    [[nodiscard]] static ZTextBuffer mapped(std::basic_string_view<Other> other, Map map) {
        ZTextBuffer text(allocate(other.size()));
        std::transform(other.begin(), other.end(), text.m_units.get(), map);
        return text;
    }

    ZTextBuffer(const ZTextBuffer& other) : ZTextBuffer(other.c_text(), -1) {}
    ZTextBuffer(ZTextBuffer&& other) noexcept = default;
    ~ZTextBuffer() = default;

    // Releases the old array before it allocates: a failure leaves the buffer null.
    ZTextBuffer& operator=(const ZTextBuffer& other);
    ZTextBuffer& operator=(ZTextBuffer&& other) noexcept = default;

    // The same for a text that may lie in the old array, which is therefore released after the copy.
    void assign(const Unit* text);

    void clear() noexcept { m_units.reset(); }

    [[nodiscard]] const Unit* c_text() const noexcept { return m_units.get(); }
    [[nodiscard]] bool is_null() const noexcept { return m_units == nullptr; }
    [[nodiscard]] int length() const noexcept { return static_cast<int>(view().size()); }
    [[nodiscard]] view_t view() const noexcept { return view_of(c_text()); }
    [[nodiscard]] Unit inq_char(int index) const noexcept;

    [[nodiscard]] int compare(const ZTextBuffer& other) const noexcept;
    [[nodiscard]] int compare_no_case(const ZTextBuffer& other) const noexcept;

    [[nodiscard]] int find(Unit c, int start) const noexcept;
    [[nodiscard]] int find(const Unit* text, int start) const noexcept;
    [[nodiscard]] int find_last(Unit c) const noexcept;

    [[nodiscard]] ZTextBuffer sub_string(int start, int count) const {
        return sub_string(c_text(), start, count);
    }
    [[nodiscard]] static ZTextBuffer sub_string(const Unit* text, int start, int count);
    [[nodiscard]] ZTextBuffer left(int count) const;
    [[nodiscard]] ZTextBuffer right(int count) const;
    [[nodiscard]] ZTextBuffer mid(int start, int count) const;

    [[nodiscard]] ZTextBuffer plus(const Unit* text) const;
    [[nodiscard]] ZTextBuffer plus(Unit c) const;

    // Each leaves the buffer unchanged when it fails to allocate.
    void append(const Unit* text);
    void append(Unit c);
    void append(const Unit* text, int count);
    void append(std::span<const Unit> units);
    void replace(view_t search, view_t replacement);

    void trim() noexcept;
    void to_upper() noexcept;
    void to_lower() noexcept;
    void strip_cr();
    void lf_to_crlf();

    [[nodiscard]] static view_t view_of(const Unit* text) noexcept {
        return text != nullptr ? view_t(text) : view_t();
    }

private:
    struct releaser {
        void operator()(Unit* units) const noexcept { ::operator delete(units); }
    };
    using array_t = std::unique_ptr<Unit[], releaser>;

    [[nodiscard]] int find_view(view_t search, int start) const noexcept;

    explicit ZTextBuffer(array_t units) noexcept : m_units(std::move(units)) {}

    // A terminated array for a text of this length. One that an int does not hold counts as a lack of memory.
    [[nodiscard]] static array_t allocate(std::size_t length) {
        if (length >= std::size_t{std::numeric_limits<int>::max()})
            throw std::bad_array_new_length();
        array_t units(static_cast<Unit*>(::operator new((length + 1) * sizeof(Unit))));
        units[length] = Unit(0);
        return units;
    }
    [[nodiscard]] static array_t joined(view_t first, view_t second);

    array_t m_units;
};

extern template class ZTextBuffer<char>;
extern template class ZTextBuffer<utf16_t>;

static_assert(sizeof(ZTextBuffer<char>) == sizeof(void*) && sizeof(ZTextBuffer<utf16_t>) == sizeof(void*));
