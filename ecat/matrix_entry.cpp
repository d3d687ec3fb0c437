#include "ecat/matrix_entry.h"

#include "ecat/directory.h"
#include "prefs/numbers.h"

#include <optional>

namespace velmorant
{

namespace
{

// What is to be entered.
struct NewMatrix {
    std::int32_t number;
    std::int32_t data_blocks;
};

} // namespace

static bool has_room(const MatDirEntry &entry, const NewMatrix &matrix)
{
    const std::int64_t blocks = std::int64_t{entry.last_block} + 1 - entry.first_block;
    return blocks >= matrix.data_blocks;
}

// Gives the entry to the matrix. Returns its first block.
static std::int32_t occupy(MatDirEntry &entry, const NewMatrix &matrix, std::int32_t first_block)
{
    entry = {.matrix_number = matrix.number,
             .first_block = first_block,
             .last_block = wrap_add(first_block, matrix.data_blocks),
             .status = 1};
    return first_block;
}

static std::int32_t block_after(const MatDirEntry &entry)
{
    return wrap_add(entry.last_block, 1);
}

// Enters the matrix into the first entry of the block that is empty, or its own and large enough.
// Returns the matrix's first block, if there is such an entry.
static std::optional<std::int32_t> enter_into_block(std::int32_t block_number,
                                                    DirectoryBlock &block, const NewMatrix &matrix)
{
    std::int32_t free_block = wrap_add(block_number, 1);
    for (MatDirEntry &entry : block.entries) {
        if (entry.matrix_number == 0) {
            block.free_entries = wrap_add(block.free_entries, -1);
            block.used_entries = wrap_add(block.used_entries, 1);
            return occupy(entry, matrix, free_block);
        }
        if (entry.matrix_number == matrix.number) {
            if (has_room(entry, matrix)) {
                return occupy(entry, matrix, entry.first_block);
            }
            entry.matrix_number = -1;
        }
        free_block = block_after(entry);
    }
    return std::nullopt;
}

MatrixPlace enter_matrix(std::FILE *stream, std::uint32_t matrix_number, std::int32_t data_blocks,
                         std::int32_t directory_block)
{
    const NewMatrix matrix{static_cast<std::int32_t>(matrix_number), data_blocks};
    DirectoryWalk walk(stream, directory_block);
    DirectoryBlock block{};
    std::optional<std::int32_t> first_block;
    while (!first_block && walk.read_next(block)) {
        directory_block = walk.block_number();
        const DirectoryBlock before = block;
        first_block = enter_into_block(directory_block, block, matrix);
        if (block != before) {
            write_directory_block(stream, directory_block, block);
        }
    }
    if (!first_block) {
        const std::int32_t added = block_after(block.entries.back());
        block.next_block = added;
        write_directory_block(stream, directory_block, block);
        block = fresh_directory_block(directory_block);
        first_block = enter_into_block(added, block, matrix);
        write_directory_block(stream, added, block);
        directory_block = added;
    }
    return {*first_block, directory_block};
}

std::int32_t mat_enter(std::FILE *stream, std::uint32_t matrix_number, std::int32_t data_blocks)
{
    return enter_matrix(stream, matrix_number, data_blocks, FirstDirectoryBlock).first_block;
}

} // namespace velmorant
