#include "sdk/open/raw_decoder.h"

#include "sdk/open/decoder_threads.h"
#include "sdk/open/failure.h"
#include "sdk/open/pixel_data.h"
#include "sdk/open/raw_format.h"

#include <algorithm>
#include <future>
#include <iterator>
#include <new>
#include <string>
#include <system_error>

namespace sdk_open {
namespace {

constexpr unsigned most_raw_memory = 1024; // MiB

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

// The decoder's white level is a fixed one for each camera model. The camera itself records the level that
// holds for this picture (it varies with the sensitivity), and no sample is above what its bits can hold.
void correct_white_level(libraw_colordata_t& color, unsigned precision) {
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

void try_memory_for_picture(const libraw_image_sizes_t& sizes) {
    constexpr std::size_t pixel_size = 4 * sizeof(std::uint16_t);
    constexpr std::size_t for_each_thread = 16 << 20; // a stack and a tile
    try_memory(std::size_t{sizes.height} * sizes.width * pixel_size + inq_thread_count() * for_each_thread);
}

} // namespace

raw_decoder::raw_decoder(std::span<const std::byte> bytes)
    : m_libraw(std::make_unique<own_decoder_libraw>(LIBRAW_OPIONS_NO_MEMERR_CALLBACK |
                                                    LIBRAW_OPIONS_NO_DATAERR_CALLBACK)) {
    static_cast<void>(recognise_raw_format(bytes));
    m_libraw->imgdata.params.max_raw_memory_mb = most_raw_memory;
    // LibRaw takes the bytes as writable and writes nothing.
    LibRaw_buffer_datastream stream(const_cast<std::byte*>(bytes.data()), bytes.size()); // NOLINT
    check(m_libraw->open_datastream(&stream));
    const pixel_data stored(bytes, *m_libraw);
    check(m_libraw->unpack_with(
        [&stored](const mosaic_buffer& target) { stored.decode(target, [](unsigned) {}); }));
    correct_white_level(m_libraw->imgdata.rawdata.color, stored.inq_precision());
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

void raw_decoder::choose_area(const mosaic_area& area) noexcept {
    auto& rawdata = m_libraw->imgdata.rawdata;
    auto& sizes = rawdata.sizes;
    rawdata.iparams.filters =
        move_filters(rawdata.iparams.filters, static_cast<int>(area.left) - sizes.left_margin,
                     static_cast<int>(area.top) - sizes.top_margin);
    sizes.left_margin = static_cast<std::uint16_t>(area.left);
    sizes.top_margin = static_cast<std::uint16_t>(area.top);
    sizes.width = static_cast<std::uint16_t>(area.width);
    sizes.height = static_cast<std::uint16_t>(area.height);
}

void raw_decoder::choose_settings() noexcept {
    constexpr int adaptive_homogeneity_directed = 3;
    auto& settings = m_libraw->imgdata.params;
    settings.use_camera_wb = 1;
    settings.highlight = 0;
    settings.no_auto_bright = 1;
    settings.adjust_maximum_thr = 0; // else a picture without white in it would be brightened
    settings.user_qual = adaptive_homogeneity_directed;
    settings.output_color = 0; // stays in the camera's colours
}

// LibRaw's threads belong to the thread that calls it and end with it: none stays behind in the host.
void raw_decoder::develop(const mosaic_area& area) {
    choose_area(area);
    choose_settings();
    std::future<void> development;
    try {
        development = std::async(std::launch::async, [this] { run_development(); });
    } catch (const std::system_error& problem) {
        throw failure(error_code_t::failed, "cannot start a thread: " + problem.code().message());
    }
    development.get();
}

void raw_decoder::run_development() {
    limit_threads_to_startable();
    try_memory_for_picture(inq_data().rawdata.sizes);
    check(m_libraw->dcraw_process());
    // Where LibRaw gets no memory for the picture it gives up all that it holds and goes on without a word.
    if (inq_data().rawdata.raw_image == nullptr)
        throw std::bad_alloc();
}

} // namespace sdk_open
