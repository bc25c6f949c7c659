#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

// A fresh folder under the system's temporary folder; goes at the end of its life with everything in it.
class scratch_folder final {
public:
    scratch_folder() { std::filesystem::create_directory(m_path); }
    scratch_folder& operator=(scratch_folder&&) = delete;
    ~scratch_folder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] const std::filesystem::path& inq_path() const noexcept { return m_path; }

private:
    const std::filesystem::path m_path =
        std::filesystem::temp_directory_path() / ("scratch-" + std::to_string(std::random_device()()));
};

// Whole files, and the sorted names of what a folder holds. They throw what the standard library throws.

[[nodiscard]] inline std::string read_file(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    std::string bytes(static_cast<std::size_t>(std::filesystem::file_size(file)), '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

inline void write_file(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    stream << bytes << std::flush;
}

[[nodiscard]] inline std::vector<std::string> list_folder(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::u8string name = entry.path().filename().u8string();
        names.emplace_back(name.begin(), name.end());
    }
    std::sort(names.begin(), names.end());
    return names;
}
