#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace sdk_open {

// The finished picture: upright, the camera's own frame, 16 bits of sRGB for each of three channels. It is
// handed on piece after piece, as it is wanted.
class finished_picture {
public:
    static constexpr unsigned channels = 3;

    // What becomes of the values of some rows, whose memory it may use. It is told which worker calls, from
    // 0.
    using rows_task = std::function<void(unsigned worker, std::span<std::uint16_t> values)>;

    finished_picture() = default;
    finished_picture(const finished_picture&) = delete;
    finished_picture& operator=(const finished_picture&) = delete;
    virtual ~finished_picture() = default;

    // In pixels.
    [[nodiscard]] virtual unsigned inq_width() const noexcept = 0;
    [[nodiscard]] virtual unsigned inq_height() const noexcept = 0;

    // Hands the picture on in pieces of a multiple of rows_per_piece rows; the last piece may be shorter.
    // What is still to be done for that is done with at most workers threads, the calling one included. Each
    // piece is prepared by one of the workers while others prepare theirs, and then taken by the same one:
    // one at a time, from the top down. The values do not depend on the number of threads. Throws failure
    // where the pixel data are damaged, std::bad_alloc, and what the tasks throw.
    virtual void develop(unsigned workers, unsigned rows_per_piece, const rows_task& prepare,
                         const rows_task& take) = 0;
};

} // namespace sdk_open
