#include "tests/sdk/open/samples.h"

#include <span>

std::filesystem::path sample(std::string_view name) {
    return std::filesystem::path(SAMPLE_FOLDER) / name;
}

std::filesystem::path truth_of(std::string_view name) {
    return sample(name).replace_extension(".truth.tif");
}

std::filesystem::path real_sample() {
    return "/usr/share/doc/rawtran/IMG_5952.CR2";
}

std::vector<std::byte> bytes_of(const std::string& text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}
