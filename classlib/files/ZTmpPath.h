#pragma once

#include "classlib/files/ZFileLocation.h"
#include "classlib/strings/ZUString.h"

// A location in the user's temporary folder that did not exist when it was chosen: a prefix, twenty random
// characters from 0-9 and A-Z, and an extension. Only the name is chosen: nothing is created, and nothing
// keeps another process from taking the same name. The file stays when the object goes, unless it was told to
// delete it.
class ZTmpPath final {
public:
    // The extension is used as it is, so it comes with its "."; ".tmp" where none is given. Without a
    // temporary folder the location is a bare name; after a thousand names that all exist it is the last of
    // them.
    explicit ZTmpPath(const ZUString& prefix);
    ZTmpPath(const ZUString& prefix, const ZUString& extension);

    ZTmpPath(const ZTmpPath&) = delete;
    ZTmpPath& operator=(const ZTmpPath&) = delete;
    ~ZTmpPath();

    [[nodiscard]] const ZFileLocation& inq_path() const noexcept { return m_location; }

    // Deletes the file at the location; false when that fails.
    bool delete_file() const;

    // From now on the file goes with this object.
    void set_delete_on_destroy() noexcept { m_delete_on_destroy = true; }

private:
    void set_temp_folder();
    void make_unique(const ZUString& prefix, const ZUString& extension);

    bool m_delete_on_destroy = false;
    ZFileLocation m_location;
};
