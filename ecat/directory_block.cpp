#include "ecat/directory_block.h"

#include "image/byte_order.h"

namespace velmorant
{

static constexpr std::size_t WordBytes = sizeof(std::uint32_t);
using BlockWords = std::array<std::uint32_t, BlockBytes / WordBytes>;

DirectoryBlock fresh_directory_block(std::int32_t previous_block)
{
    return {.free_entries = DirectoryBlockEntries,
            .next_block = FirstDirectoryBlock,
            .previous_block = previous_block,
            .used_entries = 0,
            .entries = {}};
}

DirectoryBlock read_directory_block(std::FILE *stream, std::int32_t block_number)
{
    std::array<std::uint8_t, BlockBytes> bytes{};
    mat_rblk(stream, block_number, bytes.data(), 1);
    BlockWords words{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = load_word<std::endian::little, std::uint32_t>(&bytes[i * WordBytes]);
    }
    return std::bit_cast<DirectoryBlock>(words);
}

void write_directory_block(std::FILE *stream, std::int32_t block_number,
                           const DirectoryBlock &block)
{
    const auto words = std::bit_cast<BlockWords>(block);
    std::array<std::uint8_t, BlockBytes> bytes{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        store_word<std::endian::little>(&bytes[i * WordBytes], words[i]);
    }
    mat_wblk(stream, block_number, bytes.data(), 1);
}

} // namespace velmorant
