#include "cli/reporting/screen.h"

#include "cli/reporting/one_line.h"
#include "cli/terminal.h"

#include <cstdlib>
#include <iostream>
#include <utility>

namespace {

constexpr std::string_view erase_line = "\r\x1b[K";

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
    const std::string_view before = m_status.empty() ? "" : erase_line;
    write(std::string(before) + "raw-to-tiff: " + one_line(text) + '\n' + m_status);
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

std::string screen::in_green(std::string_view text) const {
    return in_colour("32", text);
}

std::string screen::in_red(std::string_view text) const {
    return in_colour("31", text);
}

std::string screen::in_colour(std::string_view code, std::string_view text) const {
    if (!m_has_colours)
        return std::string(text);
    return "\x1b[" + std::string(code) + 'm' + std::string(text) + "\x1b[0m";
}
