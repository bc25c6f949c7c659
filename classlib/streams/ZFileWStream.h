#pragma once

#include "classlib/files/ZFileLocation.h"
#include "classlib/streams/ZData.h"
#include "classlib/streams/ZWStream.h"
#include "platform/file_handle.h"

// Writes a new file, which only its owner may read; a file that exists is never touched. What is written is
// collected in a buffer of 64 KiB. A failure sticks, with its cause in errno: from then on nothing is taken,
// and only close() tells whether everything reached the file. A stream that is destroyed without it drops
// what it still holds.
class ZFileWStream final : public ZWStream {
public:
    explicit ZFileWStream(const ZFileLocation& location);

    // False when the file could not be created, or bytes written to it.
    [[nodiscard]] bool inq_ok() const noexcept { return m_is_ok; }

    bool write_bytes(const void* data, int n) override;

    // Writes what is held and closes the file. True when the file holds everything that was written to the
    // stream.
    [[nodiscard]] bool close();

private:
    bool flush();

    ZData m_held; // first, so that no file is created when there is no memory for it
    platform::file_handle m_file;
    bool m_is_ok;
};
