// ECAT 6 files that are written: directories, matrices and images.

#include "ecat/directory.h"
#include "ecat/image_writer.h"
#include "ecat/matrix_file.h"
#include "ecat/matrix_writer.h"
#include "image/cutoff.h"
#include "image/old_layout.h"
#include "prefs/file_handle.h"
#include "prefs/settings.h"
#include "tests/support/test.h"

#include <ctime>

using namespace velmorant;
using test::ending;

static FileHandle create_file()
{
    return FileHandle(mat_create("f.v", {}));
}

static std::string read_block(int block)
{
    return test::read_file("f.v").substr(static_cast<std::size_t>(block - 1) * 512, 512);
}

TEST(MatrixFile, BeginsWithAMainHeaderAndAnEmptyDirectory)
{
    MatMainHeader main_header{};
    main_header.num_planes = 0x1234;
    test::EcatFile expected;
    expected.put16(1, 376, {0x1234});
    expected.put32(2, 0, {31, 2});
    for (const auto create : {mat_create, mat_create_backup}) {
        test::write_file("f.v", std::string(5000, 'x'));
        const FileHandle stream(create("f.v", main_header));
        EXPECT_EQ(test::read_file("f.v"), expected.bytes);
        EXPECT_EQ(mat_enter(stream.get(), 7, 0), 3) << "read and written";
    }
}

static void expect_directory(int block, const std::vector<std::int64_t> &words)
{
    const std::string expected = test::stored_integers(words, 4, false);
    EXPECT_EQ(read_block(block).substr(0, expected.size()), expected) << block;
}

TEST(MatrixEntry, FollowsTheOneBeforeOrKeepsItsPlace)
{
    const FileHandle stream = create_file();
    const struct {
        std::uint32_t number;
        std::int32_t data_blocks, first_block;
        std::vector<std::int64_t> directory;
    } steps[] = {
        {11, 2, 3, {30, 2, 0, 1, 11, 3, 5, 1, 0}},
        {12, 2, 6, {29, 2, 0, 2, 11, 3, 5, 1, 12, 6, 8, 1, 0}},
        {11, 3, 3, {29, 2, 0, 2, 11, 3, 6, 1, 12, 6, 8, 1, 0}}, // into its subheader's block
        {11, 0, 3, {29, 2, 0, 2, 11, 3, 3, 1, 12, 6, 8, 1, 0}},
        {11, 2, 9, {28, 2, 0, 3, -1, 3, 3, 1, 12, 6, 8, 1, 11, 9, 11, 1, 0}}};
    for (const auto &step : steps) {
        EXPECT_EQ(mat_enter(stream.get(), step.number, step.data_blocks), step.first_block);
        expect_directory(2, step.directory);
    }
    for (std::uint32_t number = 13; number <= 40; ++number) {
        mat_enter(stream.get(), number, 0); // at blocks 12 to 39
    }
    EXPECT_EQ(enter_matrix(stream.get(), 41, 1, 2).directory_block, 40);
    // A matrix that outgrows its place in the first block moves into the last one.
    EXPECT_EQ(mat_enter(stream.get(), 11, 4), 43);
    expect_directory(2, {0, 40, 0, 31, -1, 3, 3, 1, 12, 6, 8, 1, -1, 9, 11, 1, 13});
    expect_directory(40, {29, 2, 2, 2, 41, 41, 42, 1, 11, 43, 47, 1, 0});
    EXPECT_EQ(enter_matrix(stream.get(), 12, 0, 40).first_block, 48) << "not looked for before";
}

TEST(MatrixEntry, EndsInADamagedDirectory)
{
    test::EcatFile file;
    for (int i = 0; i < 31; ++i) {
        file.put32(2, 16 + 16 * i, {99, 3, 5, 1});
        file.put32(3, 16 + 16 * i, {99, 3, 5, 1});
    }
    file.put32(2, 0, {0, 3, 2, 31});
    file.put32(3, 0, {0, 3, 2, 31}); // links to itself
    test::write_file("f.v", file.bytes);
    {
        const FileHandle stream(mat_open("f.v", "r+b"));
        EXPECT_EQ(mat_enter(stream.get(), 11, 1), 7);
        expect_directory(3, {0, 6});
        expect_directory(6, {30, 2, 3, 1, 11, 7, 8, 1, 0});
    }
    // Blocks that no file has: their numbers wrap around.
    file.put32(2, 0, {1, 2, 0, 30, 11, INT32_MIN, INT32_MAX, 0, 12, 5, INT32_MAX - 1, 0, 0});
    test::write_file("f.v", file.bytes);
    const FileHandle stream(mat_open("f.v", "r+b"));
    EXPECT_EQ(mat_enter(stream.get(), 11, INT32_MAX), INT32_MIN);
    EXPECT_EQ(mat_enter(stream.get(), 13, 5), INT32_MAX);
    expect_directory(2, {0, 2, 0, 31, 11, INT32_MIN, -1, 1, 12, 5, INT32_MAX - 1, 0, 13, INT32_MAX,
                         INT32_MIN + 4, 1});
}

