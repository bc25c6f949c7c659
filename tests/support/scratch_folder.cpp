#include "tests/support/scratch_folder.h"

#include <algorithm>
#include <fstream>
#include <random>

namespace fs = std::filesystem;

scratch_folder::scratch_folder() {
    std::random_device random;
    do
        m_path = fs::temp_directory_path() / ("scratch-" + std::to_string(random()));
    while (!fs::create_directory(m_path));
}

scratch_folder::~scratch_folder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

std::string read_file(const fs::path& file) {
    std::ifstream stream;
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    stream.open(file, std::ios::binary);
    std::string bytes(static_cast<std::size_t>(fs::file_size(file)), '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

void write_file(const fs::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    stream << bytes << std::flush;
}

std::vector<std::string> list_folder(const fs::path& folder) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const std::u8string name = entry.path().filename().u8string();
        names.emplace_back(name.begin(), name.end());
    }
    std::sort(names.begin(), names.end());
    return names;
}
