// Where the fields of the header blocks are. The records have the order of the blocks, every member
// is filled, and fields never overlap: so the ends of each run without gaps fix all between them.

#include "ecat/headers.h"
#include "prefs/file_handle.h"
#include "tests/support/test.h"

#include <variant>

using namespace velmorant;

// Byte i of each block; none is 0, and no float that two words make is too small to be written.
static int byte_at(int i)
{
    return i % 2 == 0 ? 1 + i % 251 : 0x40 + i / 2 % 64;
}

static std::uint16_t word_at(int word)
{
    return static_cast<std::uint16_t>(byte_at(2 * word) + 256 * byte_at(2 * word + 1));
}

// A number that the words of the block from this one on are decoded to.
static std::int32_t expected(int word, std::int16_t)
{
    return static_cast<std::int16_t>(word_at(word));
}

static std::int32_t expected(int word, std::int32_t)
{
    return get_vax_long(std::array{word_at(word), word_at(word + 1)}.data(), 0);
}

static float expected(int word, float)
{
    return get_vax_float(std::array{word_at(word), word_at(word + 1)}.data(), 0);
}

using AnyNumber = std::variant<std::int16_t, std::int32_t, float>;

static void expect_at(const std::vector<std::pair<int, AnyNumber>> &numbers)
{
    for (const auto &[first, number] : numbers) {
        const int word = first;
        std::visit([word](auto value) { EXPECT_EQ(value, expected(word, value)) << word; }, number);
    }
}

template <std::size_t Width>
static void expect_text(int byte, const std::array<char, Width> &text)
{
    for (const char c : text) {
        EXPECT_EQ(static_cast<unsigned char>(c), byte_at(byte)) << "byte " << byte;
        ++byte;
    }
}

// A block that has these bytes in the runs from one place to before another, elsewhere these words,
// and else 0.
static std::string make_block(const std::vector<std::pair<int, int>> &runs,
                              const std::vector<std::pair<int, std::int64_t>> &words = {})
{
    test::EcatFile file;
    file.put(1, 0, "");
    for (const auto &[word, value] : words) {
        file.put16(1, 2 * word, {value});
    }
    for (const auto &[from, to] : runs) {
        for (int i = from; i < to; ++i) {
            file.put(1, i, std::string(1, static_cast<char>(byte_at(i))));
        }
    }
    return file.bytes;
}

TEST(EcatHeaders, FieldsAreWhereTheyBelong)
{
    const std::string block = make_block({{0, 512}});
    test::write_file("h.v", block + std::string(512, '\0') + block);
    const FileHandle stream(mat_open("h.v", "rb"));

    // clang-format off
    MatMainHeader main{};
    mat_read_main_header(stream.get(), main);
    expect_text(28, main.source_file_name);
    expect_text(223, main.patient_age);
    expect_at({{194, main.bed_offsets[0]}, {222, main.bed_offsets[14]}});
    expect_text(462, main.user_process_code);

    MatImageSubheader image{};
    mat_read_image_subheader(stream.get(), 3, image);
    expect_at({{63, image.data_type}, {64, image.num_dimensions}, {66, image.x_dimension},
               {67, image.y_dimension}, {80, image.x_origin}, {89, image.image_max},
               {92, image.pixel_size}, {104, image.recon_duration}, {118, image.filter_code},
               {123, image.attenuation_matrix_number}, {148, image.image_rotation},
               {154, image.loss_correction_factor}, {188, image.processing_code},
               {190, image.quantification_units}});
    expect_text(420, image.annotation);
    // clang-format on
}

// Reads a header from block 1 and writes it to block 2, which it returns.
template <class Record>
static std::string rewrite(std::FILE *stream, void (*read)(std::FILE *, std::int32_t, Record &),
                           std::int32_t (*write)(std::FILE *, std::int32_t, const Record &))
{
    Record record{};
    read(stream, 1, record);
    EXPECT_EQ(write(stream, 2, record), 0);
    return test::read_file("h.v").substr(512);
}

