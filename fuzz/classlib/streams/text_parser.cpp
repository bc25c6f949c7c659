#include "classlib/streams/ZData.h"
#include "classlib/streams/ZRStream.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "fuzz/fuzz_target.h"
#include "tests/support/block_stream.h"

#include <array>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

// Where the blocks of a source end makes no difference: the same operations on the same bytes, in blocks of
// any sizes and in one, have the same answers and errors.
namespace {

// What an operation answered, as bytes.
struct answer final : std::string {
    explicit answer(const auto&... values) { (add(values), ...); }

    void add(const void* bytes, std::size_t n) { append(static_cast<const char*>(bytes), n).push_back(';'); }
    void add(const ZString& text) { add(text, static_cast<std::size_t>(text.length())); }
    void add(const ZUString& text) { add(text, static_cast<std::size_t>(text.length()) * sizeof(utf16_t)); }
    void add(const ZData& data) { add(data.inq_data(), static_cast<std::size_t>(data.inq_n_bytes())); }
    void add(const auto& value) { add(&value, sizeof value); }
};

template <typename T>
answer extract(ZRStream& in, unsigned char) {
    T value{};
    in >> value;
    return answer(value);
}

template <typename T, auto Read>
answer read(ZRStream& in, unsigned char argument) {
    T value{};
    return answer(Read(in, value, argument), value);
}

bool read_until(ZRStream& in, ZString& text, unsigned char argument) {
    const char stops[] = {':', static_cast<char>(argument), '\0'};
    return in.read_until(stops, text);
}

answer read_bytes(ZRStream& in, unsigned char argument) {
    std::array<char, 256> bytes{};
    int got = -1;
    const bool is_read = in.read_bytes(bytes.data(), argument, argument % 2 != 0, &got);
    return answer(is_read, ZData(bytes.data(), got));
}

// Of a block whose bytes run out only those that came are defined.
answer read_block(ZRStream& in, unsigned char) {
    ZData data;
    return data.read(in) ? answer(data) : answer();
}

// Wide lines are read where a unit begins.
bool is_amid_unit(const ZRStream& in) {
    return in.inq_position() % 2 != 0;
}

// The last one needs blocks of even sizes.
constexpr answer (*operations[])(ZRStream& in, unsigned char argument) = {
    [](ZRStream& in, unsigned char) { return answer(in.get()); },
    [](ZRStream& in, unsigned char) { return answer(in.at_end()); },
    [](ZRStream& in, unsigned char) { return answer(in.read_signed()); },
    [](ZRStream& in, unsigned char n) { return answer(in.skip(n)); },
    [](ZRStream& in, unsigned char) { return in.skip_space(), answer(); },
    [](ZRStream& in, unsigned char) { return in.skip_comment(), answer(); },
    &extract<ZString>,
    &extract<unsigned char>,
    &extract<int>,
    &extract<unsigned long long>,
    &extract<double>,
    &read<unsigned int, [](ZRStream& in, unsigned int& v, int) { return in.read_uint32(v); }>,
    &read<unsigned int, [](ZRStream& in, unsigned int& v, int) { return in.read_packed_int(v); }>,
    &read<ZString, [](ZRStream& in, ZString& text, int) { return in.read_line(text); }>,
    &read<ZString, [](ZRStream& in, ZString& text, int n) { return in.read_cstring(text, n % 2 != 0); }>,
    &read<ZString, [](ZRStream& in, ZString& text, int) { return in.read_name(text); }>,
    &read<ZString, &read_until>,
    &read_bytes,
    &read_block,
    &read<ZData, [](ZRStream& in, ZData& data, int) { return in.read_all(data); }>,
    &read<ZUString, [](ZRStream& in, ZUString& s, int) { return is_amid_unit(in) || in.read_wide_line(s); }>,
};

answer state_of(ZRStream& in, unsigned char argument) {
    return answer(in.inq_position_text(argument % 2 != 0), in.inq_position(), in.inq_line(), in.inq_error());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    fuzz_input input(data, size);
    const std::size_t unit = input.take_value<unsigned char>() % 2U + 1;
    std::vector<std::size_t> sizes(4);
    for (std::size_t& block_size : sizes)
        block_size = (input.take_value<unsigned char>() % 32U + 1) * unit;
    fuzz_input steps(input.take(input.take_value<unsigned char>() % 16U * std::size_t{2}));
    const std::string_view bytes = input.take();
    block_stream in_blocks(bytes, sizes);
    block_stream in_one_block(bytes, {bytes.size()});
    while (!steps.is_empty()) {
        const std::size_t which =
            steps.take_value<unsigned char>() % (std::size(operations) - (unit == 2 ? 0 : 1));
        const auto argument = steps.take_value<unsigned char>();
        require(operations[which](in_blocks, argument) == operations[which](in_one_block, argument),
                "blocks and one block have different answers");
        require(state_of(in_blocks, argument) == state_of(in_one_block, argument),
                "blocks and one block leave a stream in different states");
    }
    return 0;
}
