#include "classlib/errors/ZKVDException.h"
#include "classlib/errors/ZProgramErrorOutput.h"
#include "classlib/strings/ZMBString.h"
#include "classlib/values/ZKVString.h"

#include <cstdio>
#include <memory>

namespace {

// A reporter of one's own shows the reports in its own way; true would stop in the debugger.
class one_line_output final : public ZProgramErrorOutput {
public:
    bool warning(const ZUString& message, const char* file, int /*line*/) override {
        std::printf("%s: %s\n", file, static_cast<const char*>(ZMBString(message)));
        return false;
    }
};

} // namespace

int main() {
    one_line_output output;
    set_program_error_output(&output);
    const ZKVString entry("red-eye", "on");

    const std::unique_ptr<ZKV> copy(entry.clone());
    std::printf("%s\n", static_cast<const char*>(copy->as_string(1).inq_string()));
    try {
        static_cast<void>(copy->as_integer(1));
    } catch (const ZKVDException& exception) {
        std::printf("%s\n", static_cast<const char*>(ZMBString(exception.describe())));
    }
    set_program_error_output(nullptr);
}
