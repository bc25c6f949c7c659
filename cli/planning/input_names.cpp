#include "cli/planning/input_names.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <system_error>

namespace {

void read_list(std::istream& list, char end, std::vector<input_name_t>& names) {
    for (std::string name; std::getline(list, name, end);)
        if (!name.empty())
            names.push_back({name, true});
}

[[noreturn]] void throw_unreadable(const std::string& list) {
    throw std::system_error(errno, std::generic_category(), "cannot read the list " + list);
}

} // namespace

std::vector<input_name_t> read_input_names(const options_t& options) {
    std::vector<input_name_t> names;
    for (const std::string& name : options.names)
        names.push_back({name, false});
    const char end = options.is_list_zero_separated ? '\0' : '\n';
    if (options.list == "-") {
        read_list(std::cin, end, names);
        if (std::ferror(stdin) != 0) // which the stream takes for the end
            throw_unreadable("on standard input");
    } else if (!options.list.empty()) {
        std::ifstream list(options.list, std::ios::binary);
        if (!list)
            throw_unreadable(options.list);
        read_list(list, end, names);
        if (list.bad())
            throw_unreadable(options.list);
    }
    return names;
}
