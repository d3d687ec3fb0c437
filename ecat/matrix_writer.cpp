#include "ecat/matrix_writer.h"

#include "ecat/header_fields.h"
#include "ecat/headers.h"
#include "prefs/numbers.h"

#include <algorithm>
#include <array>

namespace velmorant
{

static std::int32_t data_block_count(std::size_t data_bytes)
{
    return static_cast<std::int32_t>((data_bytes + BlockBytes - 1) / BlockBytes);
}

// Writes the data block by block. Type: how a value is stored, see ecat/header_fields.h.
template <class Type>
static void write_data(std::FILE *stream, std::int32_t block_number,
                       std::span<const typename Type::Value> data)
{
    constexpr std::size_t BlockValues = BlockBytes / Type::Bytes;
    while (!data.empty()) {
        std::array<std::uint8_t, BlockBytes> block{};
        const auto values = data.first(std::min(data.size(), BlockValues));
        for (std::size_t i = 0; i < values.size(); ++i) {
            Type::store(&block[i * Type::Bytes], values[i]);
        }
        mat_wblk(stream, block_number, block.data(), 1);
        block_number = wrap_add(block_number, 1);
        data = data.subspan(values.size());
    }
}

void mat_write_idata(std::FILE *stream, std::int32_t first_block,
                     std::span<const std::int16_t> data)
{
    write_data<Int16>(stream, first_block, data);
}

void mat_write_fdata(std::FILE *stream, std::int32_t first_block, std::span<const float> data)
{
    write_data<VaxFloat>(stream, first_block, data);
}

// Enters a matrix and writes its subheader and its data by the given procedures.
template <class Subheader, class Value>
static MatrixPlace write_matrix(std::FILE *stream, std::uint32_t matrix_number,
                                const Subheader &subheader, std::span<const Value> data,
                                auto write_subheader, auto write_values,
                                std::int32_t directory_block = FirstDirectoryBlock)
{
    const MatrixPlace place =
        enter_matrix(stream, matrix_number, data_block_count(data.size_bytes()), directory_block);
    write_subheader(stream, place.first_block, subheader);
    write_values(stream, wrap_add(place.first_block, 1), data);
    return place;
}

MatrixPlace write_new_image(std::FILE *stream, std::uint32_t matrix_number,
                            const MatImageSubheader &subheader, std::span<const std::int16_t> data,
                            std::int32_t directory_block)
{
    return write_matrix(stream, matrix_number, subheader, data, mat_write_image_subheader,
                        mat_write_idata, directory_block);
}

void mat_write_image(std::FILE *stream, std::uint32_t matrix_number,
                     const MatImageSubheader &subheader, std::span<const std::int16_t> data)
{
    write_new_image(stream, matrix_number, subheader, data, FirstDirectoryBlock);
}

void mat_write_scan(std::FILE *stream, std::uint32_t matrix_number,
                    const MatScanSubheader &subheader, std::span<const std::int16_t> data)
{
    write_matrix(stream, matrix_number, subheader, data, mat_write_scan_subheader, mat_write_idata);
}

void mat_write_attn(std::FILE *stream, std::uint32_t matrix_number,
                    const MatAttnSubheader &subheader, std::span<const float> data)
{
    write_matrix(stream, matrix_number, subheader, data, mat_write_attn_subheader, mat_write_fdata);
}

void mat_write_norm(std::FILE *stream, std::uint32_t matrix_number,
                    const MatNormSubheader &subheader, std::span<const float> data)
{
    write_matrix(stream, matrix_number, subheader, data, mat_write_norm_subheader, mat_write_fdata);
}

} // namespace velmorant
