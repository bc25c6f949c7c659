#include "conversion/edsdk.h"
#include "sdk/edsdk_dll/failure_reason.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/temporary_folder_setting.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <process.h>
#include <sstream>
#include <string>
#include <vector>
#include <windows.h>

namespace fs = std::filesystem;

namespace {

using calls_t = std::vector<std::string>;

const calls_t whole_run = {
    "EdsInitializeSDK()",
    "EdsCreateFileStream(RAW, 2, 2)",
    "EdsCreateImageRef(#1)",
    "EdsRelease(#1)",
    "EdsCreateFileStream(TIFF, 1, 1)",
    "EdsSaveImage(#2, 8, #3)",
    "EdsRelease(#3)",
    "EdsRelease(#2)",
    "EdsTerminateSDK()",
};

const calls_t whole_run_by_copy = [] {
    calls_t calls = whole_run;
    calls.insert(calls.begin() + 2, "EdsCreateFileStream(COPY, 2, 2)");
    return calls;
}();

// A location as a host knows it that has nothing but the library's file.
struct location_t {
    const wchar_t* volume;
    const wchar_t* folder;
    const wchar_t* name;
};

using convert_t = int(const location_t& raw, const location_t& tiff);

void replace_in(std::string& text, std::string_view from, std::string_view to) {
    if (const std::size_t at = text.find(from); at != std::string::npos)
        text.replace(at, from.size(), to);
}

const fs::path plain_sdk = fs::path(STAND_INS) / "plain.dll";

std::string utf8(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

class edsdk_dll_test : public testing::Test {
protected:
    edsdk_dll_test() {
        fs::create_directories(m_temporary);
        fs::copy_file(PLUG_IN, m_plug_in);
        write_file(m_raw, m_raw_bytes);
        put_sdk(plain_sdk);
    }

    void put_sdk(const fs::path& library) const {
        fs::copy_file(library, m_sdk, fs::copy_options::overwrite_existing);
    }

    // Says which calls fail, and forgets the calls so far.
    void order(const std::string& orders) const {
        write_file(m_folder / "EDSDK.orders", orders);
        fs::remove(m_folder / "EDSDK.log");
    }

    [[nodiscard]] int convert(const location_t& raw, const location_t& tiff) const {
        const HMODULE plug_in = ::LoadLibraryW(m_plug_in.c_str());
        auto* const found = reinterpret_cast<void (*)()>(::GetProcAddress(plug_in, "convert_raw_to_tiff"));
        const int result = reinterpret_cast<convert_t*>(found)(raw, tiff);
        EXPECT_EQ(::GetModuleHandleW(L"EDSDK.dll"), nullptr) << "it is given back after each call";
        ::FreeLibrary(plug_in);
        return result;
    }
    [[nodiscard]] int convert() const {
        fs::remove(m_tiff);
        return convert({nullptr, L"", m_raw.c_str()}, {L"", nullptr, m_tiff.c_str()});
    }

    // The calls since the last order, with names for the paths; the copy has some name in the temporary
    // folder.
    [[nodiscard]] calls_t calls() const {
        calls_t calls;
        std::istringstream log(fs::exists(m_folder / "EDSDK.log") ? read_file(m_folder / "EDSDK.log") : "");
        const std::string copy = utf8(m_temporary / "KW-");
        for (std::string call; std::getline(log, call);) {
            replace_in(call, utf8(m_raw), "RAW");
            replace_in(call, utf8(m_tiff), "TIFF");
            if (const std::size_t at = call.find(copy); at != std::string::npos)
                call.replace(at, copy.size() + std::string_view("K9P34Y6N3WD25RQ4F5ZR.tiff").size(), "COPY");
            calls.push_back(call);
        }
        return calls;
    }

    // Whether a file is a TIFF with the raw file's bytes for pixels, as the stand-in makes them.
    [[nodiscard]] bool is_tiff(const fs::path& file) const {
        const std::string bytes = fs::exists(file) ? read_file(file) : "";
        return bytes.starts_with("II*") && bytes.ends_with(m_raw_bytes);
    }

    const std::string m_raw_bytes =
        std::string(70000, 'r') + '\0' + "end"; // an even number, for whole pixels
    const scratch_folder m_scratch;
    const fs::path m_folder = m_scratch.inq_path() / u8"plug-in \u0442 \u65E5 \U0001F4F7";
    const fs::path m_plug_in = m_folder / "convert_raw_to_tiff.dll";
    const fs::path m_sdk = m_folder / "EDSDK.dll";
    const fs::path m_temporary = m_folder / u8"tmp \u00E4";
    const fs::path m_raw = m_folder / u8"\U0001F4F7 \u65E5.CR2";
    const fs::path m_tiff = m_folder / u8"\u0442 2.tif";
    const temporary_folder_setting m_setting{m_temporary};
};

TEST_F(edsdk_dll_test, converts_whatever_names_the_functions_are_exported_under) {
    for (const fs::directory_entry& library : fs::directory_iterator(STAND_INS)) {
        put_sdk(library);
        order("");
        EXPECT_EQ(convert(), 0) << library;
        EXPECT_EQ(calls(), whole_run) << library;
        EXPECT_TRUE(is_tiff(m_tiff)) << library;
    }
}

TEST_F(edsdk_dll_test, fails_cleanly_whichever_call_fails) {
    using row_t = std::pair<calls_t, std::string>;
    for (const auto& [whole, orders] : {row_t{whole_run, ""}, row_t{whole_run_by_copy, "2 34\n"}}) {
        for (std::size_t n = 1; n <= whole.size() + 1; ++n) {
            SCOPED_TRACE(orders + std::to_string(n));
            order(orders + std::to_string(n) + " 97");
            const bool is_failure = n < whole.size() && !whole[n - 1].starts_with("EdsRelease");
            EXPECT_EQ(convert(), is_failure ? 11 : 0);
            EXPECT_EQ(is_tiff(m_tiff), !is_failure);
            const calls_t made = calls();
            const std::size_t n_whole = is_failure ? n : whole.size();
            ASSERT_GT(made.size(), n_whole - 1);
            for (std::size_t i = 0; i < n_whole; ++i)
                EXPECT_EQ(made[i], whole[i]);
            EXPECT_EQ(made.back(), whole.back()) << "with every handle given back, or the stand-in marks it";
            EXPECT_EQ(list_folder(m_temporary), calls_t());
        }
    }
}

TEST_F(edsdk_dll_test, a_library_that_is_of_no_use_is_a_failure_that_the_host_survives) {
    order("");
    const std::string sound = read_file(m_sdk);
    std::string other_width = sound;
    other_width[sound.find(std::string("PE\0\0", 4)) + 4] ^= '\x64' ^ '\x4C'; // x64 is 0x8664, x86 0x014C
    for (const std::string& bytes : {std::string(), sound.substr(0, 2000), other_width, read_file(PLUG_IN)}) {
        write_file(m_sdk, bytes);
        EXPECT_EQ(convert(), 11) << bytes.size();
    }
    fs::remove(m_sdk);
    EXPECT_EQ(convert(), 11);
    EXPECT_EQ(calls(), calls_t());
    write_file(m_sdk, sound);
    EXPECT_EQ(convert(), 0);
}

TEST_F(edsdk_dll_test, odd_locations) {
    const location_t nothing{nullptr, nullptr, nullptr};
    const location_t lone_surrogate{nullptr, nullptr, L"\xD83D.cr2"};
    const location_t raw{nullptr, nullptr, m_raw.c_str()};
    EXPECT_EQ(convert(nothing, nothing), 10);
    EXPECT_EQ(convert(lone_surrogate, nothing), 10);
    EXPECT_EQ(convert(raw, nothing), 11);
    const std::wstring folder = m_folder.wstring() + L'\\';
    EXPECT_EQ(convert(raw, {nullptr, folder.c_str(), L"\xDCF7.tif"}), 0);
    EXPECT_TRUE(is_tiff(m_folder / u8"\uFFFD.tif"));
}

// The host of the embedding guide, in a folder of its own.
class host_test : public edsdk_dll_test {
protected:
    host_test() {
        fs::create_directory(m_host.parent_path());
        fs::copy_file(HOST, m_host);
    }

    [[nodiscard]] std::intptr_t run(const std::wstring& volume, const std::wstring& folder) const {
        const std::wstring arguments[] = {quoted(m_host),           quoted(m_plug_in),
                                          quoted(volume),           quoted(folder),
                                          quoted(m_raw.filename()), quoted(m_tiff.filename())};
        std::vector<const wchar_t*> pointers;
        for (const std::wstring& argument : arguments)
            pointers.push_back(argument.c_str());
        pointers.push_back(nullptr);
        return ::_wspawnv(_P_WAIT, m_host.c_str(), pointers.data());
    }

    const fs::path m_host = m_folder / "host" / "host.exe";

private:
    // A backslash before the closing mark has to be doubled.
    static std::wstring quoted(std::wstring text) {
        text += text.ends_with(L'\\') ? L"\\\"" : L"\"";
        return L'"' + text;
    }
};

TEST_F(host_test, converts_at_any_path) {
    const std::wstring drive = m_folder.root_name();
    const std::wstring folder = m_folder.wstring().substr(drive.size()) + L'\\';
    EXPECT_EQ(run(drive, folder), 0);
    EXPECT_TRUE(is_tiff(m_tiff));

    const std::wstring long_folder =
        folder + std::wstring(200, L'a') + L'\\' + std::wstring(200, L'b') + L'\\';
    const fs::path long_path = L"\\\\?\\" + drive + long_folder;
    fs::create_directories(long_path);
    fs::copy_file(m_raw, long_path / m_raw.filename());
    EXPECT_EQ(run(drive, long_folder), 0);
    EXPECT_TRUE(is_tiff(long_path / m_tiff.filename()));

    EXPECT_EQ(run(L"\\\\no-such-server", L"\\share\\"), 10);
}

TEST_F(host_test, the_sdk_is_looked_for_beside_the_library_then_beside_the_application_and_nowhere_else) {
    const std::wstring folder = m_folder.wstring() + L'\\';
    const fs::path beside_host = m_host.parent_path() / "EDSDK.dll";
    fs::rename(m_sdk, beside_host);
    EXPECT_EQ(run(L"", folder), 0);
    write_file(m_sdk, "of no use");
    EXPECT_EQ(run(L"", folder), 11);
    fs::remove(m_sdk);
    fs::rename(beside_host, m_temporary / "EDSDK.dll");
    const fs::path working_folder = fs::current_path();
    fs::current_path(m_temporary);
    EXPECT_EQ(run(L"", folder), 11);
    fs::current_path(working_folder);
}

TEST(failure_reason, is_that_of_the_first_failure_that_cannot_be_got_around) {
    EXPECT_NE(EdsInitializeSDK(), eds_ok);
    EXPECT_NE(EdsTerminateSDK(), eds_ok);
    EXPECT_EQ(inq_sdk_failure_reason(), "EDSDK.dll is in neither the library's folder nor the application's");
    edsdk_dll::forget_failure_reason();
    EXPECT_EQ(inq_sdk_failure_reason(), "");
    for (const eds_error_t error : {eds_file_not_found, 0x61U, 0x62U})
        edsdk_dll::keep_failed_call("EdsSaveImage", error);
    EXPECT_EQ(inq_sdk_failure_reason(), "EdsSaveImage failed with 0x00000061");
}

} // namespace
