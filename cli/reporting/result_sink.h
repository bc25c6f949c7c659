#pragma once

#include "cli/result.h"

#include <string_view>

class tally;

// How a run ended.
enum class ending_t {
    complete,
    interrupted, // by the user
    stopped,     // by the system: a full disk, no processes
};

// Takes in what happens in a run. Throws std::runtime_error where it cannot pass it on.
class result_sink {
public:
    result_sink() = default;
    result_sink(const result_sink&) = delete;
    result_sink& operator=(const result_sink&) = delete;
    virtual ~result_sink() = default;

    // How the run goes about it, for those who want to know.
    virtual void note(std::string_view) {}

    // A file is done, and counted.
    virtual void take(const result_t& result, const tally& so_far) = 0;

    // Comes now and then, several times a second.
    virtual void tick(const tally&) {}

    virtual void finish(ending_t ending, const tally& sum) = 0;
};
