#pragma once

#include "conversion/edsdk.h"
#include "sdk/open/identifying/raw_decoder.h"
#include "sdk/open/metadata/picture_metadata.h"
#include "sdk/open/system/input_file.h"
#include "sdk/open/system/large_block.h"
#include "sdk/open/system/output_file.h"
#include "sdk/open/system/system_calls.h"

#include <string>
#include <utility>
#include <vector>

// What a handle stands for.
struct __EdsObject { // NOLINT(bugprone-reserved-identifier): the SDK's own name, part of its interface
    __EdsObject() = default;
    __EdsObject(const __EdsObject&) = delete;
    __EdsObject& operator=(const __EdsObject&) = delete;
    virtual ~__EdsObject() = default;
};

namespace sdk_open {

// A stream on an existing file.
struct input_stream final : __EdsObject {
    explicit input_stream(const std::string& path) : file(path) {}
    input_file file;
};

// A stream on a file to be made, which must be none of the raw files.
struct output_stream final : __EdsObject {
    output_stream(std::string path, const std::vector<system_calls::file_identity>& raw_files)
        : file(std::move(path), raw_files) {}
    output_file file;
};

// A raw picture, identified and ready to be decoded and developed.
struct raw_image final : __EdsObject {
    explicit raw_image(large_block file)
        : contents(std::move(file)),
          decoder(contents.inq_bytes()),
          metadata(collect_metadata(contents.inq_bytes(), decoder.inq_data())) {}
    large_block contents;
    raw_decoder decoder;
    picture_metadata metadata;
};

} // namespace sdk_open
