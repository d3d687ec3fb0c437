// Where the fields of the header blocks are. The records have the order of the blocks, every member
// is filled, and fields never overlap: so the ends of each run without gaps fix all between them. Names
// whose neighbours are stored alike are tied to their bytes here, or in the files that images become.

#include "ecat/headers.h"
#include "prefs/file_handle.h"
#include "tests/support/test.h"

#include <cstring>

using namespace velmorant;

// Byte i of each block; none is 0, and no float that two words make is too small to be written.
static int byte_at(int i)
{
    return i % 2 == 0 ? 1 + i % 251 : 0x40 + i / 2 % 64;
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

using Places = std::vector<std::ptrdiff_t>;

// The first byte of its block that each member of a record changes.
template <class Table, class Record, class... Values>
static Places places(const Table &table, Values Record::*...members)
{
    const auto place = [&](auto member) {
        Record record{};
        std::memset(&(record.*member), 0x40, sizeof(record.*member));
        std::array<std::uint8_t, 512> block{};
        encode_fields(record, block.data(), table);
        return std::ranges::find(block, 0x40) - block.begin();
    };
    return {place(members)...};
}

TEST(EcatHeaders, NamesHaveTheirPlaces)
{
    using Main = MatMainHeader;
    using Image = MatImageSubheader;
    using Scan = MatScanSubheader;
    EXPECT_EQ(places(MainHeaderFields, &Main::patient_height, &Main::patient_weight,
                     &Main::num_planes, &Main::num_frames, &Main::bed_offsets),
              (Places{233, 243, 376, 378, 388}));
    EXPECT_EQ(places(ImageSubheaderFields, &Image::recon_duration,
                     &Image::attenuation_matrix_number, &Image::image_rotation,
                     &Image::loss_correction_factor, &Image::quantification_units),
              (Places{208, 246, 296, 308, 380}));
    EXPECT_EQ(places(ScanSubheaderFields, &Scan::scan_min, &Scan::scan_max, &Scan::prompts,
                     &Scan::delayed, &Scan::net_trues, &Scan::loss_correction_factor),
              (Places{192, 194, 196, 200, 208, 464}));
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
        const char *begin = reinterpret_cast<const char *>(&member);
        const std::ptrdiff_t gap = begin - std::exchange(end, begin + sizeof(member));
        return gap >= 0 && gap < 4;
    };
    return std::apply([&](auto &...fields) { return (follows(record.*fields.member) && ...); },
                      table) &&
           reinterpret_cast<const char *>(&record + 1) - end < 4;
}

TEST(EcatHeaders, RecordsAreFilledMemberByMember)
{
    EXPECT_TRUE(fill_in_order(MainHeaderFields) && fill_in_order(ImageSubheaderFields));
    EXPECT_TRUE(fill_in_order(ScanSubheaderFields) && fill_in_order(AttnSubheaderFields));
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
}
