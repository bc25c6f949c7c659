#pragma once

class ZWStream;

// An object that writes itself to a stream with operator<<.
class ZPrintable {
public:
    virtual ~ZPrintable() = default;
    virtual void print_to(ZWStream& out) const = 0;
};
