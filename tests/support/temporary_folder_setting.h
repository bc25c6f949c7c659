#pragma once

#include <filesystem>
#include <optional>

// Makes a folder, even a missing one, the temporary folder of the process; undone at the end of its life.
class temporary_folder_setting final {
public:
    explicit temporary_folder_setting(const std::filesystem::path& folder);
    temporary_folder_setting& operator=(temporary_folder_setting&&) = delete;
    ~temporary_folder_setting();

private:
    std::optional<std::filesystem::path> m_old;
};
