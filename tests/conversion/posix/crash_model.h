#pragma once

#include "tests/conversion/posix/faulty_system.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// What a crash of the machine may leave of a folder: names reach the medium in their order, but whenever they
// like, and so do contents, maybe in part, unless a flush of the file or of the folder has seen to it.
class crash_model final {
public:
    using contents_t = std::set<std::string>; // that the target may have; "" is a missing file

    // There is a file of this name that is on the medium, and none where `older` is empty.
    crash_model(std::string target, const std::string& older);

    void carry_out(const faulty_system::call_t& call);

    // Should the machine crash now.
    [[nodiscard]] contents_t inq_possible_contents() const;

private:
    struct data_t {
        std::string now;
        std::string on_medium;
        std::vector<std::string> torn; // what else may be there: halves of what was written since
    };
    using names_t = std::map<std::string, std::shared_ptr<data_t>>;

    void write(data_t& data, const faulty_system::call_t& call);
    void flush(int descriptor);

    std::string m_target;
    std::map<int, std::shared_ptr<data_t>> m_open; // null: a folder
    std::vector<names_t> m_names;                  // on the medium, and after each change since
};
