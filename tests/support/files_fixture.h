#pragma once

#include "classlib/files/ZFileLocation.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>
#include <optional>

// A folder for each test, on a path beyond ASCII. Names are relative to it, with "/" between components.
class files_fixture : public testing::Test {
protected:
    files_fixture() { std::filesystem::create_directory(m_folder); }

    [[nodiscard]] std::filesystem::path path(std::string_view name) const { return m_folder / name; }
    [[nodiscard]] auto units_of(std::string_view name) const { return path(name).string<utf16_t>(); }
    [[nodiscard]] ZFileLocation file(std::string_view name) const { return {units_of(name).c_str(), false}; }
    [[nodiscard]] ZFileLocation folder(std::string_view name) const { return {units_of(name).c_str(), true}; }

    void make_folder(std::string_view name) const { std::filesystem::create_directory(path(name)); }
    void write(std::string_view name, const std::string& bytes) const { write_file(path(name), bytes); }

    // Nothing when there is no such file.
    [[nodiscard]] std::optional<std::string> read(std::string_view name) const {
        const bool is_file = std::filesystem::is_regular_file(path(name));
        return is_file ? std::optional(read_file(path(name))) : std::nullopt;
    }

    // The names in the folder, in order, each followed by a blank.
    [[nodiscard]] std::string list() const {
        std::string list;
        for (const std::string& name : list_folder(m_folder))
            list += name + ' ';
        return list;
    }

private:
    scratch_folder m_scratch;
    std::filesystem::path m_folder = m_scratch.inq_path() / u"pictures \u00E9\U0001F4F7";
};
