#include "classlib/streams/ZWStream.h"

void ZWStream::reset_format() noexcept {
    m_base = 10;
    m_flags = 0;
    m_width = 0;
    m_fill = ' ';
    m_precision = 6;
}
