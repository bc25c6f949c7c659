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
#include <string_view>
#include <vector>

// Binary values come back from a stream as they were written, wherever its blocks end.
namespace {

// Reads a value back; whether it is what was written.
using check_t = std::function<bool(ZRStream& in)>;

template <typename T>
check_t round_trip(bool is_written, const T& value, auto read) {
    require(is_written, "a value was refused");
    return [value, read](ZRStream& in) {
        T back{};
        return std::invoke(read, in, back) && back == value;
    };
}

template <typename T, typename Wire, bool (ZWStream::*Write)(T), bool (ZRStream::*Read)(T&)>
check_t write_integer(ZWStream& out, fuzz_input& input) {
    const T value = input.take_value<Wire>();
    return round_trip((out.*Write)(value), value, Read);
}

check_t write_packed_int(ZWStream& out, fuzz_input& input) {
    const unsigned n_bits = input.take_value<unsigned char>() % 31U;
    const auto value = input.take_value<std::uint32_t>() & ((1U << n_bits) - 1);
    return round_trip(out.write_packed_int(value), value, &ZRStream::read_packed_int);
}

check_t write_float(ZWStream& out, fuzz_input& input) {
    const auto pattern = input.take_value<std::uint32_t>();
    const auto read = [](ZRStream& in, std::uint32_t& back) {
        float value = 0;
        const bool is_read = in.read_float(value);
        back = std::bit_cast<std::uint32_t>(value);
        return is_read;
    };
    return round_trip(out.write_float(std::bit_cast<float>(pattern)), pattern, read);
}

check_t write_cstring(ZWStream& out, fuzz_input& input) {
    const ZString text(input.take_text(input.take_value<unsigned char>()).c_str());
    const auto read = [](ZRStream& in, ZString& back) { return in.read_cstring(back, false); };
    return round_trip(out.write_cstring(text), text, read);
}

check_t write_string(ZWStream& out, fuzz_input& input) {
    const ZString text(input.take_text(input.take_value<unsigned char>()).c_str());
    const auto read = [](ZRStream& in, ZString& back) { return back.read_from(in); };
    return round_trip(text.write_to(out), text, read);
}

check_t write_block(ZWStream& out, fuzz_input& input) {
    const std::string_view bytes = input.take(input.take_value<unsigned char>());
    const ZData data(bytes.data(), static_cast<int>(bytes.size()));
    require(data.write(out), "a block was refused");
    return [data](ZRStream& in) {
        ZData back;
        return back.read(in) && back.equals(data);
    };
}

constexpr check_t (*writes[])(ZWStream& out, fuzz_input& input) = {
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
        require(check(in), "a value did not come back");
    require(in.at_end() && in.inq_error() == rstreamerr_ok, "more came back than was written");
    return 0;
}
