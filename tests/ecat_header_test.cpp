// Where the fields of the header blocks are. Since fields never overlap, the first and the last of
// each run without gaps fix all between them.

#include "ecat/headers.h"
#include "prefs/file_handle.h"
#include "tests/support/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <string>

using namespace velmorant;

// Byte i of each block; none is 0.
static std::uint32_t byte_at(int i)
{
    return 1U + static_cast<std::uint32_t>(i) % 251U;
}

static std::uint32_t word_at(int word)
{
    return byte_at(2 * word) + 256U * byte_at(2 * word + 1);
}

static void expect_at(int word, std::int16_t value)
{
    EXPECT_EQ(static_cast<std::uint16_t>(value), word_at(word)) << "word " << word;
}

static void expect_at(int word, std::int32_t value)
{
    EXPECT_EQ(static_cast<std::uint32_t>(value), word_at(word) + 65536U * word_at(word + 1))
        << "word " << word;
}

static void expect_at(int word, float value)
{
    const std::uint32_t first = word_at(word);
    const std::uint32_t exponent = (first / 128U - 2U) % 256U;
    EXPECT_EQ(std::bit_cast<std::uint32_t>(value),
              (first / 32768U << 31U) + (exponent << 23U) + first % 128U * 65536U + word_at(word + 1))
        << "word " << word;
}

template <std::size_t Width>
static void expect_text(int byte, const std::array<char, Width> &text)
{
    for (const char c : text) {
        EXPECT_EQ(static_cast<unsigned char>(c), byte_at(byte)) << "byte " << byte;
        ++byte;
    }
}

TEST(EcatHeaders, FieldsAreWhereTheyBelong)
{
    const test::EmptyFolder folder;
    std::string blocks(std::size_t{512} * 3, '\0');
    for (int i = 0; i < 512; ++i) {
        const auto place = static_cast<std::size_t>(i);
        blocks[place] = blocks[1024 + place] = static_cast<char>(byte_at(i));
    }
    test::write_file("h.v", blocks);
    const FileHandle stream(mat_open("h.v", "rb"));

    MatMainHeader main{};
    mat_read_main_header(stream.get(), main);
    expect_text(28, main.source_file_name);
    expect_text(223, main.patient_age);
    expect_at(194, main.bed_offsets[0]);
    expect_at(222, main.bed_offsets[14]);
    expect_text(462, main.user_process_code);

    MatImageSubheader image{};
    mat_read_image_subheader(stream.get(), 3, image);
    expect_at(63, image.data_type);
    expect_at(64, image.num_dimensions);
    expect_at(66, image.x_dimension);
    expect_at(67, image.y_dimension);
    expect_at(80, image.x_origin);
    expect_at(89, image.image_max);
    expect_at(92, image.pixel_size);
    expect_at(104, image.recon_duration);
    expect_at(118, image.filter_code);
    expect_at(123, image.attenuation_matrix_number);
    expect_at(148, image.image_rotation);
    expect_at(154, image.loss_correction_factor);
    expect_at(188, image.processing_code);
    expect_at(190, image.quantification_units);
    expect_text(420, image.annotation);

    MatScanSubheader scan{};
    mat_read_scan_subheader(stream.get(), 3, scan);
    expect_at(63, scan.data_type);
    expect_at(66, scan.x_dimension);
    expect_at(69, scan.processing_code);
    expect_at(73, scan.sample_distance);
    expect_at(83, scan.isotope_halflife);
    expect_at(88, scan.r_wave_offset);
    expect_at(91, scan.scale_factor);
    expect_at(96, scan.scan_min);
    expect_at(104, scan.net_trues);
    expect_at(158, scan.corrected_singles[0]);
    expect_at(232, scan.loss_correction_factor);

    MatAttnSubheader attn{};
    mat_read_attn_subheader(stream.get(), 3, attn);
    expect_at(63, attn.data_type);
    expect_at(64, attn.attenuation_type);
    expect_at(66, attn.x_dimension);
    expect_at(67, attn.y_dimension);
    expect_at(91, attn.scale_factor);
    expect_at(105, attn.sample_distance);

    MatNormSubheader norm{};
    mat_read_norm_subheader(stream.get(), 3, norm);
    expect_at(63, norm.data_type);
    expect_at(66, norm.x_dimension);
    expect_at(67, norm.y_dimension);
    expect_at(91, norm.scale_factor);
    expect_at(99, norm.fov_source_width);
}

TEST(EcatHeaders, TextEndsAtItsFirstZeroByte)
{
    std::array<std::uint8_t, 512> block{};
    std::copy_n("ab\0cd", 5, block.begin() + 162);
    MatMainHeader header{};
    header.study_name.fill('x');
    decode_fields(block.data(), header, MainHeaderFields);
    EXPECT_EQ(header.study_name, (std::array<char, 12>{'a', 'b'}));
}
