#pragma once

#include <uchar.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Where a file is: three texts of UTF-16 with a zero at the end of each, one after the other the file's path.
 * The separator is the backslash, also at the end of the folder. A null pointer is an empty text. */
struct raw_to_tiff_location {
    const char16_t* volume; /* empty on Linux */
    const char16_t* folder; /* \photos\ */
    const char16_t* name;   /* IMG_0001.CR2 */
};

/* Converts a raw file (.cr2 or .crw, in any letter case) to a TIFF with 16 bits for each channel. Neither
 * pointer may be null; the library only reads what they point to, and keeps no pointer. One call at a time.
 *
 * Answers 0 when the TIFF is written, 10 when there is no such raw file, and 11 when the extension is another
 * one or the conversion failed. */
int convert_raw_to_tiff(const struct raw_to_tiff_location* raw, const struct raw_to_tiff_location* tiff);

#ifdef __cplusplus
}
#endif
