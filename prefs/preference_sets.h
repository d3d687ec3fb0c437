#pragma once

// The two preference files of a run and the settings that they fill (prefs/settings.h). A file that
// can't be opened is announced ("PATH does not exist...") and created with every key and its
// default, in the order of the set and all at once: of many first runs at the same time one creates
// it, and the others read it whole. Keys that a file lacks are appended in the same order. A file
// that can't be created ends the run with "can't create " and the path; whatever a look-up finds
// wrong ends it as prefs/preference_file.h says.

#include "prefs/text.h"

namespace velmorant
{

inline constexpr const char *GlobalPreferenceName = "GLOBAL.prf";

// Reads the package-wide set from GLOBAL.prf.
// directory: the program directory, empty or ending in "/". A path of more than 254 characters ends
// the run with "file name too long: " and the path.
void read_global_preference(const char *directory);

// The program's own preference file: the program path as invoked, with ".prf" after it; too long a
// name as above.
void get_local_preference_name(const char *program_path, Text &name_out);

// Reads the program's own set. The palette's default is "rainbow.plt" in the working directory, as
// an absolute path, whether it is needed or not: without a working directory the run ends with
// "can't get directory path", and one of more than 242 characters, which leaves no room for the
// name, aborts it before any key is read. (A palette's path of more than about 230 characters is
// longer than the lines of the file can hold: it is used once, and then can't be read back.)
void read_local_preference(const char *path);

} // namespace velmorant
