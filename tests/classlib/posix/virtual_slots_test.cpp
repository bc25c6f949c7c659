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

// The place of a virtual operation in the table of its class. The ABI keeps its offset in the pointer to it,
// with a mark in the lowest bit on most processors.
template <typename Operation>
int slot_of(Operation operation) {
    return static_cast<int>(std::bit_cast<std::array<std::ptrdiff_t, 2>>(operation)[0] / int{sizeof(void*)});
}

class source : public ZRStream {
public:
    using ZRStream::fill_buffer;
};

TEST(virtual_slots, stand_in_their_order) {
    constexpr int first = 2; // behind the two forms of the destructor, where there is one
    EXPECT_EQ(slot_of(&ZWStream::write_bytes), first);
    EXPECT_EQ(slot_of(&ZRStream::close), first);
    EXPECT_EQ(slot_of(&ZRStream::seek), first + 1);
    EXPECT_EQ(slot_of(&ZRStream::inq_source_size), first + 2);
    EXPECT_EQ(slot_of(&source::fill_buffer), first + 3);
    EXPECT_EQ(slot_of(&ZPrintable::print_to), first);
    EXPECT_EQ(slot_of(&ZKV::clone), first);
    EXPECT_EQ(slot_of(&ZKV::inq_n_elements), first + 1);
    EXPECT_EQ(slot_of(&ZException::raise), 0);
    EXPECT_EQ(slot_of(&ZException::describe), 1);
    EXPECT_EQ(slot_of(&ZProgramErrorOutput::assertion_failure), 0);
    EXPECT_EQ(slot_of(&ZProgramErrorOutput::warning), 1);
    EXPECT_EQ(slot_of(&ZProgramErrorOutput::error), 2);
    EXPECT_EQ(slot_of(&ZProgramErrorOutput::show_report), 3);
    EXPECT_EQ(slot_of(&ZProgramErrorOutput::output), 4);
}

} // namespace
