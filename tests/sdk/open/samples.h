#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

// A raw file below samples/synthetic, by its name.
inline std::filesystem::path sample(const std::string& name) {
    return std::filesystem::path(SAMPLE_FOLDER) / name;
}

// A real camera's picture (an EOS 30D): the file that RAW_TO_TIFF_SAMPLE names, or else where Debian's
// package rawtran-doc installs it.
inline std::filesystem::path real_sample() {
    const char* const given = std::getenv("RAW_TO_TIFF_SAMPLE");
    return given != nullptr ? given : "/usr/share/doc/rawtran/IMG_5952.CR2";
}
