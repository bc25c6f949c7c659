#include "classlib/files/ZFileLocation.h"
#include "conversion/convert_raw_to_tiff.h"
#include "conversion/edsdk.h"
#include "fuzz/fuzz_target.h"
#include "tests/support/scratch_folder.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

struct __EdsObject { // NOLINT(bugprone-reserved-identifier): see conversion/edsdk.h
    bool is_image;
    bool is_open;
};

// A conversion with an SDK that fails where it likes, while files come and go. Whatever happens, each call of
// it is a legal one, every handle is given back, the copy is gone, and the answer says whether the picture
// was saved.
namespace {

const std::string raw_bytes(5000, 'r');

struct scripted_sdk final {
    fuzz_input script{std::string_view()};
    std::filesystem::path raw = {};
    bool is_running = false;
    bool is_saved = false;
    unsigned n_sessions = 0;
    std::vector<std::unique_ptr<__EdsObject>> objects = {};

    // The next byte of the script says what a call answers and what happens meanwhile.
    [[nodiscard]] eds_error_t answer() {
        require(is_running, "a call outside the session");
        constexpr std::array<eds_error_t, 8> answers = {eds_ok, eds_ok, eds_ok, eds_ok,
                                                        eds_ok, 34,     1,      0xffffffff};
        const auto step = script.take_value<unsigned char>();
        if (step / 8 % 8 == 1)
            std::filesystem::remove(raw);
        else if (step / 8 % 8 == 2)
            write_file(raw, raw_bytes);
        return answers[step % 8];
    }

    [[nodiscard]] eds_error_t answer(bool is_image, __EdsObject** object) {
        const eds_error_t error = answer();
        if (error == eds_ok) {
            objects.push_back(std::make_unique<__EdsObject>(__EdsObject{is_image, true}));
            *object = objects.back().get();
        }
        return error;
    }
} the_sdk;

void require_open(const __EdsObject* object, bool is_image) {
    require(object != nullptr && object->is_open && object->is_image == is_image, "a wrong handle");
}

bool is_any_open() {
    return std::ranges::any_of(the_sdk.objects, [](const auto& object) { return object->is_open; });
}

int convert(const std::filesystem::path& raw, const std::filesystem::path& tiff) {
    return convert_raw_to_tiff({raw.string<utf16_t>().c_str(), false},
                               {tiff.string<utf16_t>().c_str(), false});
}

} // namespace

eds_error_t EdsInitializeSDK() {
    require(!the_sdk.is_running && the_sdk.n_sessions++ == 0, "a second session");
    the_sdk.is_running = true;
    return the_sdk.answer();
}

eds_error_t EdsTerminateSDK() {
    require(!is_any_open(), "a handle is open at the end");
    const eds_error_t error = the_sdk.answer();
    the_sdk.is_running = false;
    return error;
}

eds_error_t EdsCreateFileStream(const char* path, eds_disposition_t, eds_access_t, __EdsObject** stream) {
    std::string file(path);
    std::ranges::replace(file, '\\', '/');
    require(!file.ends_with(".tiff") || read_file(file) == raw_bytes, "the copy differs from the raw file");
    return the_sdk.answer(false, stream);
}

eds_error_t EdsCreateImageRef(__EdsObject* stream, __EdsObject** image) {
    require_open(stream, false);
    return the_sdk.answer(true, image);
}

eds_error_t EdsSaveImage(__EdsObject* image, eds_target_t, tagEdsSaveImageSetting, __EdsObject* stream) {
    require_open(image, true);
    require_open(stream, false);
    const eds_error_t error = the_sdk.answer();
    the_sdk.is_saved = error == eds_ok;
    return error;
}

eds_error_t EdsRelease(__EdsObject* object) {
    require(object != nullptr && object->is_open, "a handle that is released twice");
    object->is_open = false;
    return the_sdk.answer();
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static constexpr std::array names = {"a.cr2",     "a.CRW", "a.b.Cr2",   ".crw",
                                         "a.cr2.tif", "acr2",  "none/a.cr2"};
    static const scratch_folder folder;
    static const std::filesystem::path copies = folder.inq_path() / "copies";
    std::filesystem::create_directory(copies);
    setenv("TMPDIR", copies.c_str(), 1);
    fuzz_input input(data, size);
    const std::size_t name = input.take_value<unsigned char>() % names.size();
    const std::filesystem::path raw = folder.inq_path() / "a" / names[name];
    std::filesystem::create_directory(folder.inq_path() / "a");
    const bool is_there = name < 6 && input.take_value<unsigned char>() % 8 != 0;
    if (is_there)
        write_file(raw, raw_bytes);

    the_sdk = {.script = input, .raw = raw};
    const int result = convert(raw, folder.inq_path() / "out.tif");
    require(result == (!is_there ? 10 : the_sdk.is_saved ? 0 : 11), "a wrong answer");
    require(the_sdk.n_sessions == (is_there && name < 4 ? 1U : 0U) && !the_sdk.is_running,
            "a wrong number of sessions");
    require(list_folder(copies).empty(), "the copy is left");
    std::filesystem::remove(raw);
    return 0;
}
