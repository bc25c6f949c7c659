#include "sdk/open/raw_decoder.h"

#include "sdk/open/failure.h"
#include "sdk/open/pixel_data_check.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <thread>

namespace sdk_open {
namespace {

constexpr unsigned most_raw_memory = 1024; // MiB

[[noreturn]] void throw_damaged(const char* reason) {
    throw failure(error_code_t::damaged_picture, reason);
}

void check(int libraw_answer) {
    switch (libraw_answer) {
    case LIBRAW_SUCCESS:
        return;
    case LIBRAW_UNSUFFICIENT_MEMORY:
        throw std::bad_alloc();
    case LIBRAW_FILE_UNSUPPORTED:
    case LIBRAW_REQUEST_FOR_NONEXISTENT_IMAGE:
    case LIBRAW_OUT_OF_ORDER_CALL: // what decoding answers where no picture was identified
        throw failure(error_code_t::not_a_raw_picture, "no Canon raw picture in it");
    case LIBRAW_TOO_BIG:
        throw failure(error_code_t::not_supported, "the raw picture is too large");
    case LIBRAW_IO_ERROR:
        throw_damaged("the file ends early or its structure is damaged");
    default:
        throw_damaged("the pixel data are damaged");
    }
}

// Called where the decoder meets a code or a value that cannot be.
void stop_at_damage(void* libraw, const char*, int) {
    static_cast<LibRaw*>(libraw)->setCancelFlag();
}

// The decoder's white level is a fixed one for each camera model. The camera itself records the level that
// holds for this picture (it varies with the sensitivity), and no sample is above what its bits can hold.
void correct_white_level(libraw_colordata_t& color, unsigned precision) {
    if (precision != 0)
        color.maximum = std::min(color.maximum, (1U << precision) - 1);
    const long recorded = *std::min_element(std::begin(color.linear_max), std::end(color.linear_max));
    if (recorded > static_cast<long>(color.maximum / 2) && recorded < static_cast<long>(color.maximum))
        color.maximum = static_cast<unsigned>(recorded);
}

// LibRaw goes on without the memory for a mosaic, and where its demosaicing threads get none for their tiles
// the whole process ends. So whether there is enough is tried first. Throws std::bad_alloc. (Calling the
// operators by name keeps the compiler from leaving the attempt out.)
void try_memory(std::size_t size) {
    ::operator delete(::operator new(size));
}

void try_memory_for_mosaic(const libraw_image_sizes_t& sizes) {
    constexpr std::size_t spare_rows = 8;
    try_memory((sizes.raw_height + spare_rows) * sizes.raw_width * sizeof(std::uint16_t));
}

void try_memory_for_picture(const libraw_image_sizes_t& sizes) {
    constexpr std::size_t pixel_size = 4 * sizeof(std::uint16_t);
    constexpr std::size_t for_each_thread = 16 << 20; // a stack and a tile
    const std::size_t threads = std::max(1U, std::thread::hardware_concurrency());
    try_memory(std::size_t{sizes.height} * sizes.width * pixel_size + threads * for_each_thread);
}

} // namespace

raw_decoder::raw_decoder(std::span<const std::byte> bytes)
    : m_libraw(
          std::make_unique<LibRaw>(LIBRAW_OPIONS_NO_MEMERR_CALLBACK | LIBRAW_OPIONS_NO_DATAERR_CALLBACK)) {
    pixel_data_check pixel_data(bytes, *m_libraw);
    m_libraw->set_dataerror_handler(stop_at_damage, m_libraw.get());
    m_libraw->imgdata.params.max_raw_memory_mb = most_raw_memory;
    // LibRaw takes the bytes as writable and writes nothing.
    LibRaw_buffer_datastream stream(const_cast<std::byte*>(bytes.data()), bytes.size()); // NOLINT
    check(m_libraw->open_datastream(&stream));
    pixel_data.before_decoding();
    try_memory_for_mosaic(inq_data().sizes);
    check(m_libraw->unpack());
    if (inq_data().rawdata.raw_image == nullptr ||
        m_libraw->get_internal_data_pointer()->unpacker_data.data_error != 0)
        throw_damaged("the pixel data are damaged");
    pixel_data.after_decoding(static_cast<std::size_t>(stream.tell()));
    correct_white_level(inq_data().rawdata.color, pixel_data.inq_precision());
    m_libraw->get_internal_data_pointer()->internal_data.input = nullptr; // the stream ends here
}

mosaic_view raw_decoder::inq_mosaic() const noexcept {
    const auto& rawdata = inq_data().rawdata;
    const std::size_t count = std::size_t{rawdata.sizes.raw_width} * rawdata.sizes.raw_height;
    return {{rawdata.raw_image, count}, rawdata.sizes.raw_width, rawdata.sizes.raw_height};
}

bool raw_decoder::knows_colours() const noexcept {
    return inq_data().rawdata.ioparams.raw_color == 0;
}

void raw_decoder::develop() {
    try_memory_for_picture(inq_data().rawdata.sizes);
    check(m_libraw->dcraw_process());
    // Where LibRaw gets no memory for the picture it gives up all that it holds and goes on without a word.
    if (inq_data().rawdata.raw_image == nullptr)
        throw std::bad_alloc();
}

} // namespace sdk_open
