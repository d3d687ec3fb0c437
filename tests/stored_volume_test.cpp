// Boxes of volumes where they lie in their files, against the whole file decoded element by element.

#include "bench/plain.h"
#include "image/raw_reader.h"
#include "image/stored_volume.h"
#include "tests/support/test.h"

#include <random>

using namespace velmorant;
using test::ending;

// The element of a pixel, counted along each axis as the file runs.
static std::size_t element_of(const ImageHeader &header, std::int32_t x, std::int32_t y,
                              std::int32_t z)
{
    const std::int32_t column = header.right_on_left == 0 ? header.x_dim - 1 - x : x;
    const std::int32_t row = header.anterior_to_posterior == 0 ? header.y_dim - 1 - y : y;
    const std::int32_t slice = header.superior_to_inferior == 0 ? header.num_slices - 1 - z : z;
    return static_cast<std::size_t>((slice * header.y_dim + row) * header.x_dim + column);
}

TEST(StoredVolume, BoxesHoldThePixelsOfTheFile)
{
    // Slices of a pixel, rows with gaps that are read over and with gaps that are not, and rows of
    // more than is read at a time.
    static constexpr std::array<std::int32_t, 3> Shapes[] = {
        {1, 1, 300}, {2, 1, 300}, {7, 5, 3}, {3000, 3, 2}, {5000, 2, 2}, {70000, 2, 1}};
    std::minstd_rand random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same every time
    const auto roll = [&](std::int32_t least, std::int32_t most) {
        return least +
               static_cast<std::int32_t>(random() % static_cast<std::uint32_t>(most - least + 1));
    };
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        const auto &[x_dim, y_dim, slices] = Shapes[roll(0, 5)];
        const std::int32_t offset = roll(0, 3);
        const ImageHeader header{
            1,      slices,     1, 0,      0,          x_dim,          y_dim,
            1,      1,          1, 654.0F, roll(0, 1), 7 * roll(0, 1), roll(0, 1),
            offset, roll(0, 1), 0};
        const auto type = static_cast<StoredType>(roll(1, 3));
        const std::int32_t size = x_dim * y_dim * slices;
        const auto all = static_cast<std::int32_t>(stored_bytes(type)) * size;
        std::vector<std::uint8_t> bytes(
            static_cast<std::size_t>(roll(0, 2) == 0 ? roll(0, all) : all));
        std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(roll(1, 126)); });
        test::write_file("a.img", std::string(static_cast<std::size_t>(offset), 'x') +
                                      std::string(bytes.begin(), bytes.end()));
        const bool big = header.byte_order == 1;
        std::vector<float> pixels =
            type == StoredType::Float
                ? bench::plain::decode_floats(bytes, big)
                : bench::plain::decode_shorts(bytes, big, type == StoredType::SignedShort,
                                              654.0F / 32700.0F);
        pixels.resize(static_cast<std::size_t>(size));

        VolumeBox box{roll(0, x_dim - 1), roll(0, y_dim - 1), roll(0, slices - 1), 1, 1, 1};
        box.width = roll(0, 3) == 0 ? 1 : roll(1, x_dim - box.x);
        box.height = roll(1, y_dim - box.y);
        box.depth = roll(1, slices - box.z);
        std::vector<float> expected;
        for (std::int32_t z = box.z; z < box.z + box.depth; ++z) {
            for (std::int32_t y = box.y; y < box.y + box.height; ++y) {
                for (std::int32_t x = box.x; x < box.x + box.width; ++x) {
                    expected.push_back(pixels[element_of(header, x, y, z)]);
                }
            }
        }
        StoredVolume volume = open_raw_volume("a.img", header, {1, 1, 1, 0, 0}, type);
        std::vector<float> found(expected.size(), -1.0F);
        read_box(volume, box, found.data());
        EXPECT_TRUE(found == expected);
        EXPECT_TRUE(!is_blank(volume, box) || std::ranges::count(found, 0.0F) == std::ssize(found));
    }
}

TEST(StoredVolume, AFileThatIsCutSinceEndsThere)
{
    ImageHeader header{};
    header.x_dim = 100;
    header.y_dim = header.num_slices = header.num_frames = header.byte_order = 1;
    header.right_on_left = 1;
    test::write_file("a.img", test::stored_floats(std::vector(100, 5.0F), true));
    const auto last_pixels = [&](const char *short_read) {
        StoredVolume volume = open_raw_volume("a.img", header, {1, 1, 1, 0, 0}, StoredType::Float);
        volume.short_read = short_read;
        std::filesystem::resize_file("a.img", 394);
        std::vector<float> pixels(3);
        for (int turn = 0; turn < 2; ++turn) {
            read_box(volume, {97, 0, 0, 3, 1, 1}, pixels.data());
        }
        std::filesystem::resize_file("a.img", 400);
        return pixels;
    };
    EXPECT_EQ(last_pixels(nullptr), (std::vector{5.0F, 0.0F, 0.0F}));
    EXPECT_EQ(ending([&] { last_pixels("fread error in mat_rblk"); }),
              "status 255: fread error in mat_rblk (12 expected, 4 read)...\n");
}
