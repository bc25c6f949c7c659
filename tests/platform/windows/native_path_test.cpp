#include "platform/windows/native_path.h"
#include "tests/support/shown_text.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

TEST(native_path, is_prefixed_where_it_is_too_long_without) {
    const std::wstring folder(120, L'a');
    const std::wstring longest = L"C:\\" + folder + L'\\' + std::wstring(123, L'b');
    const std::wstring long_tail = folder + L'\\' + folder + L"\\c.tif";
    const std::wstring here = std::filesystem::current_path().wstring();
    const std::pair<std::wstring, std::wstring> rows[] = {
        {L"a/../b.tif", L"a/../b.tif"},
        {longest, longest},
        {longest + L'b', L"\\\\?\\" + longest + L'b'},
        {L"C:/x/../" + long_tail, L"\\\\?\\C:\\" + long_tail},
        {long_tail, L"\\\\?\\" + here + L'\\' + long_tail},
        {L"\\\\server\\share\\" + long_tail, L"\\\\?\\UNC\\server\\share\\" + long_tail},
        {L"\\\\?\\C:\\" + long_tail, L"\\\\?\\C:\\" + long_tail},
        {L"", L""},
        {L"C:\\" + std::wstring(40000, L'a'), L""}};
    for (const auto& [path, want] : rows) {
        const platform::native_path native(path.c_str());
        EXPECT_EQ(plain(native.c_str()), plain(want.c_str()));
        EXPECT_EQ(native.is_prefixed(), want.starts_with(L"\\\\?\\"));
    }
    EXPECT_EQ(plain(platform::native_path(nullptr).c_str()), "");
}

} // namespace
