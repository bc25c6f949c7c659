#include "classlib/streams/float_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace {

// Where the decimal point stands among the significant digits of a fixed-point number: after that many of
// them, or, when it is not positive, before that many zeros. 12.5 gives 2, 0.05 gives -1.
int point_position_of(std::string_view fixed) noexcept {
    fixed.remove_prefix(fixed.starts_with('-') ? 1 : 0);
    const std::size_t point = std::min(fixed.find('.'), fixed.size());
    if (!fixed.starts_with('0'))
        return static_cast<int>(point);
    const std::string_view decimals = fixed.substr(std::min(point + 1, fixed.size()));
    return -static_cast<int>(std::min(decimals.find_first_not_of('0'), decimals.size()));
}

// Whether a number with this many digits, and its point that far from them, is sure to fit.
bool has_room(int precision, int point_position) noexcept {
    constexpr int max_digits = 512 - 16; // the rest is for sign, point and exponent
    return precision <= max_digits && precision + std::abs(point_position) <= max_digits;
}

} // namespace

float_text::float_text(double v, form_t form, int precision) noexcept {
    if (!has_room(precision, 0))
        return;
    if (!std::isfinite(v))
        set_special(v);
    else if (form == form_t::exponent)
        set_exponent(v, std::max(precision, 1));
    else
        set_fixed(v, precision);
}

void float_text::set_special(double v) noexcept {
    const std::string_view text = std::isnan(v) ? "nan" : v < 0 ? "-inf" : "inf";
    m_size = text.copy(m_text.data(), m_text.size());
}

void float_text::set_fixed(double v, int precision) noexcept {
    char* end =
        std::to_chars(m_text.data(), m_text.data() + m_text.size(), v, std::chars_format::fixed, precision)
            .ptr;
    const int point_position = v == 0 ? 1 : point_position_of({m_text.data(), end});
    if (!has_room(precision, point_position))
        return;
    if (precision == 0)
        *end++ = '.';
    m_size = static_cast<std::size_t>(end - m_text.data());
}

// The C++ library writes 1.2345e+03 where we write 1.2345e003.
void float_text::set_exponent(double v, int precision) noexcept {
    char* const end = std::to_chars(m_text.data(), m_text.data() + m_text.size(), v,
                                    std::chars_format::scientific, precision - 1)
                          .ptr;
    char* mark = std::find(m_text.data(), end, 'e');
    int exponent = 0;
    std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, exponent);
    if (!has_room(precision, exponent + 1))
        return;
    if (precision == 1)
        *mark++ = '.';
    *mark++ = 'e';
    if (exponent < 0)
        *mark++ = '-';
    for (const int unit : {100, 10, 1})
        *mark++ = static_cast<char>('0' + std::abs(exponent) / unit % 10);
    m_size = static_cast<std::size_t>(mark - m_text.data());
}
