// Images out of ECAT 6 files.

#include "ecat/image_reader.h"
#include "image/format_dispatch.h"
#include "tests/support/test.h"

using namespace velmorant;
using test::ending;

static ImageHeader read_small_header()
{
    ImageHeader header{};
    read_header_cti6("s.v", header);
    return header;
}

TEST(EcatImage, HeaderIsMadeOfTheMainHeaderAndAllSubheaders)
{
    test::EcatFile file = test::small_ecat_study();
    test::write_file("s.v", file.bytes);
    ImageHeader header{9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9};
    read_header("s.v", header, "CTI6");
    const ImageHeader expected{2, 3, 1, 0, 1, 20, 26, 10 * 0.2F, 10 * 0.2F, 10 * 0.3375F,
                               9, 1, 1, 1, 0, 1,  9};
    EXPECT_EQ(test::fields(header), test::fields(expected));

    // Beds outermost: frame 1 of bed 1 is missed before frame 2's pixel size is found wrong.
    file.put32(2, 16 + 16 * 4, {0x01021009}); // another frame's number on bed 1, plane 2
    file.put16(test::small_ecat_block(2, 1, 1), 184, {0, 0});
    test::write_file("s.v", file.bytes);
    EXPECT_EQ(ending(read_small_header), "status 77: matrix (1,2,1,0,1) not found...\n"
                                         "CHECK A POSSIBLE PROBLEM IN THE MAIN HEADER...\n"
                                         "THE PROGRAM MAY FAIL IN THE FURTHER PROCESSING...\n");
    EXPECT_EQ(read_small_header().x_dim, 20);
}

// The values that a reader leaves in a buffer of `count` floats.
template <class Reader>
static std::vector<float> read_with(Reader reader, const ImageMatrix &selector, std::size_t count)
{
    std::vector<float> pixels(count, -1.0F);
    reader("s.v", pixels.data(), read_small_header(), selector);
    return pixels;
}

TEST(EcatImage, PlanesOfOneFrameAndBedAreRead)
{
    test::EcatFile file = test::small_ecat_study();
    test::write_file("s.v", file.bytes);
    EXPECT_EQ(read_with(read_image_planes_cti6, {1, 1, 1, 0, 1}, 1560),
              test::small_ecat_planes(1, 1, 1));
    EXPECT_EQ(read_with(read_image_planes_cti6, {2, 3, 1, 0, 0}, 520),
              test::small_ecat_planes(2, 3, 0));

    const int block = test::small_ecat_block(2, 3, 0);
    file.put16(block, 172, {0x4080, 0});
    file.put(block + 1, 0, test::stored_integers({0x1234, -2}, 2, true));
    test::write_file("s.v", file.bytes);
    const std::vector<float> swapped =
        read_with(read_image_planes_cti6_swap_byte_order, {2, 3, 1, 0, 0}, 520);
    EXPECT_EQ((std::array{swapped[0], swapped[1], swapped[511], swapped[512], swapped[519]}),
              (std::array{4660.0F, -2.0F, static_cast<float>(0x6302), 0.0F, 0.0F})); // 0x6302: 611
}

TEST(EcatImage, ManyVolumesAreReadBedByBedWithinAFrame)
{
    test::write_file("s.v", test::small_ecat_study().bytes);
    std::vector<float> expected;
    for (const auto &[frame, bed] : {std::pair{1, 0}, {1, 1}, {2, 0}, {2, 1}}) {
        const std::vector<float> planes = test::small_ecat_planes(frame, 2, bed);
        expected.insert(expected.end(), planes.begin(), planes.end());
    }
    EXPECT_EQ(read_with(read_image_matrix_cti6, {1, 2, 1, 0, 0}, 4160), expected);
    EXPECT_EQ(read_with(read_image_matrix_cti6, {2, 2, 1, 0, 1}, 1040),
              test::small_ecat_planes(2, 2, 1));
}

TEST(EcatImage, PlanesThatCanNotBeReadEndTheRun)
{
    test::EcatFile file = test::small_ecat_study();
    file.put32(2, 16 + 16 * 2, {0});             // plane 3 of frame 1, bed 0
    file.put32(2, 16 + 16 * 5 + 4, {37});        // bed 1's begins at the file's last block but one,
    file.put32(2, 16 + 16 * 8 + 4, {INT32_MAX}); // frame 2's one that no file has
    test::write_file("s.v", file.bytes);
    std::vector<float> pixels(6240);
    const ImageHeader header{2, 3, 1, 0, 1, 20, 26, 2, 2, 3, 0, 1, 1, 1, 0, 1, 1};
    const std::pair<ImageMatrix, std::string> cases[] = {
        {{1, 1, 1, 0, 0}, "matrix (1,3,1,0,0) not found..."},
        {{1, 1, 1, 3, 0}, "matrix (1,1,1,3,0) not found..."},
        {{1, 1, 1, 0, 1}, "fread error in mat_rblk (1024 expected, 512 read)...\n"},
        {{2, 1, 1, 0, 0}, "fseek error in mat_rblk (blkno 2147483647, nblks 1)...\n"},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(ending([&] { read_image_planes_cti6("s.v", pixels.data(), header, row.first); }),
                  "status 255: " + row.second);
    }
    EXPECT_EQ(ending([&] { read_image_matrix_cti6("s.v", pixels.data(), header, cases[0].first); }),
              "status 255: " + cases[0].second + "\n");
}
