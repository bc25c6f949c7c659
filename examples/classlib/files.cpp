#include "classlib/errors/ZFileException.h"
#include "classlib/files/ZFile.h"
#include "classlib/files/ZTmpPath.h"
#include "classlib/streams/ZFileRStream.h"
#include "classlib/streams/ZFileWStream.h"
#include "classlib/strings/ZMBString.h"

#include <cstdio>

int main() {
    ZFileLocation location(UTF16("C:/photos/IMG_0001.CR2"), false);
    location.set_extension(UTF16("tif"));
    std::printf("%s\n", static_cast<const char*>(ZMBString(location.inq_description())));

    const ZTmpPath original(UTF16("original-"));
    const ZTmpPath copy(UTF16("copy-"));
    ZFileWStream out(original.inq_path());
    out << "two" << ' ' << 2 << new_line;
    std::printf("written: %d\n", out.close());
    ZFile file(original.inq_path());
    if (file.copy_to(copy.inq_path()))
        std::printf("copied, the same bytes: %d\n", file.inq_same_contents(copy.inq_path()));
    try {
        file.move_to(copy.inq_path(), false);
    } catch (const ZException& exception) {
        std::printf("not moved: %s %d\n", exception.inq_id(), exception.inq_code());
    }

    ZFileRStream in(copy.inq_path());
    ZString word;
    int number = 0;
    in >> word >> number;
    std::printf("%s is %d\n", static_cast<const char*>(word), number);
    in.close();
    original.delete_file();
    copy.delete_file();
}
