#include "classlib/errors/ZException.h"
#include "classlib/errors/ZProgramErrorOutput.h"
#include "classlib/streams/ZPrintable.h"
#include "classlib/streams/ZRStream.h"
#include "classlib/streams/ZWStream.h"
#include "classlib/values/ZKV.h"

#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <tuple>
#include <type_traits>

// The order of the virtual operations: hosts rely on it.
namespace {

// The place of a virtual operation in the table of its class. The ABI keeps its offset in the pointer to it,
// with a mark in the lowest bit on most processors.
template <typename Operation>
std::ptrdiff_t slot_of(Operation operation) {
    struct {
        std::ptrdiff_t offset;
        std::ptrdiff_t adjustment;
    } pointer;
    static_assert(sizeof pointer == sizeof operation);
    std::memcpy(&pointer, &operation, sizeof pointer);
    return pointer.offset / static_cast<std::ptrdiff_t>(sizeof(void*));
}

class source : public ZRStream {
public:
    using ZRStream::fill_buffer;
};

TEST(virtual_slots, stand_in_their_order) {
    static_assert(std::has_virtual_destructor_v<ZWStream> && std::has_virtual_destructor_v<ZRStream>);
    static_assert(std::has_virtual_destructor_v<ZKV> && std::has_virtual_destructor_v<ZPrintable>);
    static_assert(!std::has_virtual_destructor_v<ZException>);
    static_assert(!std::has_virtual_destructor_v<ZProgramErrorOutput>);
    constexpr int first = 2; // behind the two forms of the destructor
    using row_t = std::tuple<const char*, std::ptrdiff_t, int>;
    const row_t rows[] = {
        {"ZWStream::write_bytes", slot_of(&ZWStream::write_bytes), first},
        {"ZRStream::close", slot_of(&ZRStream::close), first},
        {"ZRStream::seek", slot_of(&ZRStream::seek), first + 1},
        {"ZRStream::inq_source_size", slot_of(&ZRStream::inq_source_size), first + 2},
        {"ZRStream::fill_buffer", slot_of(&source::fill_buffer), first + 3},
        {"ZPrintable::print_to", slot_of(&ZPrintable::print_to), first},
        {"ZKV::clone", slot_of(&ZKV::clone), first},
        {"ZKV::inq_n_elements", slot_of(&ZKV::inq_n_elements), first + 1},
        {"ZException::raise", slot_of(&ZException::raise), 0},
        {"ZException::describe", slot_of(&ZException::describe), 1},
        {"assertion_failure", slot_of(&ZProgramErrorOutput::assertion_failure), 0},
        {"warning", slot_of(&ZProgramErrorOutput::warning), 1},
        {"error", slot_of(&ZProgramErrorOutput::error), 2},
        {"show_report", slot_of(&ZProgramErrorOutput::show_report), 3},
        {"output", slot_of(&ZProgramErrorOutput::output), 4},
    };
    for (const auto& [operation, slot, want] : rows)
        EXPECT_EQ(slot, want) << operation;
}

} // namespace
