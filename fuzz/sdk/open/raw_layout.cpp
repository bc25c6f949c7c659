#include "fuzz/sdk/open/raw_layout.h"

#include "sdk/open/failure.h"
#include "sdk/open/identifying/raw_format.h"

std::vector<stretch> find_stretches(std::span<const std::byte> file) {
    try {
        const bool is_cr2 = sdk_open::recognise_raw_format(file) == sdk_open::raw_format_t::cr2;
        return is_cr2 ? find_cr2_stretches(file) : find_crw_stretches(file);
    } catch (const sdk_open::failure&) {
        return {};
    }
}
