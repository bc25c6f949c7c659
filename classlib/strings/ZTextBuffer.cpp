#include "classlib/strings/ZTextBuffer.h"

#include "platform/characters.h"

#include <cstdint>
#include <cstring>

namespace {

// The first count units of a text; all of them when count is negative or beyond its end. Reads no unit
// beyond the ones it answers: the text need not be terminated there.
template <typename Unit>
std::basic_string_view<Unit> first_units(const Unit* text, int count) noexcept {
    if (text == nullptr)
        return {};
    if (count < 0)
        return text;
    const Unit* end = text;
    while (end - text < count && *end != Unit(0))
        ++end;
    return {text, static_cast<std::size_t>(end - text)};
}

std::size_t as_size(int count) noexcept {
    return static_cast<std::size_t>(std::max(count, 0));
}

template <typename Unit>
int as_index(typename std::basic_string_view<Unit>::size_type position) noexcept {
    return position == std::basic_string_view<Unit>::npos ? -1 : static_cast<int>(position);
}

template <typename Unit>
bool is_inside(std::basic_string_view<Unit> text, int index) noexcept {
    return index >= 0 && as_size(index) < text.size();
}

// The searches below walk a terminated text without measuring it first.

// Where c, which is no terminator, stands first in a text; null where it does not.
const char* find_unit(const char* text, char c) noexcept {
    return std::strchr(text, c);
}

const utf16_t* find_unit(const utf16_t* text, utf16_t c) noexcept {
    for (; *text != c; ++text) {
        if (*text == utf16_t(0))
            return nullptr;
    }
    return text;
}

// Whether a search of at least one unit stands here.
template <typename Unit>
bool stands_at(const Unit* text, std::basic_string_view<Unit> search) noexcept {
    const auto is_next = [&text](Unit c) { return *++text == c; };
    return *text == search.front() && std::all_of(search.begin() + 1, search.end(), is_next);
}

// Where such a search stands first; null where it does not.
template <typename Unit>
const Unit* find_units(const Unit* text, std::basic_string_view<Unit> search) noexcept {
    const Unit* at = find_unit(text, search.front());
    while (at != nullptr && !stands_at(at, search))
        at = find_unit(at + 1, search.front());
    return at;
}

// Whether a text goes on at a position, which only the units before it have to be read for.
template <typename Unit>
bool reaches(const Unit* text, std::size_t position) noexcept {
    return first_units(text, static_cast<int>(position)).size() == position && text[position] != Unit(0);
}

// The searches below know how long the text is. A single unit, which stands in for most of them, is counted
// and exchanged without a branch for each occurrence.

template <typename Unit>
std::size_t count_occurrences(std::basic_string_view<Unit> text,
                              std::basic_string_view<Unit> search) noexcept {
    if (search.size() == 1)
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), search.front()));
    std::size_t count = 0;
    for (auto at = text.find(search); at != text.npos; at = text.find(search, at + search.size()))
        ++count;
    return count;
}

template <typename Unit>
void copy_replaced(std::basic_string_view<Unit> text, std::basic_string_view<Unit> search,
                   std::basic_string_view<Unit> replacement, Unit* out) noexcept {
    if (search.size() == 1 && replacement.size() == 1) {
        const auto exchanged = [from = search.front(), to = replacement.front()](Unit c) {
            return c == from ? to : c;
        };
        std::transform(text.begin(), text.end(), out, exchanged);
        return;
    }
    std::size_t from = 0;
    for (auto at = text.find(search); at != text.npos; at = text.find(search, from)) {
        out += text.copy(out, at - from, from);
        out += replacement.copy(out, replacement.size());
        from = at + search.size();
    }
    text.copy(out, text.size() - from, from);
}

} // namespace

template <typename Unit>
ZTextBuffer<Unit>::ZTextBuffer(const Unit* text, int count) {
    if (text != nullptr && count != 0)
        m_units = joined(first_units(text, count), {});
}

template <typename Unit>
ZTextBuffer<Unit>::ZTextBuffer(int count, Unit c) : m_units(allocate(as_size(count))) {
    std::fill_n(m_units.get(), as_size(count), c);
}

template <typename Unit>
ZTextBuffer<Unit>& ZTextBuffer<Unit>::operator=(const ZTextBuffer& other) {
    if (this != &other) {
        clear();
        *this = ZTextBuffer(other);
    }
    return *this;
}

template <typename Unit>
void ZTextBuffer<Unit>::assign(const Unit* text) {
    const array_t old = std::move(m_units);
    *this = ZTextBuffer(text, -1);
}

template <typename Unit>
Unit ZTextBuffer<Unit>::inq_char(int index) const noexcept {
    return is_inside(view(), index) ? m_units[as_size(index)] : Unit(0);
}

template <typename Unit>
int ZTextBuffer<Unit>::compare(const ZTextBuffer& other) const noexcept {
    const int order = view().compare(other.view());
    return (order > 0) - (order < 0);
}

template <typename Unit>
int ZTextBuffer<Unit>::compare_no_case(const ZTextBuffer& other) const noexcept {
    const auto code = [](Unit c) { return std::char_traits<Unit>::to_int_type(platform::to_lower(c)); };
    const view_t text = view();
    const view_t other_text = other.view();
    const std::size_t n_common = std::min(text.size(), other_text.size());
    for (std::size_t i = 0; i < n_common; ++i) {
        if (code(text[i]) != code(other_text[i]))
            return code(text[i]) < code(other_text[i]) ? -1 : 1;
    }
    return text.size() == other_text.size() ? 0 : text.size() < other_text.size() ? -1 : 1;
}

