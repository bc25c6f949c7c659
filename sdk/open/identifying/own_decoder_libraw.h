#pragma once

#include "sdk/open/decoding/mosaic_buffer.h"

#include <exception>
#include <functional>
#include <libraw/libraw.h>

namespace sdk_open {

// LibRaw with a decoder of ours in the place of its own. All else that belongs to unpacking stays LibRaw's:
// the memory of the mosaic, and what it learns from the mosaic about the black level.
class own_decoder_libraw final : public LibRaw {
public:
    using decoder = std::function<void(const mosaic_buffer& target)>;

    using LibRaw::LibRaw;

    // Like unpack(), whose answer it returns, but the decoder fills the mosaic. Throws what that throws, and
    // std::bad_alloc where there is no memory for the mosaic. A mosaic whose decoding failed stays where it
    // is.
    int unpack_with(decoder decode);

    // While the decoder runs: learns the black level from the mosaic's masked borders, if all of them lie
    // left of a column. Up to there every row must be complete.
    bool learns_levels_left_of(unsigned column);

private:
    using load_function = void (LibRaw::*)();

    void load_mosaic();
    void decode_mosaic() const;
    [[nodiscard]] bool has_borders_only_left_of(unsigned column) const noexcept;

    decoder m_decode;
    load_function m_own_load = nullptr;
    std::exception_ptr m_problem;
};

} // namespace sdk_open
