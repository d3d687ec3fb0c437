#include "ecat/blocks.h"

#include "prefs/end_run.h"

#include <algorithm>

namespace velmorant
{

// count * 512 modulo 2^32.
static std::uint32_t wrapped_bytes(std::int32_t count)
{
    return static_cast<std::uint32_t>(count) << 9U;
}

static std::int32_t block_offset(std::int32_t block_number)
{
    return static_cast<std::int32_t>(wrapped_bytes(block_number) - BlockBytes);
}

std::FILE *mat_open(const char *path, const char *mode)
{
    std::FILE *stream = std::fopen(path, mode);
    if (stream != nullptr) {
        std::setvbuf(stream, nullptr, _IONBF, 0);
    }
    return stream;
}

std::int32_t mat_close(std::FILE *stream)
{
    return std::fclose(stream);
}

namespace
{

// What the reports of a failed operation say of it.
struct Operation {
    const char *name;
    const char *verb;
    const char *done;
};

constexpr Operation Reading{.name = "mat_rblk", .verb = "fread", .done = "read"};
constexpr Operation Writing{.name = "mat_wblk", .verb = "fwrite", .done = "written"};

} // namespace

// Ends the process where the blocks can't be sought.
static void check_seek(bool found, const Operation &operation, std::int32_t first_block,
                       std::int32_t block_count)
{
    if (!found) {
        std::printf("fseek error in %s (blkno %d, nblks %d)...\n", operation.name, first_block,
                    block_count);
        end_run(-1);
    }
}

// Ends the process where fewer bytes were moved than expected.
static void check_moved(std::size_t moved, const Operation &operation, std::int32_t expected)
{
    if (static_cast<std::int32_t>(moved) != expected) {
        std::printf("%s error in %s (%d expected, %d %s)...\n", operation.verb, operation.name,
                    expected, static_cast<std::int32_t>(moved), operation.done);
        end_run(-1);
    }
}

// Moves blocks between stream and buffer by `transfer`, which takes a number of bytes and returns
// how many it has moved.
template <class Transfer>
static void move_blocks(std::FILE *stream, std::int32_t first_block, std::int32_t block_count,
                        const Operation &operation, Transfer transfer)
{
    check_seek(std::fseek(stream, block_offset(first_block), SEEK_SET) == 0, operation, first_block,
               block_count);
    const auto expected = static_cast<std::int32_t>(wrapped_bytes(block_count));
    const std::size_t moved = expected < 0 ? 0 : transfer(static_cast<std::size_t>(expected));
    check_moved(moved, operation, expected);
    std::rewind(stream);
}

void mat_rblk(std::FILE *stream, std::int32_t first_block, void *buffer, std::int32_t block_count)
{
    move_blocks(stream, first_block, block_count, Reading,
                [&](std::size_t bytes) { return std::fread(buffer, 1, bytes, stream); });
}

std::int32_t mat_wblk(std::FILE *stream, std::int32_t first_block, const void *buffer,
                      std::int32_t block_count)
{
    move_blocks(stream, first_block, block_count, Writing,
                [&](std::size_t bytes) { return std::fwrite(buffer, 1, bytes, stream); });
    return 0;
}

std::int32_t mat_read_matrix_data(std::FILE *stream, std::int32_t first_block,
                                  std::int32_t block_count, void *buffer)
{
    mat_rblk(stream, first_block, buffer, block_count);
    return 0;
}

std::int64_t mat_locate_blocks(std::int64_t file_bytes, std::int32_t first_block,
                               std::int32_t block_count)
{
    const std::int64_t offset = block_offset(first_block);
    check_seek(offset >= 0, Reading, first_block, block_count);
    const auto expected = static_cast<std::int32_t>(wrapped_bytes(block_count));
    const std::int64_t in_file = std::max<std::int64_t>(file_bytes - offset, 0);
    check_moved(expected < 0 ? 0
                             : static_cast<std::size_t>(std::min<std::int64_t>(in_file, expected)),
                Reading, expected);
    return offset;
}

} // namespace velmorant
