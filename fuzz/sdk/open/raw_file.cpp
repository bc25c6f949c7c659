#include "fuzz/fuzz_target.h"
#include "tests/sdk/open/conversion_run.h"
#include "tests/support/scratch_folder.h"

// A raw file, whatever is in it, becomes a whole TIFF, and each time the same, or is refused with a reason
// and leaves nothing behind. TMPDIR says where the files lie; it should be in memory.
namespace {

// The TIFF; empty where the raw file is refused.
std::string converted(const std::filesystem::path& folder) {
    const std::string reason = convert(folder / "in.raw", folder / "out.tif");
    if (!reason.empty()) {
        require(reason.find_first_of("\n\r") == std::string::npos, "a reason has more than one line");
        require(list_folder(folder).size() == 1, "a refused file left something behind");
        return {};
    }
    std::string tiff = read_file(folder / "out.tif");
    std::filesystem::remove(folder / "out.tif");
    require(list_folder(folder).size() == 1, "there is more than a TIFF");
    require(tiff.starts_with("II*"), "success, and no TIFF");
    return tiff;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static const scratch_folder folder;
    write_file(folder.inq_path() / "in.raw", std::string(fuzz_input(data, size).take()));
    const std::string tiff = converted(folder.inq_path());
    require(tiff.empty() || converted(folder.inq_path()) == tiff, "one file became two pictures");
    return 0;
}
