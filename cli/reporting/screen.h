#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Standard error: lines that stay, and on a terminal one last line below them that changes. A write that
// fails, as to a standard error that is closed, is nobody's loss.
class screen final {
public:
    screen() noexcept;
    screen(const screen&) = delete;
    screen& operator=(const screen&) = delete;
    ~screen() { clear_status(); }

    [[nodiscard]] bool has_status() const noexcept { return m_is_terminal; }
    [[nodiscard]] unsigned inq_columns() const noexcept;

    // "raw-to-tiff: " and the text, which is red where it tells of a failure and colours are wanted.
    void write_line(std::string_view text);
    void write_failure(std::string_view text);

    // Text that fits into the columns, apart from escapes; on a terminal only.
    void show_status(std::string text);
    void clear_status();

    // Text in a colour, where colours are wanted.
    [[nodiscard]] std::string in_red(std::string_view text) const;

    // A bar of this many columns, of which some stand for what is done: colours, or else characters.
    [[nodiscard]] std::string bar(std::size_t done, std::size_t columns) const;

private:
    void write_coloured_line(const std::string& text);
    [[nodiscard]] std::string in_colour(std::string_view code, std::string_view text) const;

    bool m_is_terminal;
    bool m_has_colours;
    std::string m_status;
};
