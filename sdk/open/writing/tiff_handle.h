#pragma once

#include <fcntl.h>
#include <memory>
#include <tiffio.h>

namespace sdk_open {

// Finishes nothing: whoever writes has flushed before, and after a failure libtiff would fall over what is
// missing.
struct tiff_closer {
    void operator()(TIFF* file) const noexcept {
        TIFFSetMode(file, O_RDONLY);
        TIFFClose(file);
    }
};

// An open TIFF file of libtiff's.
using tiff_handle = std::unique_ptr<TIFF, tiff_closer>;

// Where the bytes of a TIFF file lie and how libtiff gets at them.
struct tiff_storage {
    void* client; // handed to each of the functions; must outlive the handle
    TIFFReadWriteProc read;
    TIFFReadWriteProc write;
    TIFFSeekProc seek;
    TIFFSizeProc size;
};

// Opens with libtiff's mode letters. Neither libtiff's messages nor any handler of the process is touched:
// this handle keeps what it has to say to itself. Null where libtiff cannot open. Throws std::bad_alloc.
[[nodiscard]] tiff_handle open_tiff(const tiff_storage& storage, const char* mode);

} // namespace sdk_open