template <class Subheader>
static Subheader of_width(std::int16_t width)
{
    Subheader subheader{};
    subheader.x_dimension = width;
    return subheader;
}

TEST(MatrixData, FollowTheirSubheader)
{
    const std::vector<std::int16_t> integers(257, 0x1234);
    std::vector<float> floats(129, 1.0F);
    floats.back() = -0.2F;
    const FileHandle stream = create_file();
    mat_write_image(stream.get(), 11, {}, integers);
    mat_write_scan(stream.get(), 12, of_width<MatScanSubheader>(6), std::span(integers).last(1));
    mat_write_attn(stream.get(), 13, of_width<MatAttnSubheader>(7), floats);
    mat_write_norm(stream.get(), 14, of_width<MatNormSubheader>(8), std::span(floats).last(1));
    // What is left of a block is zero, where there was something else, too.
    mat_write_image(stream.get(), 11, of_width<MatImageSubheader>(9), std::span(integers).first(3));

    expect_directory(2, {27, 2, 0, 4, 11, 3, 4, 1, 12, 6, 7, 1, 13, 8, 10, 1, 14, 11, 12, 1, 0});
    const std::vector<std::int64_t> one{0x1234};
    const std::vector<std::int64_t> minus_fifth{0xBF4C, 0xCCCD};
    const std::pair<int, std::vector<std::int64_t>> blocks[] = {
        {4, {0x1234, 0x1234, 0x1234}}, {7, one}, {10, minus_fifth}, {12, minus_fifth}};
    for (const auto &[block, words] : blocks) {
        test::EcatFile expected;
        expected.put16(1, 0, words);
        EXPECT_EQ(read_block(block), expected.bytes) << block;
    }
    EXPECT_EQ(read_block(9).substr(508), std::string("\x80\x40\0\0", 4));
    for (const auto &[block, width] : {std::pair{3, 9}, {6, 6}, {8, 7}, {11, 8}}) {
        EXPECT_EQ(read_block(block)[132], width) << block;
    }
}

// A header of 2 frames, 2 beds and 2 slices of 3 x 1 pixels.
static ImageHeader small_header()
{
    ImageHeader header{};
    convert_header_old_to_new({2, 2, 5, 6, 1, 3, 1}, {20.0F, 40.0F}, header);
    return header;
}

// The date as day, month and year in a header.
static std::string today()
{
    const std::time_t now = std::time(nullptr);
    const std::tm date = *std::localtime(&now);
    return test::stored_integers({date.tm_mday, date.tm_mon + 1, date.tm_year + 1900}, 2, false);
}

// The file that is made for the small header, with empty planes; all is put to its byte.
static test::EcatFile small_file(const std::string &source, const std::string &date,
                                 const std::string &annotation)
{
    test::EcatFile file;
    // clang-format off
    for (const auto &[byte, text] : {std::pair<int, std::string>
             {28, source}, {56, "n/a"}, {66, date}, {78, "n/a"}, {90, "n/a"}, {162, "VELMORANT"},
             {190, "Computer Generated"}, {222, "U0"}, {233, "0"}, {243, "0"}, {253, "UOrlavesk Tarn"},
             {286, "n/a"}, {318, "VELMORANT Analysis"}, {356, "Hollin Centre"}, {462, "n/a"}}) {
        file.put(1, byte, text);
    }
    // clang-format on
    file.put16(1, 48, {2, 2, 0, 2});
    file.put16(1, 86, {0x4080, 0}); // half-life 1
    file.put16(1, 376, {2, 2, 5, 1});
    file.put16(1, 448, {0x4180, 0}); // planes 4 cm apart
    std::vector<std::int64_t> directory{23, 2, 0, 8};
    int block = 3;
    for (const std::int64_t frame_and_bed : {0x0001, 0x1001, 0x0002, 0x1002}) {
        for (const std::int64_t plane : {0x01010000, 0x01020000}) {
            directory.insert(directory.end(), {plane + frame_and_bed, block, block + 1, 1});
            file.put16(block, 126, {2, 2, 0, 3, 1});
            file.put16(block, 160, {0x4080, 0, 0, 0, 0x4080, 0}); // origin (1, 0), zoom 1
            file.put16(block, 184, {0x4100, 0, 0x4180, 0, 1});    // 2 cm, 4 cm, 1 s
            file.put(block, 420, annotation);
            file.put(block + 1, 0, "");
            block += 2;
        }
    }
    file.put32(2, 0, directory);
    return file;
}

// Of a source file's name the first 18 characters are kept.
static constexpr const char *LongName = "a-long-file-name.image";

