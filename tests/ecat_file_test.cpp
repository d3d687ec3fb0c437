// Blocks, numbers and directories of ECAT 6 files.

#include "ecat/blocks.h"
#include "ecat/directory_index.h"
#include "ecat/matrix_number.h"
#include "ecat/vax_numbers.h"
#include "prefs/file_handle.h"
#include "tests/support/test.h"

#include <climits>

using namespace velmorant;
using test::ending;

static FileHandle open_file(const test::EcatFile &file)
{
    test::write_file("f.v", file.bytes);
    return FileHandle(mat_open("f.v", "rb"));
}

// How the process ends where blocks can't be read as a whole.
static const std::string CutShort = "status 255: fread error in mat_rblk (";

TEST(VaxNumbers, HaveTheirWords)
{
    const struct {
        std::array<std::uint16_t, 2> words;
        std::uint32_t bits;
    } cases[] = {
        {{0xC080, 0x0000}, 0xBF800000}, // -1
        {{0x3F4C, 0xCCCD}, 0x3E4CCCCD}, // 0.2
        {{0x1F4F, 0xC8BC}, 0x1E4FC8BC}, // 1.1e-20
        {{0x0000, 0x0000}, 0x00000000}, // 0, unlike all other numbers of exponent 0
        {{0x0000, 0x0001}, 0x7F000001}, {{0x8000, 0x0000}, 0xFF000000},
        {{0x0100, 0x0001}, 0x00000001}, // exponent 2 is that of denormal numbers, written as 0
    };
    std::array<std::uint16_t, 2> found{};
    for (const auto &row : cases) {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(get_vax_float(row.words.data(), 0)), row.bits);
        sunftovaxf(found.data(), std::bit_cast<float>(row.bits));
        EXPECT_EQ(found, row.bits == 1 ? cases[3].words : row.words);
    }
    sunftovaxf(found.data(), -1e-20F);
    EXPECT_EQ(found, cases[3].words);
    const std::array<std::uint16_t, 3> words{0, 0x5678, 0x1234};
    EXPECT_EQ(get_vax_long(words.data(), 1), 0x12345678);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(get_vax_float(words.data(), 1)), 0x55781234U);
}

TEST(VaxNumbers, PairsAreSwapped)
{
    std::array<std::uint8_t, 6> bytes{1, 2, 3, 4, 5, 6};
    swabt(bytes.data(), bytes.data(), 3);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 6>{2, 1, 4, 3, 5, 6}));
    swabt(bytes.data(), bytes.data(), INT_MIN);
    const std::array<std::uint16_t, 6> source{1, 2, 3, 4, 5, 6};
    std::array<std::uint16_t, 6> words{};
    swaw(source.data(), words.data(), 4);
    EXPECT_EQ(words, (std::array<std::uint16_t, 6>{2, 1, 4, 3, 0, 0}));
}

TEST(MatrixNumber, PacksCoordinatesThatWrapAround)
{
    EXPECT_EQ(mat_numcod(5, 2, 1, 3, 2), 0xC1022005U);
    EXPECT_EQ(mat_numcod(-1, -1, -1, -1, -1), 0xFFFFFFFFU);
    std::array<std::int32_t, 5> coordinates{};
    mat_numdoc(0xC1022005, coordinates);
    EXPECT_EQ(coordinates, (std::array<std::int32_t, 5>{5, 2, 1, 3, 2}));
}

TEST(MatrixNumber, LongRunsAreShortenedToTheSameEnd)
{
    // Of 4096, 256, 64, 4 and 16 numbers: one round, the first again, and on to the one it ended at.
    const ImageMatrix found = shorten_runs({32767, 258, 1000, 9, 32768});
    EXPECT_EQ((std::array{found.frame, found.plane, found.gate, found.data, found.bed}),
              (std::array{8191, 258, 104, 5, 32}));
    const ImageMatrix kept = shorten_runs({4096, 0, -7, 1, 16});
    EXPECT_EQ((std::array{kept.frame, kept.plane, kept.gate, kept.data, kept.bed}),
              (std::array{4096, 0, -7, 1, 16}));
}

