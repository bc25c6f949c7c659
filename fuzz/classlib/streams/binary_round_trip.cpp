#include "classlib/streams/ZData.h"
#include "classlib/streams/ZRStream.h"
#include "classlib/streams/ZWStream.h"
#include "classlib/strings/ZString.h"
#include "fuzz/fuzz_target.h"
#include "tests/support/block_stream.h"
#include "tests/support/byte_sink.h"

#include <bit>
#include <cstdint>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

// Binary values come back from a stream as they were written, wherever its blocks end.
namespace {

// Reads a value back.
using check_t = std::function<void(ZRStream& in)>;

template <typename T, typename Wire, bool (ZWStream::*Write)(T), bool (ZRStream::*Read)(T&)>
check_t write_integer(ZWStream& out, fuzz_input& input) {
    const auto value = static_cast<T>(input.take_value<Wire>());
    require((out.*Write)(value), "an integer was refused");
    return [value](ZRStream& in) {
        T back = 0;
        require((in.*Read)(back) && back == value, "an integer did not come back");
    };
}

check_t write_packed_int(ZWStream& out, fuzz_input& input) {
    const unsigned n_bits = input.take_value<unsigned char>() % 31U;
    const auto value = input.take_value<std::uint32_t>() & ((1U << n_bits) - 1);
    require(out.write_packed_int(value), "a packed integer was refused");
    return [value](ZRStream& in) {
        unsigned int back = 0;
        require(in.read_packed_int(back) && back == value, "a packed integer did not come back");
    };
}

check_t write_float(ZWStream& out, fuzz_input& input) {
    const auto pattern = input.take_value<std::uint32_t>();
    require(out.write_float(std::bit_cast<float>(pattern)), "a float was refused");
    return [pattern](ZRStream& in) {
        float back = 0;
        require(in.read_float(back) && std::bit_cast<std::uint32_t>(back) == pattern,
                "a float did not come back");
    };
}

std::string take_text(fuzz_input& input) {
    const std::string_view bytes = input.take(input.take_value<unsigned char>());
    return std::string(bytes.substr(0, bytes.find('\0')));
}

check_t write_cstring(ZWStream& out, fuzz_input& input) {
    const std::string text = take_text(input);
    require(out.write_cstring(text.c_str()), "a text was refused");
    return [text](ZRStream& in) {
        ZString back;
        require(in.read_cstring(back, false) && back == text.c_str(), "a text did not come back");
    };
}

check_t write_string(ZWStream& out, fuzz_input& input) {
    const std::string text = take_text(input);
    require(ZString(text.c_str()).write_to(out), "a string was refused");
    return [text](ZRStream& in) {
        ZString back;
        require(back.read_from(in) && back == text.c_str(), "a string did not come back");
    };
}

check_t write_block(ZWStream& out, fuzz_input& input) {
    const std::string_view bytes = input.take(input.take_value<unsigned char>());
    const ZData data(bytes.data(), static_cast<int>(bytes.size()));
    require(data.write(out), "a block was refused");
    return [data](ZRStream& in) {
        ZData back;
        require(back.read(in) && back.equals(data), "a block did not come back");
    };
}

using write_t = check_t (*)(ZWStream& out, fuzz_input& input);

constexpr write_t writes[] = {
    &write_integer<unsigned char, unsigned char, &ZWStream::write_uint8, &ZRStream::read_uint8>,
    &write_integer<short, short, &ZWStream::write_int16, &ZRStream::read_int16>,
    &write_integer<unsigned short, unsigned short, &ZWStream::write_uint16, &ZRStream::read_uint16>,
    &write_integer<int, int, &ZWStream::write_int32, &ZRStream::read_int32>,
    &write_integer<long, std::int32_t, &ZWStream::write_int32, &ZRStream::read_int32>,
    &write_integer<unsigned int, unsigned int, &ZWStream::write_uint32, &ZRStream::read_uint32>,
    &write_integer<unsigned long, std::uint32_t, &ZWStream::write_uint32, &ZRStream::read_uint32>,
    &write_packed_int,
    &write_float,
    &write_cstring,
    &write_string,
    &write_block,
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    fuzz_input input(data, size);
    const std::vector<std::size_t> sizes = {input.take_value<unsigned char>() % 16 + std::size_t{1},
                                            input.take_value<unsigned char>() % 16 + std::size_t{1}};
    byte_sink out;
    std::vector<check_t> checks;
    while (!input.is_empty())
        checks.push_back(writes[input.take_value<unsigned char>() % std::size(writes)](out, input));

    block_stream in(out.inq_bytes(), sizes);
    for (const check_t& check : checks)
        check(in);
    require(in.at_end() && in.inq_error() == rstreamerr_ok, "more came back than was written");
    return 0;
}
