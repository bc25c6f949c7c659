#pragma once

#include "classlib/strings/ZUString.h"
#include "platform/utf16.h"

// The location of a file or folder, held as volume, folder and name. A host builds such values itself, so the
// layout (three ZUStrings in this order) is fixed. A location is any text: nothing here looks at a file
// system, and no operation fails.
//
//   C:\photos\IMG_0001.CR2     C:          \photos\       IMG_0001.CR2
//   \\server\share\a.crw       \\server    \share\        a.crw
//   photos\a.cr2               (empty)     photos\        a.cr2
class ZFileLocation final {
public:
    ZFileLocation() noexcept = default;

    // Parses a path text, in which "/" counts as "\". The last component is the name, unless is_folder moves
    // it into the folder.
    ZFileLocation(const ZUString& path, bool is_folder);

    // Whether all three parts are equal without regard to case.
    [[nodiscard]] bool operator==(const ZFileLocation& other) const noexcept;

    void clear() noexcept;

    // Volumes: a letter and ":"; two backslashes and a server's name. An empty name makes the volume empty.
    void set_drive_letter(utf16_t letter);
    void set_server(const ZUString& server);

    // Turns every "/" into "\" and ends the folder with "\", so an empty text gives the root.
    void set_folder(const ZUString& folder);
    void set_name(const ZUString& name);

    // Replaces what stands after the last "." of the name, or adds it. The extension may be given with or
    // without its "."; an empty one is removed, with its ".".
    void set_extension(const ZUString& extension);
    void remove_extension();

    // Moves the name into the folder: \photos\ and trip become \photos\trip\.
    void name_to_folder();

    // The innermost folder becomes the name, the old name is lost: \photos\trip\ becomes \photos\ and trip.
    // Nothing changes where no separator stands before that folder's name.
    void folder_to_name();

    // Drops the innermost folder and keeps the name: \photos\trip\ becomes \photos\. False, and nothing
    // changed, when there is none to drop.
    bool to_parent_folder();
    void add_folder(const ZUString& folder);

    // Append "~" or "+" to the name.
    void add_tilde();
    void add_plus();

    // The three parts as they are held.
    [[nodiscard]] const ZUString& inq_volume() const noexcept { return m_volume; }
    [[nodiscard]] const ZUString& inq_folder() const noexcept { return m_folder; }
    [[nodiscard]] const ZUString& inq_name() const noexcept { return m_name; }

    // The full path text.
    [[nodiscard]] ZUString inq_path() const;

    // The path of the folder, without a closing separator unless it is a root.
    [[nodiscard]] ZUString inq_folder_path() const;

    // The extension of the name from its last "." on; empty without a ".". "a.b.CR2" gives ".CR2".
    [[nodiscard]] ZUString inq_extension() const;

    // The name without its extension.
    [[nodiscard]] ZUString inq_base_name() const;

    // One line with the name first: IMG_0001.CR2 - C:\photos\.
    [[nodiscard]] ZUString inq_description() const;

    // The drive letter, or the character 0.
    [[nodiscard]] utf16_t inq_drive_letter() const noexcept;

    // The server's name, or an empty text.
    [[nodiscard]] ZUString inq_server() const;

    // Whether all three parts are empty.
    [[nodiscard]] bool inq_empty() const noexcept;

private:
    void set_path(const ZUString& path);
    [[nodiscard]] int take_volume(const ZUString& path);
    [[nodiscard]] ZUString inq_volume_prefix() const;
    [[nodiscard]] int inq_innermost_end() const noexcept;

    ZUString m_volume;
    ZUString m_folder;
    ZUString m_name;
};

static_assert(sizeof(ZFileLocation) == 3 * sizeof(void*));
