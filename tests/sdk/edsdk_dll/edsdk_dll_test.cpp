#include "conversion/edsdk.h"
#include "sdk/edsdk_dll/failure_reason.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/temporary_folder_setting.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <numeric>
#include <process.h>
#include <windows.h>

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> whole_run = {"EdsInitializeSDK()\n",
                                            "EdsCreateFileStream(\U0001F4F7.CR2, 2, 2)\n",
                                            "EdsCreateImageRef(#1)\n",
                                            "EdsRelease(#1)\n",
                                            "EdsCreateFileStream(\uFFFD.tif, 1, 1)\n",
                                            "EdsSaveImage(#2, 8, #3)\n",
                                            "EdsRelease(#3)\n",
                                            "EdsRelease(#2)\n",
                                            "EdsTerminateSDK()\n"};

// A location as a host knows it that has nothing but the library's file: volume, folder and name.
using location_t = std::array<const wchar_t*, 3>;
using convert_t = int(const location_t& raw, const location_t& tiff);

bool is_tiff(const fs::path& file) {
    return fs::exists(file) && fs::file_size(file) == 124 && read_file(file).starts_with("II*");
}

class edsdk_dll_test : public testing::Test {
protected:
    edsdk_dll_test() {
        fs::create_directories(m_temporary);
        fs::create_directory(m_host.parent_path());
        fs::copy_file(HOST, m_host);
        fs::copy_file(PLUG_IN, m_plug_in);
        fs::copy_file(STAND_INS "/plain.dll", m_sdk);
        write_file(m_raw, "raw");
    }

    // In this process, after the stand-in was told which of its calls fail.
    [[nodiscard]] int convert(const std::string& orders) const {
        write_file(m_folder / "EDSDK.orders", orders);
        fs::remove(m_folder / "EDSDK.log");
        fs::remove(m_tiff);
        const std::wstring tiff = m_folder.wstring() + L"\\\xDCF7.tif"; // half a character becomes U+FFFD
        const HMODULE plug_in = ::LoadLibraryW(m_plug_in.c_str());
        auto* const found = reinterpret_cast<void (*)()>(::GetProcAddress(plug_in, "convert_raw_to_tiff"));
        const int result =
            reinterpret_cast<convert_t*>(found)({nullptr, L"", m_raw.c_str()}, {L"", nullptr, tiff.c_str()});
        EXPECT_EQ(::GetModuleHandleW(L"EDSDK.dll"), nullptr) << "it is given back after each call";
        ::FreeLibrary(plug_in);
        return result;
    }

    // In the process of the embedding guide's host, which has a folder of its own.
    [[nodiscard]] std::intptr_t run_host(const std::wstring& folder) const {
        const auto quoted = [](const std::wstring& text) { return L'"' + text + L'"'; };
        return ::_wspawnl(_P_WAIT, m_host.c_str(), L"host", quoted(m_plug_in).c_str(), quoted(folder).c_str(),
                          L"\\", quoted(m_raw.filename()).c_str(), quoted(m_tiff.filename()).c_str(),
                          nullptr);
    }

    // The calls of the last conversion, without the folder in the paths and the copy's random name.
    [[nodiscard]] std::string calls() const {
        std::string calls = read_file(m_folder / "EDSDK.log");
        const std::u8string folder = (m_folder / "").u8string();
        const std::string erased(folder.begin(), folder.end());
        for (std::size_t at = 0; (at = calls.find(erased, at)) != std::string::npos;)
            calls.erase(at, erased.size());
        const std::size_t copy = calls.find("KW-");
        return copy == std::string::npos ? calls : calls.replace(copy, 23, "COPY");
    }

    const scratch_folder m_scratch;
    const fs::path m_folder = m_scratch.inq_path() / u8"plug-in \u0442 \u65E5 \U0001F4F7";
    const fs::path m_plug_in = m_folder / "convert_raw_to_tiff.dll";
    const fs::path m_sdk = m_folder / "EDSDK.dll";
    const fs::path m_host = m_folder / "host" / "host.exe";
    const fs::path m_temporary = m_folder / u8"tmp \u00E4";
    const fs::path m_raw = m_folder / u8"\U0001F4F7.CR2";
    const fs::path m_tiff = m_folder / u8"\uFFFD.tif";
    const temporary_folder_setting m_setting{m_temporary};
};