template <typename Unit>
int ZTextBuffer<Unit>::find(Unit c, int start) const noexcept {
    return c != Unit(0) ? find_view(view_t(&c, 1), start) : -1;
}

template <typename Unit>
int ZTextBuffer<Unit>::find(const Unit* text, int start) const noexcept {
    return find_view(view_of(text), start);
}

template <typename Unit>
int ZTextBuffer<Unit>::find_view(view_t search, int start) const noexcept {
    const std::size_t first = as_size(start);
    if (is_null() || !reaches(c_text(), first))
        return -1;
    if (search.empty())
        return static_cast<int>(first);
    const Unit* const at = find_units(c_text() + first, search);
    return at != nullptr ? static_cast<int>(at - c_text()) : -1;
}

template <typename Unit>
int ZTextBuffer<Unit>::find_last(Unit c) const noexcept {
    return as_index<Unit>(view().rfind(c));
}

template <typename Unit>
ZTextBuffer<Unit> ZTextBuffer<Unit>::sub_string(const Unit* text, int start, int count) {
    const view_t units = view_of(text);
    const auto length = static_cast<std::int64_t>(units.size());
    std::int64_t first = start < 0 ? start + length : start;
    std::int64_t wanted = count;
    if (first < 0) {
        wanted += first;
        first = 0;
    }
    const std::int64_t available = std::max<std::int64_t>(length - first, 0);
    const std::int64_t taken = wanted < 0 ? available : std::min(wanted, available);
    if (taken == 0)
        return {};
    return ZTextBuffer(
        joined(units.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(taken)), {}));
}

template <typename Unit>
ZTextBuffer<Unit> ZTextBuffer<Unit>::left(int count) const {
    return ZTextBuffer(joined(view().substr(0, as_size(count)), {}));
}

template <typename Unit>
ZTextBuffer<Unit> ZTextBuffer<Unit>::right(int count) const {
    const view_t text = view();
    if (as_size(count) > text.size())
        return *this;
    return ZTextBuffer(joined(text.substr(text.size() - as_size(count)), {}));
}

template <typename Unit>
ZTextBuffer<Unit> ZTextBuffer<Unit>::mid(int start, int count) const {
    const view_t text = view();
    if (as_size(start) + as_size(count) > text.size())
        return *this;
    return ZTextBuffer(joined(text.substr(as_size(start), as_size(count)), {}));
}

template <typename Unit>
ZTextBuffer<Unit> ZTextBuffer<Unit>::plus(const Unit* text) const {
    if (is_null() || text == nullptr)
        return ZTextBuffer(is_null() ? text : c_text(), -1);
    return ZTextBuffer(joined(view(), text));
}

template <typename Unit>
ZTextBuffer<Unit> ZTextBuffer<Unit>::plus(Unit c) const {
    if (c == Unit(0))
        return *this;
    return ZTextBuffer(joined(view(), view_t(&c, 1)));
}

template <typename Unit>
void ZTextBuffer<Unit>::append(const Unit* text) {
    if (text != nullptr)
        m_units = joined(view(), text);
}

template <typename Unit>
void ZTextBuffer<Unit>::append(Unit c) {
    if (c != Unit(0))
        m_units = joined(view(), view_t(&c, 1));
}

template <typename Unit>
void ZTextBuffer<Unit>::append(const Unit* text, int count) {
    m_units = joined(view(), first_units(text, count));
}

template <typename Unit>
void ZTextBuffer<Unit>::append(std::span<const Unit> units) {
    m_units = joined(view(), view_t(units.data(), units.size()));
}

template <typename Unit>
void ZTextBuffer<Unit>::replace(view_t search, view_t replacement) {
    if (is_null() || search.empty())
        return;
    const view_t text = view();
    const std::size_t n_found = count_occurrences(text, search);
    const std::size_t new_length = text.size() - n_found * search.size() + n_found * replacement.size();
    if (new_length == 0)
        return clear();
    array_t replaced = allocate(new_length);
    copy_replaced(text, search, replacement, replaced.get());
    m_units = std::move(replaced);
}

template <typename Unit>
void ZTextBuffer<Unit>::trim() noexcept {
    const auto is_text = [](Unit c) { return !platform::is_space(c); };
    const view_t text = view();
    const auto first = std::find_if(text.begin(), text.end(), is_text);
    const auto last = std::find_if(text.rbegin(), text.rend(), is_text).base();
    if (first == text.end())
        return clear();
    *std::copy(first, last, m_units.get()) = Unit(0);
}

template <typename Unit>
void ZTextBuffer<Unit>::to_upper() noexcept {
    std::transform(view().begin(), view().end(), m_units.get(), [](Unit c) { return platform::to_upper(c); });
}

template <typename Unit>
void ZTextBuffer<Unit>::to_lower() noexcept {
    std::transform(view().begin(), view().end(), m_units.get(), [](Unit c) { return platform::to_lower(c); });
}

template <typename Unit>
void ZTextBuffer<Unit>::strip_cr() {
    constexpr Unit cr[] = {Unit('\r')};
    replace(view_t(cr, 1), {});
}

template <typename Unit>
void ZTextBuffer<Unit>::lf_to_crlf() {
    constexpr Unit cr_lf[] = {Unit('\r'), Unit('\n')};
    replace(view_t(cr_lf + 1, 1), view_t(cr_lf, 2));
}

template <typename Unit>
auto ZTextBuffer<Unit>::joined(view_t first, view_t second) -> array_t {
    array_t units = allocate(first.size() + second.size());
    std::copy_n(second.data(), second.size(), std::copy_n(first.data(), first.size(), units.get()));
    return units;
}

template class ZTextBuffer<char>;
template class ZTextBuffer<utf16_t>;
