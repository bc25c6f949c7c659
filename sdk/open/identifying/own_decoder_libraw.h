#pragma once

#include "sdk/open/decoding/mosaic_buffer.h"

#include <exception>
#include <functional>
#include <libraw/libraw.h>

namespace sdk_open {

// LibRaw with a decoder of ours in the place of its own. All else that belongs to unpacking stays LibRaw's:
// the memory of the mosaic, and what it learns from the mosaic about the black level. Where LibRaw decodes
// and develops itself, it is held to what it would leave out: to notice that there is no memory, and to work
// in this thread alone.
class own_decoder_libraw final : public LibRaw {
public:
    using decoder = std::function<void(const mosaic_buffer& target)>;

    using LibRaw::LibRaw;

    // Like unpack(), whose answer it returns, but the decoder fills the mosaic. Throws what that throws, and
    // std::bad_alloc where there is no memory for the mosaic. A mosaic whose decoding failed stays where it
    // is.
    [[nodiscard]] int unpack_with(decoder decode);

    // Like unpack(), with LibRaw's decoder. A lack of memory is answered as such, and not taken for damage.
    [[nodiscard]] int unpack_by_libraw();

    // Like dcraw_process(), which goes on where it got no memory for the picture, and reports success. Throws
    // std::bad_alloc, too.
    [[nodiscard]] int develop();

    // While the decoder runs: learns the black level from the mosaic's masked borders, if all of them lie
    // left of a column. Up to there every row must be complete.
    [[nodiscard]] bool learn_levels_left_of(unsigned column);

private:
    using load_function = void (LibRaw::*)();

    void put_in_place_of_libraws(load_function load) noexcept;
    void load_mosaic();
    void load_by_libraw();
    void decode_mosaic() const;
    static void require_image(void* libraw);
    void copy_bayer(unsigned short* black, unsigned short* highest) override;
    [[nodiscard]] bool has_borders_only_left_of(unsigned column) const noexcept;

    decoder m_decode;
    load_function m_libraws_load = nullptr;
    std::exception_ptr m_problem;
};

} // namespace sdk_open
