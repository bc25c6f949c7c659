#pragma once

// The abstract write stream: a formatting state, and one operation through which all bytes leave.
class ZWStream {
public:
    ZWStream(const ZWStream&) = delete;
    ZWStream& operator=(const ZWStream&) = delete;
    virtual ~ZWStream() = default;

    // Takes n bytes for the destination; false when it did not take them.
    virtual bool write_bytes(const void* data, int n) = 0;

    // Base 10, no flags, no width, blanks to fill with, precision 6. The error code stays.
    void reset_format() noexcept;

    // The stream's error code; 0 while it is healthy.
    [[nodiscard]] int inq_error() const noexcept { return m_error; }

protected:
    ZWStream() noexcept = default;

private:
    int m_error = 0;
    int m_base = 10;
    unsigned int m_flags = 0;
    int m_width = 0;
    char m_fill = ' ';
    int m_precision = 6;
};
