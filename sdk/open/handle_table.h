#pragma once

#include "sdk/open/failure.h"
#include "sdk/open/open_objects.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace sdk_open {

// Owns the objects that were handed out. A handle that is unknown, of another kind or already given back is
// an error, never a guess.
class handle_table final {
public:
    // Makes an object and keeps it; the handle stays valid until release() or the table's end.
    template <typename Object, typename... Arguments>
    [[nodiscard]] __EdsObject* make(Arguments&&... arguments) {
        m_objects.push_back(std::make_unique<Object>(std::forward<Arguments>(arguments)...));
        return m_objects.back().get();
    }

    // The object behind a handle; throws failure(bad_argument).
    template <typename Object>
    [[nodiscard]] Object& find(const __EdsObject* handle) const {
        auto* object = dynamic_cast<Object*>(position(handle)->get());
        if (object == nullptr)
            throw failure(error_code_t::bad_argument, "a handle stands for another kind of object");
        return *object;
    }

    // Throws failure(bad_argument).
    void release(const __EdsObject* handle) { m_objects.erase(position(handle)); }

private:
    using object_list = std::vector<std::unique_ptr<__EdsObject>>;

    [[nodiscard]] object_list::const_iterator position(const __EdsObject* handle) const {
        const auto found = std::ranges::find(m_objects, handle, &std::unique_ptr<__EdsObject>::get);
        if (found == m_objects.end())
            throw failure(error_code_t::bad_argument, "a handle stands for nothing");
        return found;
    }

    object_list m_objects;
};

} // namespace sdk_open