TEST(EcatImageWriter, StoresEachPlaneInItsOwnScale)
{
    // Half a unit is rounded up above 0, and toward 0 below.
    const struct {
        std::array<float, 3> pixels;
        std::int64_t scale; // the VAX number's first word
        std::vector<std::int64_t> stored;
    } planes[] = {
        {{100, -300, -250}, 0x4140, {33, -99, -82}}, // 3, by the lowest: 33.3, -100 and -83.3
        {{0, -500, -501}, 0x41A0, {0, -99, 15}},     // 5, and -501 replaced by 75
        {{0, 0, 0}, 0, {0, 0, 0}},
        {{-50, -50, test::NotANumber}, 0xC000, {100, 100, 0}}, // -0.5, by the highest
        {{400, 202, 199}, 0x4180, {100, 51, 50}},              // 4: 50.5 and 49.75
        {{test::Infinity, 1, test::NotANumber}, 0x0080, {0, 0, 0}},
        {{1e-19F, 0, 5e-20F}, 0, {0, 0, 0}},
        {{1, 50, 100}, 0x4080, {1, 50, 100}}, // 1
    };
    std::vector<float> image;
    for (const auto &plane : planes) {
        image.insert(image.end(), plane.pixels.begin(), plane.pixels.end());
    }
    INT_MaxPixelValue = 100;
    const std::string before = today();
    EXPECT_EQ(write_image_matrix_cti6(LongName, image.data(), small_header(), -500, 75), 0);
    const std::string date = test::read_file(LongName).substr(66, 6);
    EXPECT_TRUE(date == before || date == today());

    test::EcatFile expected = small_file("a-long-file-name.i", date, "VELMORANT");
    int block = 3;
    for (const auto &plane : planes) {
        expected.put16(block, 172, {plane.scale, 0, 0, 100}); // and the integers' range
        expected.put16(block + 1, 0, plane.stored);
        block += 2;
    }
    EXPECT_EQ(test::read_file(LongName), expected.bytes);

    // Squares that are too large for single precision, and quotients for an integer.
    image = {5, -2e19F, 0, -3e38F, -1e30F, -1e32F};
    image.resize(24);
    write_image_matrix_cti6("f.v", image.data(), small_header(), KeepAll, 0);
    EXPECT_EQ(read_block(3).substr(172, 4), std::string("\x80\0\0\0", 4)) << "infinity";
    EXPECT_EQ(read_block(6).substr(0, 6), test::stored_integers({0, 100, 10000}, 2, false));
}

TEST(EcatImageWriter, CreatesFilesOfEmptyPlanes)
{
    ImageHeader header = small_header();
    header.y_dim = 4;
    header.pixel_size_y = 7.0F;
    EXPECT_EQ(create_image_matrix_cti6(LongName, header), 0);
    const std::string found = test::read_file(LongName);
    test::EcatFile expected =
        small_file(std::string("n/a\0ng-file-name.i", 18), found.substr(66, 6), "processed");
    for (int block = 3; block < 19; block += 2) {
        expected.put16(block, 134, {4});
        expected.put16(block, 164, {0x4100, 0}); // the middle row, 2
        expected.put16(block, 172, {0x4080, 0, 0, 0});
        expected.put16(block, 236, {2});
        expected.put16(block, 376, {1});
        expected.put16(block, 382, {1});
    }
    EXPECT_EQ(found, expected.bytes);
}

TEST(EcatImageWriter, CoordinatesThatWrapAroundTakeTheOthersPlaces)
{
    INT_MaxPixelValue = 1;
    // The number of matrices that differ, of which the next one replaces the first.
    const struct {
        std::int32_t frames, beds_after_first, slices, matrices;
        bool replaces;
    } cases[] = {{1, 16, 2, 32, true},    {1, 15, 1, 16, false},    {1, 0, 257, 256, true},
                 {1, 0, 256, 256, false}, {4097, 0, 1, 4096, true}, {4096, 0, 1, 4096, false},
                 {-1, 0, 1, 0, false}};
    for (const auto &row : cases) {
        ImageHeader header = small_header();
        header.num_frames = row.frames;
        header.num_beds = row.beds_after_first;
        header.num_slices = row.slices;
        std::vector<float> image(std::size_t{3} * 4097);
        image[3 * static_cast<std::size_t>(row.matrices)] = 1.0F;
        write_image_matrix_cti6("f.v", image.data(), header, 0, 0);
        const FileHandle stream(mat_open("f.v", "rb"));
        EXPECT_EQ(mat_list(stream.get(), {}), row.matrices) << row.frames;
        EXPECT_EQ(row.replaces, row.matrices > 0 && read_block(4)[0] == '\1') << row.frames;
    }
}

TEST(EcatImageWriter, WhatCanNotBeWrittenEndsTheRun)
{
    ImageHeader header = small_header();
    EXPECT_EQ(ending([&] { create_image_matrix_cti6("none/f.v", header); }),
              "status 0: can't open none/f.v\n");
    header.x_dim = -1;
    EXPECT_EQ(ending([&] { create_image_matrix_cti6("f.v", header); }),
              "status 0: illegal image dimensions -1 x 1 x 2\n");
    EXPECT_FALSE(std::filesystem::exists("f.v"));
}