TEST(Blocks, AreReadOrEndTheProcess)
{
    test::EcatFile file;
    file.put(2, 0, "second");
    const FileHandle stream = open_file(file);
    std::string buffer(1024, 'x');
    mat_rblk(stream.get(), 2, buffer.data(), 1);
    EXPECT_TRUE(buffer.starts_with("second"));
    EXPECT_EQ(std::ftell(stream.get()), 0);
    EXPECT_EQ(mat_read_matrix_data(stream.get(), 1, 2, buffer.data()), 0);
    EXPECT_EQ(buffer, file.bytes);

    const struct {
        int block, count;
        std::string expected;
    } cases[] = {
        {1, -1, CutShort + "-512 expected, 0 read)...\n"},
        {0, 1, "status 255: fseek error in mat_rblk (blkno 0, nblks 1)...\n"},
        {8388609, 2, "status 77: "}, // the same bytes as block 1
    };
    for (const auto &row : cases) {
        EXPECT_EQ(ending([&] { mat_rblk(stream.get(), row.block, buffer.data(), row.count); }),
                  row.expected);
    }
}

TEST(Blocks, AreWrittenOrEndTheProcess)
{
    const std::string block(512, 'b');
    std::FILE *stream = mat_open("w.v", "w+b");
    EXPECT_EQ(mat_wblk(stream, 3, block.data(), 1), 0);
    EXPECT_EQ(std::ftell(stream), 0);
    EXPECT_EQ(test::read_file("w.v"), std::string(1024, '\0') + block);
    EXPECT_EQ(ending([&] { mat_wblk(stream, 0, block.data(), 1); }),
              "status 255: fseek error in mat_wblk (blkno 0, nblks 1)...\n");
    mat_close(stream);
    const FileHandle read_only(mat_open("w.v", "rb"));
    EXPECT_EQ(ending([&] { mat_wblk(read_only.get(), 1, block.data(), 1); }),
              "status 255: fwrite error in mat_wblk (512 expected, 0 written)...\n");
}

// A directory of blocks 2, 40, 1 and 39, whose counts are wrong.
static test::EcatFile chained_directory()
{
    test::EcatFile file;
    file.put32(2, 0, {29, 40, 0, 2, 11, 100, 200, 1, 0, 0, 0, 0, 12, 101, 201, 0});
    file.put32(40, 0, {31, 1, 2, 0});
    file.put32(40, 496, {13, 102, 202, -1}); // the 31st entry
    file.put32(1, 0, {31, 39, 40, 0});
    file.put32(39, 0, {30, 2, 1, 1, 12, 103, 203, 1, -1, 104, 204, 1, 14, 105, 205, 1});
    file.put32(3, 0, {31, 2, 0, 0, 15, 106, 206, 1}); // no link leads here
    return file;
}

static std::array<std::int32_t, 4> words(const MatDirEntry &entry)
{
    return {entry.matrix_number, entry.first_block, entry.last_block, entry.status};
}

TEST(Directory, IsWalkedAlongItsLinks)
{
    const FileHandle stream = open_file(chained_directory());
    DirectoryIndex index(stream.get());
    MatDirEntry entry{};
    // The index is asked for the chain's last entry first.
    const std::array<std::int32_t, 4> found[] = {{14, 105, 205, 1},
                                                 {-1, 104, 204, 1},
                                                 {11, 100, 200, 1},
                                                 {12, 101, 201, 0},
                                                 {13, 102, 202, -1}};
    for (const auto &expected : found) {
        const auto sought = static_cast<std::uint32_t>(expected[0]);
        EXPECT_EQ(mat_lookup(stream.get(), sought, entry), 1);
        EXPECT_EQ(words(entry), expected);
        EXPECT_EQ(words(*index.find(sought)), expected);
    }
    const MatDirList list = mat_read_dir(stream.get());
    EXPECT_EQ(list.used_entries, 6);
    ASSERT_EQ(list.entries.size(), 124U);
    EXPECT_EQ(words(list.entries[61]), found[4]);
    std::array<MatDirEntry, 4> used{};
    EXPECT_EQ(mat_list(stream.get(), used), 6);
    EXPECT_EQ(words(used[2]), found[4]);
    EXPECT_EQ(used[3].first_block, 103);
}

TEST(Directory, EndsWhereItsLinksGoAstray)
{
    // What a link of block 39 leads to, for whoever looks beyond. The first two close a circle.
    const std::pair<std::int32_t, std::string> cases[] = {
        {39, "status 77: "}, {2, "status 77: "}, {41, CutShort + "512 expected, 0 read)...\n"}};
    for (const auto &[link, expected] : cases) {
        test::EcatFile file = chained_directory();
        file.put32(39, 4, {link});
        const FileHandle stream = open_file(file);
        MatDirEntry entry{};
        EXPECT_NE(DirectoryIndex(stream.get()).find(14), nullptr);
        EXPECT_EQ(ending([&] { EXPECT_EQ(mat_lookup(stream.get(), 15, entry), 0); }), expected);
        EXPECT_EQ(ending([&] { EXPECT_EQ(DirectoryIndex(stream.get()).find(15), nullptr); }),
                  expected);
    }
}
