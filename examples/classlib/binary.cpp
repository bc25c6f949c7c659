#include "classlib/streams/ZData.h"
#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/streams/ZWStream.h"
#include "classlib/strings/ZString.h"

#include <cstdio>

namespace {

// A stream of one's own is one operation.
class ZDataWStream final : public ZWStream {
public:
    bool write_bytes(const void* data, int n) override { return m_data.append(data, n); }
    const ZData& inq_data() const { return m_data; }

private:
    ZData m_data;
};

} // namespace

int main() {
    ZDataWStream out;
    out.write_int16(-2);
    out.write_packed_int(300);
    out.write_cstring("abc");
    for (int i = 0; i < out.inq_data().inq_n_bytes(); ++i)
        std::printf("%02X ", out.inq_data().inq_data()[i]);
    std::printf("\n");

    ZMemoryRStream in(out.inq_data());
    short small = 0;
    unsigned int packed = 0;
    int missing = 7;
    ZString text;
    const bool is_complete =
        in.read_int16(small) && in.read_packed_int(packed) && in.read_cstring(text, false);
    const bool is_more = in.read_int32(missing);
    std::printf("%d: %d %u %s\n", is_complete, small, packed, static_cast<const char*>(text));
    std::printf("%d: %d, error %d\n", is_more, missing, in.inq_error());
}
