#include "ecat/headers.h"

namespace velmorant
{

namespace
{

// A word of a header block.
struct ConstantWord {
    std::size_t word;
    std::int16_t value;
};

using HeaderBlock = std::array<std::uint8_t, BlockBytes>;

} // namespace

static constexpr std::int32_t MainHeaderBlock = 1;

// What scan, attenuation and normalisation subheaders of this package hold where no field covers it.
// Nothing reads these words.
static constexpr ConstantWord ConstantWords[] = {
    {0, 256}, {1, 1},   {2, 22},  {3, -1},  {4, 25},  {5, 62},  {6, 79},   {7, 106},
    {24, 37}, {25, -1}, {61, 17}, {62, -1}, {78, 27}, {79, -1}, {105, 52}, {106, -1}};

static HeaderBlock block_of_constants()
{
    HeaderBlock block{};
    for (const ConstantWord &constant : ConstantWords) {
        Int16::store(&block.at(constant.word * Int16::Bytes), constant.value);
    }
    return block;
}

template <class Record, class Table>
static void read_fields(std::FILE *stream, std::int32_t block_number, Record &record,
                        const Table &table)
{
    HeaderBlock block{};
    mat_rblk(stream, block_number, block.data(), 1);
    decode_fields(block.data(), record, table);
}

// block: what the fields are put into.
template <class Record, class Table>
static std::int32_t write_fields(std::FILE *stream, std::int32_t block_number, const Record &record,
                                 const Table &table, HeaderBlock block)
{
    encode_fields(record, block.data(), table);
    return mat_wblk(stream, block_number, block.data(), 1);
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

std::int32_t mat_write_main_header(std::FILE *stream, const MatMainHeader &main_header)
{
    return write_fields(stream, MainHeaderBlock, main_header, MainHeaderFields, HeaderBlock{});
}

std::int32_t mat_write_image_subheader(std::FILE *stream, std::int32_t block_number,
                                       const MatImageSubheader &subheader)
{
    return write_fields(stream, block_number, subheader, ImageSubheaderFields, HeaderBlock{});
}

std::int32_t mat_write_scan_subheader(std::FILE *stream, std::int32_t block_number,
                                      const MatScanSubheader &subheader)
{
    return write_fields(stream, block_number, subheader, ScanSubheaderFields, block_of_constants());
}

std::int32_t mat_write_attn_subheader(std::FILE *stream, std::int32_t block_number,
                                      const MatAttnSubheader &subheader)
{
    return write_fields(stream, block_number, subheader, AttnSubheaderFields, block_of_constants());
}

std::int32_t mat_write_norm_subheader(std::FILE *stream, std::int32_t block_number,
                                      const MatNormSubheader &subheader)
{
    return write_fields(stream, block_number, subheader, NormSubheaderFields, block_of_constants());
}

} // namespace velmorant
