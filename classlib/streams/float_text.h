#pragma once

#include <array>
#include <cstddef>
#include <string_view>

// The text of a floating-point number in one of the forms of ZWStream, in a buffer of its own.
class float_text final {
public:
    enum class form_t { fixed, exponent };

    float_text(double v, form_t form, int precision) noexcept;

    // False for a number that could take more than 512 bytes, as its precision and the position of its
    // decimal point have it, whatever its text would really take. It has no text then.
    [[nodiscard]] bool inq_fits() const noexcept { return m_size > 0; }

    [[nodiscard]] std::string_view view() const noexcept { return {m_text.data(), m_size}; }

private:
    void set_special(double v) noexcept;
    void set_fixed(double v, int precision) noexcept;
    void set_exponent(double v, int precision) noexcept;

    // Room for any number with the largest precision that is let through.
    std::array<char, 1024> m_text;
    std::size_t m_size = 0;
};