TEST_F(edsdk_dll_test, converts_whatever_names_the_functions_are_exported_under) {
    for (const fs::directory_entry& library : fs::directory_iterator(STAND_INS)) {
        fs::copy_file(library, m_sdk, fs::copy_options::overwrite_existing);
        EXPECT_EQ(convert(""), 0) << library;
        EXPECT_EQ(calls(), std::accumulate(whole_run.begin(), whole_run.end(), std::string())) << library;
        EXPECT_TRUE(is_tiff(m_tiff)) << library;
    }
}

// The stand-in marks the last call when a handle has not been given back.
TEST_F(edsdk_dll_test, fails_cleanly_whichever_call_fails) {
    for (const bool is_by_copy : {false, true}) {
        auto run = whole_run;
        if (is_by_copy)
            run.insert(run.begin() + 2, "EdsCreateFileStream(tmp \u00E4\\COPY.tiff, 2, 2)\n");
        std::string beginning;
        for (std::size_t n = 1; n <= run.size(); ++n) {
            beginning += run[n - 1];
            const bool is_failure = n < run.size() && !run[n - 1].starts_with("EdsRelease");
            EXPECT_EQ(convert((is_by_copy ? "2 34\n" : "") + std::to_string(n) + " 97"), is_failure ? 11 : 0);
            EXPECT_EQ(is_tiff(m_tiff), !is_failure);
            EXPECT_TRUE(calls().starts_with(beginning) && calls().ends_with(run.back())) << calls();
            EXPECT_TRUE(fs::is_empty(m_temporary));
        }
    }
}

TEST_F(edsdk_dll_test, a_library_that_is_of_no_use_is_a_failure_that_the_host_survives) {
    const std::string sound = read_file(m_sdk);
    std::string other_width = sound;
    other_width[sound.find(std::string("PE\0\0", 4)) + 4] ^= '\x64' ^ '\x4C'; // x64 is 0x8664, x86 0x014C
    for (const std::string& bytes : {std::string(), sound.substr(0, 2000), other_width, read_file(PLUG_IN)}) {
        write_file(m_sdk, bytes);
        EXPECT_EQ(convert(""), 11) << bytes.size();
    }
    EXPECT_FALSE(fs::exists(m_folder / "EDSDK.log"));
    write_file(m_sdk, sound);
    EXPECT_EQ(convert(""), 0);
}

TEST_F(edsdk_dll_test, a_host_converts_at_any_path) {
    EXPECT_EQ(run_host(m_folder), 0);
    EXPECT_TRUE(is_tiff(m_tiff));
    const std::wstring long_folder =
        m_folder.wstring() + L'\\' + std::wstring(200, L'a') + L'\\' + std::wstring(200, L'b');
    const fs::path long_path = L"\\\\?\\" + long_folder;
    fs::create_directories(long_path);
    fs::copy_file(m_raw, long_path / m_raw.filename());
    EXPECT_EQ(run_host(long_folder), 0);
    EXPECT_TRUE(is_tiff(long_path / m_tiff.filename()));
    EXPECT_EQ(run_host(L"\\\\no-such-server\\share"), 10);
}

TEST_F(edsdk_dll_test,
       the_sdk_is_looked_for_beside_the_library_then_beside_the_application_and_nowhere_else) {
    const fs::path beside_host = m_host.parent_path() / "EDSDK.dll";
    fs::rename(m_sdk, beside_host);
    EXPECT_EQ(run_host(m_folder), 0);
    write_file(m_sdk, "of no use");
    EXPECT_EQ(run_host(m_folder), 11);
    fs::remove(m_sdk);
    fs::rename(beside_host, m_temporary / "EDSDK.dll");
    const fs::path working_folder = fs::current_path();
    fs::current_path(m_temporary);
    EXPECT_EQ(run_host(m_folder), 11);
    fs::current_path(working_folder);
}

TEST(failure_reason, is_that_of_the_first_failure_that_cannot_be_got_around) {
    edsdk_dll::forget_failure_reason();
    for (const eds_error_t error : {eds_file_not_found, 0x61U, 0x62U})
        edsdk_dll::keep_failed_call("EdsSaveImage", error);
    EXPECT_EQ(inq_sdk_failure_reason(), "EdsSaveImage failed with 0x00000061");
}

} // namespace
