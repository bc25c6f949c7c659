#pragma once

#include "sdk/open/developing/finished_picture.h"
#include "sdk/open/metadata/picture_metadata.h"
#include "sdk/open/output_options.h"
#include "sdk/open/system/output_file.h"

namespace sdk_open {

// Develops a picture and writes it as a TIFF: 16 bits for each of three channels, strips, an sRGB profile,
// the metadata with an EXIF and, where there is one, a GPS directory. The same picture gives the same bytes.
// The file is not committed yet. Throws failure, or std::bad_alloc.
void write_tiff(output_file& file, finished_picture& picture, const picture_metadata& metadata,
                compression_t compression);

} // namespace sdk_open
