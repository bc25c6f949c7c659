#pragma once

namespace sdk_open {

// How many workers there is room for, at least 1: as many as RAW_TO_TIFF_THREADS in the environment says,
// else as many as there are cores for this process.
[[nodiscard]] unsigned inq_worker_count() noexcept;

} // namespace sdk_open
