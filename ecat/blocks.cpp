#include "ecat/blocks.h"

#include "prefs/end_run.h"

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

// Moves blocks between stream and buffer by `transfer`, which takes a number of bytes and returns
// how many it has moved. operation, verb, done: what the reports say.
template <class Transfer>
static void move_blocks(std::FILE *stream, std::int32_t first_block, std::int32_t block_count,
                        const char *operation, const char *verb, const char *done,
                        Transfer transfer)
{
    if (std::fseek(stream, block_offset(first_block), SEEK_SET) != 0) {
        std::printf("fseek error in %s (blkno %d, nblks %d)...\n", operation, first_block,
                    block_count);
        end_run(-1);
    }
    const auto expected = static_cast<std::int32_t>(wrapped_bytes(block_count));
    const std::size_t moved = expected < 0 ? 0 : transfer(static_cast<std::size_t>(expected));
    if (static_cast<std::int32_t>(moved) != expected) {
        std::printf("%s error in %s (%d expected, %d %s)...\n", verb, operation, expected,
                    static_cast<std::int32_t>(moved), done);
        end_run(-1);
    }
    std::rewind(stream);
}

void mat_rblk(std::FILE *stream, std::int32_t first_block, void *buffer, std::int32_t block_count)
{
    move_blocks(stream, first_block, block_count, "mat_rblk", "fread", "read",
                [&](std::size_t bytes) { return std::fread(buffer, 1, bytes, stream); });
}

std::int32_t mat_wblk(std::FILE *stream, std::int32_t first_block, const void *buffer,
                      std::int32_t block_count)
{
    move_blocks(stream, first_block, block_count, "mat_wblk", "fwrite", "written",
                [&](std::size_t bytes) { return std::fwrite(buffer, 1, bytes, stream); });
    return 0;
}

std::int32_t mat_read_matrix_data(std::FILE *stream, std::int32_t first_block,
                                  std::int32_t block_count, void *buffer)
{
    mat_rblk(stream, first_block, buffer, block_count);
    return 0;
}

} // namespace velmorant
