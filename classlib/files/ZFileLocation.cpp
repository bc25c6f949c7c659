#include "classlib/files/ZFileLocation.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace {

constexpr utf16_t separator = u'\\';
constexpr utf16_t dot = u'.';
constexpr utf16_t colon = u':';

// The volume of a UNC path begins with these two.
bool is_unc(const ZUString& text) noexcept {
    return text.inq_char(0) == separator && text.inq_char(1) == separator;
}

ZUString with_backslashes(const ZUString& text) {
    ZUString result = text;
    result.replace(UTF16("/"), UTF16("\\"));
    return result;
}

// The last separator before an end, or -1.
int find_separator_before(const ZUString& text, int end) noexcept {
    if (end <= 0)
        return -1;
    using view_t = std::basic_string_view<utf16_t>;
    const auto position = view_t(text).rfind(separator, static_cast<std::size_t>(end) - 1);
    return position == view_t::npos ? -1 : static_cast<int>(position);
}

} // namespace

ZFileLocation::ZFileLocation(const ZUString& path, bool is_folder) {
    set_path(path);
    if (is_folder)
        name_to_folder();
}

bool ZFileLocation::operator==(const ZFileLocation& other) const noexcept {
    return m_volume.is_equal_no_case(other.m_volume) && m_folder.is_equal_no_case(other.m_folder) &&
           m_name.is_equal_no_case(other.m_name);
}

void ZFileLocation::clear() noexcept {
    m_volume.clear();
    m_folder.clear();
    m_name.clear();
}

// Expects an empty location: parts that the text does not name are left as they are.
void ZFileLocation::set_path(const ZUString& path) {
    const ZUString text = with_backslashes(path);
    const int start = take_volume(text);
    const int last = text.find_last(separator);
    if (last >= start) {
        set_folder(text.sub_string(start, last - start + 1));
        set_name(text.sub_string(last + 1, -1));
    } else {
        set_name(text.sub_string(start, -1));
    }
}

// Sets the volume that the text begins with, and answers the position after it.
int ZFileLocation::take_volume(const ZUString& path) {
    if (path.inq_char(1) == colon) {
        set_drive_letter(path.inq_char(0));
        return 2;
    }
    if (!is_unc(path))
        return 0;
    const int server_end = path.find(separator, 2);
    const int end = server_end >= 0 ? server_end : path.length();
    set_server(path.sub_string(2, end - 2));
    return end;
}

void ZFileLocation::set_drive_letter(utf16_t letter) {
    m_volume = ZUString(1, letter) + colon;
}

void ZFileLocation::set_server(const ZUString& server) {
    if (server.length() > 0)
        m_volume = UTF16("\\\\") + server;
    else
        m_volume.clear();
}

void ZFileLocation::set_folder(const ZUString& folder) {
    ZUString text = with_backslashes(folder);
    if (text.inq_char(text.length() - 1) != separator)
        text += separator;
    m_folder = std::move(text);
}

void ZFileLocation::set_name(const ZUString& name) {
    m_name = name;
}

void ZFileLocation::set_extension(const ZUString& extension) {
    ZUString name = inq_base_name();
    if (extension.length() > 0) {
        if (extension.inq_char(0) != dot)
            name += dot;
        name += extension;
    }
    m_name = std::move(name);
}

void ZFileLocation::remove_extension() {
    m_name = inq_base_name();
}

void ZFileLocation::name_to_folder() {
    if (m_name.length() == 0)
        return;
    add_folder(m_name);
    m_name.clear();
}

void ZFileLocation::folder_to_name() {
    const int end = inq_innermost_end();
    const int last = find_separator_before(m_folder, end - 1);
    if (last < 0)
        return;
    ZUString name = m_folder.sub_string(last + 1, end - last - 1);
    m_folder = m_folder.sub_string(0, last + 1);
    m_name = std::move(name);
}

bool ZFileLocation::to_parent_folder() {
    const int end = inq_innermost_end();
    if (end <= 1)
        return false;
    const int last = find_separator_before(m_folder, end - 1);
    m_folder = last < 1 ? ZUString(1, separator) : m_folder.sub_string(0, last + 1);
    return true;
}

void ZFileLocation::add_folder(const ZUString& folder) {
    m_folder = m_folder + folder + separator;
}

void ZFileLocation::add_tilde() {
    m_name += utf16_t(u'~');
}

void ZFileLocation::add_plus() {
    m_name += utf16_t(u'+');
}

ZUString ZFileLocation::inq_path() const {
    return inq_volume_prefix() + m_folder + m_name;
}

ZUString ZFileLocation::inq_folder_path() const {
    const int length = m_folder.length();
    const bool has_closing_separator = length > 1 && m_folder.inq_char(length - 1) == separator;
    return inq_volume_prefix() + m_folder.left(has_closing_separator ? length - 1 : length);
}

// The volume, with the separator that a server's name needs before a folder without one.
ZUString ZFileLocation::inq_volume_prefix() const {
    const bool needs_separator =
        m_volume.inq_char(0) == separator && m_folder.length() > 0 && m_folder.inq_char(0) != separator;
    return needs_separator ? m_volume + separator : m_volume;
}

// The position after the innermost folder's name; below 1 when there is no such name.
int ZFileLocation::inq_innermost_end() const noexcept {
    const int length = m_folder.length();
    return m_folder.inq_char(length - 1) == separator ? length - 1 : length;
}

ZUString ZFileLocation::inq_extension() const {
    const int last_dot = m_name.find_last(dot);
    return last_dot >= 0 ? m_name.sub_string(last_dot, -1) : ZUString();
}

ZUString ZFileLocation::inq_base_name() const {
    const int last_dot = m_name.find_last(dot);
    return last_dot >= 0 ? m_name.sub_string(0, last_dot) : m_name;
}

ZUString ZFileLocation::inq_description() const {
    return m_name + UTF16(" - ") + m_volume + m_folder;
}

utf16_t ZFileLocation::inq_drive_letter() const noexcept {
    return m_volume.inq_char(1) == colon ? m_volume.inq_char(0) : utf16_t(0);
}

ZUString ZFileLocation::inq_server() const {
    return is_unc(m_volume) ? m_volume.sub_string(2, -1) : ZUString();
}

bool ZFileLocation::inq_empty() const noexcept {
    return m_volume.length() == 0 && m_folder.length() == 0 && m_name.length() == 0;
}
