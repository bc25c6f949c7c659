#pragma once

#include "classlib/files/ZFileLocation.h"
#include "tests/conversion/sdk_double.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/temporary_folder_setting.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

using calls_t = std::vector<std::string>;

[[nodiscard]] ZFileLocation location_of(const std::filesystem::path& path);

// A folder with a raw file, or what the double takes for one, and with an empty temporary folder.
class conversion_fixture : public testing::Test {
protected:
    conversion_fixture();

    // Converts the raw file to the TIFF.
    [[nodiscard]] int convert() const;

    // The calls with RAW, TIFF and COPY for the paths of the two files and of a copy whose name is as it
    // should be.
    [[nodiscard]] calls_t named_calls(const sdk_double& sdk) const;

    const std::string m_raw_bytes = std::string(70000, 'r') + '\0' + "end";
    const scratch_folder m_scratch;
    const std::filesystem::path m_folder = m_scratch.inq_path() / u8"Gr\u00FC\u00DFe \u65E5 \U0001F4F7";
    const std::filesystem::path m_temporary = m_folder / u8"tmp \u00E4";
    const std::filesystem::path m_raw = m_folder / u8"\U0001F4F7 raw.CR2";
    const std::filesystem::path m_tiff = m_folder / u8"\u0442 2.tif";

private:
    const temporary_folder_setting m_setting{m_temporary};
};
