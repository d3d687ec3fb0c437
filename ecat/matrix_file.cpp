#include "ecat/matrix_file.h"

#include "ecat/blocks.h"
#include "ecat/directory_block.h"
#include "ecat/headers.h"
#include "ecat/internal_buffer.h"

namespace velmorant
{

// Creates the file and writes its first two blocks.
static std::FILE *create(const char *file_name, const char *mode, const MatMainHeader &main_header)
{
    std::FILE *stream = mat_open(file_name, mode);
    if (stream == nullptr) {
        return nullptr;
    }
    mat_write_main_header(stream, main_header);
    const auto directory =
        allocate_internal_buffer<DirectoryBlock>(1, "cannot allocate bufr for mat_create...");
    directory[0] = fresh_directory_block(0);
    write_directory_block(stream, FirstDirectoryBlock, directory[0]);
    return stream;
}

std::FILE *mat_create(const char *file_name, const MatMainHeader &main_header)
{
    std::FILE *stream = create(file_name, "wb", main_header);
    if (stream == nullptr) {
        return nullptr;
    }
    mat_close(stream);
    return mat_open(file_name, "r+b");
}

std::FILE *mat_create_backup(const char *file_name, const MatMainHeader &main_header)
{
    return create(file_name, "w+b", main_header);
}

} // namespace velmorant
