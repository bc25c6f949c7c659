#include "cli/converting/picture_facts.h"

#include <memory>
#include <tiffio.h>

namespace {

struct closer {
    void operator()(TIFF* file) const noexcept { TIFFClose(file); }
};

std::string text_of(TIFF* file, ttag_t tag) {
    const char* text = nullptr;
    return TIFFGetField(file, tag, &text) == 1 && text != nullptr ? text : "";
}

} // namespace

void add_picture_facts(result_t& result) {
    TIFFSetWarningHandler(nullptr);
    const std::unique_ptr<TIFF, closer> file(TIFFOpen(result.job.output.c_str(), "r"));
    if (!file)
        return;
    TIFFGetField(file.get(), TIFFTAG_IMAGEWIDTH, &result.width);
    TIFFGetField(file.get(), TIFFTAG_IMAGELENGTH, &result.height);
    result.camera = text_of(file.get(), TIFFTAG_MODEL);
}
