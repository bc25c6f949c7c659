#include "classlib/streams/ZData.h"
#include "classlib/streams/ZRStream.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "fuzz/fuzz_target.h"
#include "tests/support/block_stream.h"

#include <array>
#include <concepts>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

// Where the blocks of a source end makes no difference: the same operations on the same bytes, in blocks of
// any sizes and in one, have the same answers and errors.
namespace {

// What the operations answered, as bytes.
class answers_t final {
public:
    template <typename... Values>
    void add(const Values&... values) {
        (add_value(values), ...);
    }

    [[nodiscard]] bool operator==(const answers_t&) const = default;

private:
    template <typename T>
    void add_value(const T& value) {
        add_bytes(&value, sizeof value);
    }
    void add_value(const ZString& text) { add_bytes(text, text.length()); }
    void add_value(const ZUString& text) { add_bytes(text, text.length() * int{sizeof(utf16_t)}); }
    void add_value(const ZData& data) { add_bytes(data.inq_data(), data.inq_n_bytes()); }

    void add_bytes(const void* bytes, std::integral auto n) {
        m_bytes += std::to_string(n) + ':';
        m_bytes.append(static_cast<const char*>(bytes), static_cast<std::size_t>(n));
    }

    std::string m_bytes;
};

using operation_t = void (*)(ZRStream& in, unsigned char argument, answers_t& answers);

template <typename T>
void extract(ZRStream& in, unsigned char, answers_t& answers) {
    T value{};
    in >> value;
    answers.add(value);
}

template <typename T, bool (ZRStream::*Read)(T&)>
void read(ZRStream& in, unsigned char, answers_t& answers) {
    T value{};
    answers.add((in.*Read)(value), value);
}

void read_cstring(ZRStream& in, unsigned char argument, answers_t& answers) {
    ZString text;
    answers.add(in.read_cstring(text, argument % 2 != 0), text);
}

void read_name(ZRStream& in, unsigned char, answers_t& answers) {
    ZString text;
    answers.add(in.read_name(text), text);
}

void read_until(ZRStream& in, unsigned char argument, answers_t& answers) {
    const char stops[] = {':', static_cast<char>(argument), '\0'};
    ZString text;
    answers.add(in.read_until(stops, text), text);
}

void read_bytes(ZRStream& in, unsigned char argument, answers_t& answers) {
    std::array<char, 256> bytes{};
    int got = -1;
    answers.add(in.read_bytes(bytes.data(), argument, argument % 2 != 0, &got), got);
    answers.add(ZData(bytes.data(), got));
}

// Of a block whose bytes run out only those that came are defined.
void read_block(ZRStream& in, unsigned char, answers_t& answers) {
    ZData data;
    answers.add(data.read(in) ? data : ZData());
}

// A block must not end amid a unit.
void read_wide_line(ZRStream& in, unsigned char, answers_t& answers) {
    if (in.inq_position() % 2 != 0)
        return;
    ZUString text;
    answers.add(in.read_wide_line(text), text);
}

// The last one needs blocks of even sizes.
constexpr operation_t operations[] = {
    [](ZRStream& in, unsigned char, answers_t& answers) { answers.add(in.get()); },
    [](ZRStream& in, unsigned char, answers_t& answers) { answers.add(in.at_end()); },
    [](ZRStream& in, unsigned char, answers_t& answers) { answers.add(in.read_signed()); },
    [](ZRStream& in, unsigned char n, answers_t& answers) { answers.add(in.skip(n)); },
    [](ZRStream& in, unsigned char, answers_t&) { in.skip_space(); },
    [](ZRStream& in, unsigned char, answers_t&) { in.skip_comment(); },
    &extract<ZString>,
    &extract<unsigned char>,
    &extract<int>,
    &extract<unsigned long long>,
    &extract<double>,
    &read<unsigned int, &ZRStream::read_uint32>,
    &read<unsigned int, &ZRStream::read_packed_int>,
    &read<ZString, &ZRStream::read_line>,
    &read_cstring,
    &read_name,
    &read_until,
    &read_bytes,
    &read_block,
    &read<ZData, &ZRStream::read_all>,
    &read_wide_line,
};

struct step_t {
    std::size_t operation;
    unsigned char argument;
};

answers_t answers_of(ZRStream& in, const std::vector<step_t>& steps) {
    answers_t answers;
    for (const step_t& step : steps) {
        operations[step.operation](in, step.argument, answers);
        answers.add(in.inq_position_text(step.argument % 2 != 0));
        answers.add(in.inq_position(), in.inq_line(), in.inq_error());
    }
    return answers;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    fuzz_input input(data, size);
    const std::size_t unit = input.take_value<unsigned char>() % 2U + 1;
    std::vector<std::size_t> sizes(4);
    for (std::size_t& block_size : sizes)
        block_size = (input.take_value<unsigned char>() % 32U + 1) * unit;
    std::vector<step_t> steps(input.take_value<unsigned char>() % 16U);
    for (step_t& step : steps) {
        step.operation = input.take_value<unsigned char>() % (std::size(operations) - (unit == 2 ? 0 : 1));
        step.argument = input.take_value<unsigned char>();
    }
    const std::string_view bytes = input.take_all();
    block_stream in_blocks(bytes, sizes);
    block_stream in_one_block(bytes, {bytes.size()});
    require(answers_of(in_blocks, steps) == answers_of(in_one_block, steps),
            "blocks and one block have different answers");
    return 0;
}
