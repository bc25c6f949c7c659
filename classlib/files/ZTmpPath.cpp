#include "classlib/files/ZTmpPath.h"

#include "classlib/files/ZFile.h"
#include "classlib/time/ZRandom.h"
#include "platform/files.h"

#include <array>
#include <cstdint>
#include <new>

namespace {

constexpr int max_attempts = 1000;

// Seeded from the clock, so two names made at the same reading of the clock are the same.
ZUString make_random_name(const ZUString& prefix, const ZUString& extension) {
    constexpr auto characters = UTF16("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    constexpr std::uint32_t n_characters = 36;
    ZRandom random(0);
    std::array<utf16_t, 20> name{};
    for (utf16_t& c : name)
        c = characters[random.next_u32() % n_characters];
    return prefix + ZUString(name.data(), static_cast<int>(name.size())) + extension;
}

} // namespace

ZTmpPath::ZTmpPath(const ZUString& prefix) : ZTmpPath(prefix, UTF16(".tmp")) {}

ZTmpPath::ZTmpPath(const ZUString& prefix, const ZUString& extension) {
    set_temp_folder();
    make_unique(prefix, extension);
}

ZTmpPath::~ZTmpPath() {
    if (!m_delete_on_destroy)
        return;
    try {
        delete_file();
    } catch (const std::bad_alloc&) {
        // Like a deletion that the system refuses: the file stays.
    }
}

bool ZTmpPath::delete_file() const {
    return ZFile::delete_file(m_location);
}

void ZTmpPath::set_temp_folder() {
    const auto folder = platform::inq_temporary_folder();
    if (!folder.empty())
        m_location = ZFileLocation(folder.c_str(), true);
}

void ZTmpPath::make_unique(const ZUString& prefix, const ZUString& extension) {
    for (int attempt = 0; attempt < max_attempts; ++attempt) {
        m_location.set_name(make_random_name(prefix, extension));
        if (!ZFile::inq_exists(m_location))
            return;
    }
}
