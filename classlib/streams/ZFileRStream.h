#pragma once

#include "classlib/files/ZFileLocation.h"
#include "classlib/streams/ZData.h"
#include "classlib/streams/ZRStream.h"
#include "platform/file_handle.h"

// Reads from a file, in blocks of 64 KiB. A file that cannot be opened or read sets rstreamerr_read_failed,
// with the cause in errno.
class ZFileRStream final : public ZRStream {
public:
    explicit ZFileRStream(const ZFileLocation& location);

    // Closes the file: what is left of the current block can still be read.
    void close() override;

    [[nodiscard]] std::int64_t inq_source_size() const override { return m_source_size; }

private:
    bool fill_buffer(const unsigned char*& block, int& size) override;

    platform::file_handle m_file;
    std::int64_t m_source_size;
    ZData m_block;
};
