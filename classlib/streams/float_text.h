#pragma once

#include <array>
#include <optional>
#include <string_view>

// The text of a floating-point number, in a buffer of its own.
class float_text final {
public:
    enum class form_t { fixed, exponent };

    // The number in one of the forms of ZWStream. Nothing when it could take more than max_size bytes:
    // that is judged by the precision and the position of the decimal point, not by the text.
    [[nodiscard]] static std::optional<float_text> of(double v, form_t form, int precision) noexcept;

    [[nodiscard]] std::string_view view() const noexcept { return {m_text.data(), m_size}; }

private:
    static constexpr int max_size = 512;

    float_text() noexcept = default;

    [[nodiscard]] static bool has_room(int precision, int point_position) noexcept;
    void set_special(double v) noexcept;
    [[nodiscard]] bool set_fixed(double v, int precision) noexcept;
    [[nodiscard]] bool set_exponent(double v, int precision) noexcept;

    // Room for any number with the largest precision that max_size lets through.
    std::array<char, 1024> m_text;
    std::size_t m_size = 0;
};