TEST(EcatHeaders, FieldsAreWrittenWhereTheyWereRead)
{
    test::write_file("h.v", make_block({{0, 512}}));
    const FileHandle stream(mat_open("h.v", "r+b"));
    // clang-format off
    const std::vector<std::pair<int, std::int64_t>> words{
        {0, 256}, {1, 1}, {2, 22}, {3, -1}, {4, 25}, {5, 62}, {6, 79}, {7, 106}, {24, 37}, {25, -1},
        {61, 17}, {62, -1}, {78, 27}, {79, -1}, {105, 52}, {106, -1}};
    EXPECT_EQ(rewrite(stream.get(), mat_read_image_subheader, mat_write_image_subheader),
              make_block({{126, 130}, {132, 136}, {160, 180}, {184, 212}, {236, 250}, {296, 312},
                          {376, 378}, {380, 460}}));
    EXPECT_EQ(rewrite(stream.get(), mat_read_scan_subheader, mat_write_scan_subheader),
              make_block({{126, 128}, {132, 140}, {146, 150}, {166, 180}, {182, 186}, {192, 212},
                          {316, 468}}, words));
    EXPECT_EQ(rewrite(stream.get(), mat_read_attn_subheader, mat_write_attn_subheader),
              make_block({{126, 130}, {132, 136}, {182, 214}}, words));
    EXPECT_EQ(rewrite(stream.get(), mat_read_norm_subheader, mat_write_norm_subheader),
              make_block({{126, 128}, {132, 136}, {182, 202}}, words));
    // clang-format on
    MatMainHeader main{};
    mat_read_main_header(stream.get(), main);
    EXPECT_EQ(mat_write_main_header(stream.get(), main), 0);
    EXPECT_EQ(test::read_file("h.v").substr(0, 512), make_block({{28, 472}}));
}

// Whether the rows fill every member of the record, one after the other; at most alignment is
// between them.
template <class Record, class... Types>
static bool fill_in_order(const std::tuple<HeaderField<Types, Record>...> &table)
{
    Record record{};
    const char *end = reinterpret_cast<const char *>(&record);
    const auto follows = [&end](const auto &member) {
        const std::ptrdiff_t gap = reinterpret_cast<const char *>(&member) - end;
        end += gap + static_cast<std::ptrdiff_t>(sizeof(member));
        return gap >= 0 && gap < 4;
    };
    const auto all_follow = [&](const HeaderField<Types, Record> &...fields) {
        return (follows(record.*fields.member) && ...);
    };
    return std::apply(all_follow, table) && reinterpret_cast<const char *>(&record + 1) - end < 4;
}

TEST(EcatHeaders, RecordsAreFilledMemberByMember)
{
    EXPECT_TRUE(fill_in_order(MainHeaderFields));
    EXPECT_TRUE(fill_in_order(ImageSubheaderFields));
    EXPECT_TRUE(fill_in_order(ScanSubheaderFields));
    EXPECT_TRUE(fill_in_order(AttnSubheaderFields));
    EXPECT_TRUE(fill_in_order(NormSubheaderFields));
}

TEST(EcatHeaders, TextEndsAtItsFirstZeroByte)
{
    std::array<std::uint8_t, 512> block{};
    std::copy_n("ab\0cd", 5, block.begin() + 162);
    MatMainHeader header{};
    header.study_name.fill('x');
    decode_fields(block.data(), header, MainHeaderFields);
    EXPECT_EQ(header.study_name, (std::array<char, 12>{'a', 'b'}));
    // Written are all bytes of the record, whatever comes before them.
    header.study_name = {'x', '\0', 'y'};
    encode_fields(header, block.data(), MainHeaderFields);
    EXPECT_EQ(std::string(block.begin() + 162, block.begin() + 174),
              std::string("x\0y\0\0\0\0\0\0\0\0\0", 12));
}
