#include "conversion/temporary_copy.h"

#include "classlib/files/ZFile.h"
#include "platform/files.h"

#include <utility>

temporary_copy::temporary_copy() : m_place(UTF16("KW-"), UTF16(".tiff")) {}

// By the path that was composed beforehand: the copy has to go also when there is no memory left to compose
// it.
temporary_copy::~temporary_copy() {
    if (m_path.length() > 0)
        static_cast<void>(platform::delete_file(m_path));
}

bool temporary_copy::make_from(const ZFileLocation& file) {
    ZUString path = m_place.inq_path().inq_path();
    if (!ZFile(file).copy_to(m_place.inq_path()))
        return false;
    m_path = std::move(path);
    return true;
}
