#include "classlib/errors/ZException.h"
#include "classlib/errors/ZProgramErrorOutput.h"
#include "classlib/streams/ZPrintable.h"
#include "classlib/streams/ZRStream.h"
#include "classlib/values/ZKV.h"

#include <array>
#include <bit>
#include <gtest/gtest.h>

// The order of the virtual operations: hosts rely on it.
namespace {

using slots_t = std::vector<std::ptrdiff_t>;

// The places of virtual operations in the tables of their classes. The ABI keeps its offset in the pointer to
// each, with a mark in the lowest bit on most processors.
template <typename... Operation>
slots_t slots(Operation... operation) {
    return {std::bit_cast<std::array<std::ptrdiff_t, 2>>(operation)[0] / std::ptrdiff_t{sizeof(void*)}...};
}

struct source : ZRStream {
    using ZRStream::fill_buffer;
};

TEST(virtual_slots, stand_in_their_order_behind_two_for_the_destructor_where_there_is_one) {
    EXPECT_EQ(slots(&ZWStream::write_bytes, &ZPrintable::print_to), (slots_t{2, 2}));
    EXPECT_EQ(slots(&ZRStream::close, &ZRStream::seek, &ZRStream::inq_source_size, &source::fill_buffer),
              (slots_t{2, 3, 4, 5}));
    EXPECT_EQ(slots(&ZKV::clone, &ZKV::inq_n_elements), (slots_t{2, 3}));
    EXPECT_EQ(slots(&ZException::raise, &ZException::describe), (slots_t{0, 1}));
    using output_t = ZProgramErrorOutput;
    EXPECT_EQ(slots(&output_t::assertion_failure, &output_t::warning, &output_t::error,
                    &output_t::show_report, &output_t::output),
              (slots_t{0, 1, 2, 3, 4}));
}

} // namespace
