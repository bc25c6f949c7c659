#pragma once

#include "classlib/strings/ZUString.h"

// The base of the library's exceptions: failures that a caller can meet in normal use. They are thrown by
// value and caught by reference, as their own class or as this one.
//
// The order of the virtual operations is fixed, and there is no virtual destructor among them.
class ZException {
public:
    // id names the member of the family; it must live as long as the process, and copies share it.
    ZException(const char* id, int code) noexcept : m_id(id), m_code(code) {}

    // Throws a copy of the exception with its full type.
    [[noreturn]] virtual void raise() const;

    // One line of text that describes the exception.
    [[nodiscard]] virtual ZUString describe() const;

    [[nodiscard]] const char* inq_id() const noexcept { return m_id; }

    // What the code means is up to the class.
    [[nodiscard]] int inq_code() const noexcept { return m_code; }
    ZException& set_code(int code) noexcept;

private:
    const char* m_id;
    int m_code;
};
