#pragma once

#include <filesystem>
#include <string>
#include <vector>

// A fresh folder under the system's temporary folder; goes at the end of its life with everything in it.
class scratch_folder final {
public:
    scratch_folder();
    scratch_folder(const scratch_folder&) = delete;
    scratch_folder& operator=(const scratch_folder&) = delete;
    ~scratch_folder();

    [[nodiscard]] const std::filesystem::path& inq_path() const noexcept { return m_path; }

private:
    std::filesystem::path m_path;
};

// Whole files, and the sorted names of what a folder holds. They throw std::ios_base::failure and
// std::filesystem::filesystem_error.
[[nodiscard]] std::string read_file(const std::filesystem::path& file);
void write_file(const std::filesystem::path& file, const std::string& bytes);
[[nodiscard]] std::vector<std::string> list_folder(const std::filesystem::path& folder);
