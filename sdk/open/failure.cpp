#include "sdk/open/failure.h"

#include <system_error>
#include <utility>

namespace sdk_open {

failure::failure(error_code_t code, std::string reason) : m_code(code), m_reason(std::move(reason)) {}

void throw_damaged(const char* reason) {
    throw failure(error_code_t::damaged_picture, reason);
}

void throw_no_raw_picture() {
    throw failure(error_code_t::not_a_raw_picture, "no Canon raw picture in it");
}

void throw_unknown_storage() {
    throw failure(error_code_t::not_supported, "the raw picture is stored in an unknown way");
}

std::string system_message(int error_number) {
    return std::generic_category().message(error_number);
}

} // namespace sdk_open
