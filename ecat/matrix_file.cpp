#include "ecat/matrix_file.h"

#include "ecat/blocks.h"
#include "ecat/directory_block.h"
#include "ecat/headers.h"
#include "ecat/internal_buffer.h"
#include "prefs/file_handle.h"

namespace velmorant
{

// Creates the file and writes its first two blocks.
static FileHandle create(const char *file_name, const char *mode, const MatMainHeader &main_header)
{
    FileHandle file(mat_open(file_name, mode));
    if (file) {
        mat_write_main_header(file.get(), main_header);
        const auto directory =
            allocate_internal_buffer<DirectoryBlock>(1, "cannot allocate bufr for mat_create...");
        directory[0] = fresh_directory_block(0);
        write_directory_block(file.get(), FirstDirectoryBlock, directory[0]);
    }
    return file;
}

std::FILE *mat_create(const char *file_name, const MatMainHeader &main_header)
{
    FileHandle file = create(file_name, "wb", main_header);
    const bool created = file && mat_close(file.release()) == 0;
    return created ? mat_open(file_name, "r+b") : nullptr;
}

std::FILE *mat_create_backup(const char *file_name, const MatMainHeader &main_header)
{
    return create(file_name, "w+b", main_header).release();
}

} // namespace velmorant
