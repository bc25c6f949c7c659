#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace sdk_open {

// Where the directories of a .cr2 have entries that no Canon camera writes: the positions of their tags, in
// bytes from the file's start and in order. LibRaw would take them for another maker's, and much of what it
// has for those was not written with hostile files in mind. To be hidden as well are the entries of
// directories that are not there, or overlap others.
//
// Throws failure(not_a_raw_picture) where the picture is another maker's, and failure(damaged_picture) where
// the directories of its pictures are not whole.
[[nodiscard]] std::vector<std::size_t> find_foreign_entries(std::span<const std::byte> bytes);

} // namespace sdk_open
