#include "tests/conversion/posix/crash_model.h"

#include <algorithm>

crash_model::crash_model(std::string target, const std::string& older)
    : m_target(std::move(target)), m_names(1) {
    if (!older.empty())
        m_names.back()[m_target] = std::make_shared<data_t>(data_t{older, older, {}});
}

void crash_model::carry_out(const faulty_system::call_t& call) {
    names_t names = m_names.back();
    if (call.name == "open")
        m_open[call.descriptor] = nullptr;
    else if (call.name == "create")
        m_open[call.descriptor] = names[call.path] = std::make_shared<data_t>();
    else if (call.name == "pwrite")
        write(*m_open.at(call.descriptor), call);
    else if (call.name == "fsync")
        return flush(call.descriptor);
    else if (call.name == "rename" || call.name == "renameat2")
        names[call.target] = names.extract(call.path).mapped();
    else if (call.name == "link")
        names[call.target] = names.at(call.path);
    else if (call.name == "unlink")
        names.erase(call.path);
    if (names != m_names.back())
        m_names.push_back(std::move(names));
}

void crash_model::write(data_t& data, const faulty_system::call_t& call) {
    const std::size_t end = call.position + call.bytes.size();
    data.now.resize(std::max(data.now.size(), end));
    const auto replace = [&](std::size_t count) {
        data.now.replace(call.position, count, call.bytes, 0, count);
    };
    replace(call.bytes.size() / 2);
    data.torn.push_back(data.now);
    replace(call.bytes.size());
}

void crash_model::flush(int descriptor) {
    if (const auto data = m_open.at(descriptor)) {
        data->on_medium = data->now;
        data->torn.clear();
    } else {
        m_names.erase(m_names.begin(), m_names.end() - 1);
    }
}

crash_model::contents_t crash_model::inq_possible_contents() const {
    contents_t contents;
    for (const names_t& names : m_names) {
        const auto found = names.find(m_target);
        if (found == names.end()) {
            contents.insert("");
            continue;
        }
        const data_t& data = *found->second;
        contents.insert({data.now, data.on_medium.empty() ? "empty" : data.on_medium});
        contents.insert(data.torn.begin(), data.torn.end());
    }
    return contents;
}
