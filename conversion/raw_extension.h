#pragma once

class ZFileLocation;

// Whether a file's name ends as those of Canon raw files do: in .cr2 or .crw, in any letter case.
[[nodiscard]] bool has_raw_extension(const ZFileLocation& file);
