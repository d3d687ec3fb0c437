#pragma once

#include "ecat/main_header.h"

#include <cstdio>

namespace velmorant
{

// Creates an ECAT 6 matrix file, or empties one that is there: the main header in block 1, and an
// empty directory in block 2. Returns the stream, open for reading and writing, which is closed with
// `mat_close`, or null where the file can't be opened, or its close tells that it wasn't
// written; the caller reports. A block that can't be
// written ends the process as `mat_wblk` does; without memory for the directory block, it ends with
// status -1 after "cannot allocate bufr for mat_create...".
//
// `mat_create` writes through a stream of its own ("wb"), closes it and opens the file again
// ("r+b"); `mat_create_backup` returns the stream through which it has written ("w+b").
std::FILE *mat_create(const char *file_name, const MatMainHeader &main_header);
std::FILE *mat_create_backup(const char *file_name, const MatMainHeader &main_header);

} // namespace velmorant
