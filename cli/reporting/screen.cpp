#include "cli/reporting/screen.h"

#include "cli/reporting/one_line.h"
#include "cli/terminal.h"

#include <cstdlib>
#include <iostream>
#include <utility>

namespace {

constexpr std::string_view erase_line = "\r\x1b[K";
constexpr std::string_view red = "31";
constexpr std::string_view green_background = "42";
constexpr std::string_view grey_background = "100";

bool wants_no_colours() noexcept {
    const char* const setting = std::getenv("NO_COLOR");
    return setting != nullptr && *setting != '\0';
}

// In one piece, so that nothing comes between.
void write(const std::string& text) {
    std::cerr.write(text.data(), static_cast<std::streamsize>(text.size()));
    std::cerr.clear();
}

} // namespace

screen::screen() noexcept
    : m_is_terminal(terminal::inq_width() > 0), m_has_colours(m_is_terminal && !wants_no_colours()) {}

unsigned screen::inq_columns() const noexcept {
    return terminal::inq_width();
}

void screen::write_line(std::string_view text) {
    write_coloured_line(one_line(text));
}

void screen::write_failure(std::string_view text) {
    write_coloured_line(in_red(one_line(text)));
}

void screen::write_coloured_line(const std::string& text) {
    const std::string_view before = m_status.empty() ? "" : erase_line;
    write(std::string(before) + "raw-to-tiff: " + text + '\n' + m_status);
}

void screen::show_status(std::string text) {
    if (!m_is_terminal || text == m_status)
        return;
    m_status = std::move(text);
    write(std::string(erase_line) + m_status);
}

void screen::clear_status() {
    if (!m_status.empty())
        write(std::string(erase_line));
    m_status.clear();
}

std::string screen::in_red(std::string_view text) const {
    return in_colour(red, text);
}

std::string screen::bar(std::size_t done, std::size_t columns) const {
    const std::size_t left = columns - done;
    if (!m_has_colours)
        return std::string(done, '#') + std::string(left, '-');
    return in_colour(green_background, std::string(done, ' ')) +
           in_colour(grey_background, std::string(left, ' '));
}

std::string screen::in_colour(std::string_view code, std::string_view text) const {
    if (!m_has_colours)
        return std::string(text);
    return "\x1b[" + std::string(code) + 'm' + std::string(text) + "\x1b[0m";
}
