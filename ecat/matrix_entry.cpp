#include "ecat/matrix_entry.h"

#include "ecat/directory.h"
#include "prefs/numbers.h"

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

// Whether the matrix may stay in its place: the blocks of the old one are counted with its subheader,
// those of the new one without.
static bool has_room(const MatDirEntry &entry, const NewMatrix &matrix)
{
    const std::int64_t blocks = std::int64_t{entry.last_block} + 1 - entry.first_block;
    return blocks >= matrix.data_blocks;
}

static void occupy(MatDirEntry &entry, const NewMatrix &matrix, std::int32_t first_block)
{
    entry = {.matrix_number = matrix.number,
             .first_block = first_block,
             .last_block = wrap_add(first_block, matrix.data_blocks),
             .status = 1};
}

static std::int32_t block_after(const MatDirEntry &entry)
{
    return wrap_add(entry.last_block, 1);
}

// Enters the matrix into the first entry of the block that is empty, or its own and large enough;
// an own one that is too small is abandoned. Writes what it changes. Returns the matrix's entry, or
// null where there is none.
static const MatDirEntry *enter_into_block(std::FILE *stream, std::int32_t block_number,
                                           DirectoryBlock &block, const NewMatrix &matrix)
{
    std::int32_t free_block = wrap_add(block_number, 1);
    for (MatDirEntry &entry : block.entries) {
        if (entry.matrix_number == 0) {
            occupy(entry, matrix, free_block);
            block.free_entries = wrap_add(block.free_entries, -1);
            block.used_entries = wrap_add(block.used_entries, 1);
            write_directory_block(stream, block_number, block);
            return &entry;
        }
        if (entry.matrix_number == matrix.number) {
            const bool stays = has_room(entry, matrix);
            if (stays) {
                occupy(entry, matrix, entry.first_block);
            } else {
                entry.matrix_number = -1;
            }
            write_directory_block(stream, block_number, block);
            if (stays) {
                return &entry;
            }
        }
        free_block = block_after(entry);
    }
    return nullptr;
}

MatrixPlace enter_matrix(std::FILE *stream, std::uint32_t matrix_number, std::int32_t data_blocks,
                         std::int32_t directory_block)
{
    const NewMatrix matrix{static_cast<std::int32_t>(matrix_number), data_blocks};
    DirectoryWalk walk(stream, directory_block);
    DirectoryBlock block{};
    while (walk.read_next(block)) {
        const auto *entry = enter_into_block(stream, walk.block_number(), block, matrix);
        if (entry != nullptr) {
            return {entry->first_block, walk.block_number()};
        }
    }
    const std::int32_t last_of_chain = walk.block_number();
    const std::int32_t added = block_after(block.entries.back());
    block.next_block = added;
    write_directory_block(stream, last_of_chain, block);
    block = fresh_directory_block(last_of_chain);
    return {enter_into_block(stream, added, block, matrix)->first_block, added};
}

std::int32_t mat_enter(std::FILE *stream, std::uint32_t matrix_number, std::int32_t data_blocks)
{
    return enter_matrix(stream, matrix_number, data_blocks, FirstDirectoryBlock).first_block;
}

} // namespace velmorant
