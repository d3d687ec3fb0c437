#include "ecat/headers.h"

namespace velmorant
{

static constexpr std::int32_t MainHeaderBlock = 1;

template <class Record, class Table>
static void read_fields(std::FILE *stream, std::int32_t block_number, Record &record,
                        const Table &table)
{
    std::array<std::uint8_t, BlockBytes> block{};
    mat_rblk(stream, block_number, block.data(), 1);
    decode_fields(block.data(), record, table);
}

std::int32_t mat_read_main_header(std::FILE *stream, MatMainHeader &main_header)
{
    read_fields(stream, MainHeaderBlock, main_header, MainHeaderFields);
    return 0;
}

void mat_read_image_subheader(std::FILE *stream, std::int32_t block_number,
                              MatImageSubheader &subheader)
{
    read_fields(stream, block_number, subheader, ImageSubheaderFields);
}

void mat_read_scan_subheader(std::FILE *stream, std::int32_t block_number,
                             MatScanSubheader &subheader)
{
    read_fields(stream, block_number, subheader, ScanSubheaderFields);
}

void mat_read_attn_subheader(std::FILE *stream, std::int32_t block_number,
                             MatAttnSubheader &subheader)
{
    read_fields(stream, block_number, subheader, AttnSubheaderFields);
}

void mat_read_norm_subheader(std::FILE *stream, std::int32_t block_number,
                             MatNormSubheader &subheader)
{
    read_fields(stream, block_number, subheader, NormSubheaderFields);
}

} // namespace velmorant
