#pragma once

class ZFileLocation;

// Converts a camera raw file (.cr2 or .crw in any letter case) to a TIFF with 16 bits for each channel. The
// library's only export. Both locations are only read; the host keeps them.
//
// Answers 0 when the TIFF was written, 10 when there is no raw file, and 11 for any other extension and when
// the conversion failed, also for lack of memory. Throws nothing. One call at a time: the SDK behind it is
// started and ended in each call.
extern "C" int convert_raw_to_tiff(const ZFileLocation& raw_path, const ZFileLocation& tiff_path) noexcept;
