#pragma once

#include "base/Fault.h"

namespace tessmar {

/// Why the archive cannot be read or written now.
enum class ArchiveTrouble {
  Busy,        ///< Another program holds it; goes away by itself.
  Unwritable,  ///< No permission, a read-only disk, a folder that cannot be made, a failing disk.
  Full,        ///< No room on the disk.
  Damaged,     ///< Not a database, or one that is broken.
  UnderCheck,  ///< Was called damaged, and is being looked at.
  Foreign,     ///< Another program's database.
  Newer,       ///< Written by a later version of this program.
  NotAFile,    ///< A folder, a pipe or a device stands in its place.
  NoDriver,    ///< Qt's SQLite plugin is not installed.
};

/// The archive did not take, or give, what it had to.
class ArchiveFault : public Fault {
 public:
  ArchiveFault(ArchiveTrouble trouble, const std::string& what) : Fault(what), trouble_(trouble) {}
  ArchiveTrouble Trouble() const { return trouble_; }

 private:
  ArchiveTrouble trouble_;
};

}  // namespace tessmar
