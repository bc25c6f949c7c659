#pragma once

#include "sdk/open/system/file_descriptor.h"
#include "sdk/open/system/large_block.h"
#include "sdk/open/system/system_calls.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace sdk_open {

// A file opened for reading.
class input_file final {
public:
    // Throws failure: file_not_found where no file can be reached by this name, cannot_open_input where one
    // can but may not be opened, not_a_raw_picture where it is a folder, a pipe or a device.
    explicit input_file(const std::string& path);

    // The first bytes; fewer where the file has fewer. Throws failure where reading fails.
    [[nodiscard]] std::vector<std::byte> read_first(std::size_t count) const;

    // The whole contents. Throws failure where reading fails, the file is empty or it is larger than any raw
    // picture.
    [[nodiscard]] large_block read_whole() const;

    [[nodiscard]] const system_calls::file_identity& inq_identity() const noexcept { return m_identity; }

private:
    [[nodiscard]] std::size_t fill(std::span<std::byte> target) const;

    file_descriptor m_file;
    system_calls::file_identity m_identity{};
};

} // namespace sdk_open
