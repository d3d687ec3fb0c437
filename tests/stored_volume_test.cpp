// Boxes of volumes where they lie in their files, against the whole file decoded element by element.

#include "bench/plain.h"
#include "image/raw_reader.h"
#include "image/stored_volume.h"
#include "tests/support/test.h"

#include <random>

using namespace velmorant;
using test::ending;

namespace
{

// Random numbers that are the same every time.
struct Dice {
    std::minstd_rand random{1}; // NOLINT(cert-msc32-c,cert-msc51-cpp)

    std::int32_t roll(std::int32_t least, std::int32_t most)
    {
        return least +
               static_cast<std::int32_t>(random() % static_cast<std::uint32_t>(most - least + 1));
    }
};

} // namespace

static ImageHeader random_header(Dice &dice)
{
    // Slices of a pixel, rows with gaps that are read over and with gaps that are not, and rows of more
    // than is read at a time.
    static constexpr std::array<std::int32_t, 3> Shapes[] = {
        {1, 1, 300}, {2, 1, 300}, {7, 5, 3}, {3000, 3, 2}, {5000, 2, 2}, {70000, 2, 1}};
    const auto [x, y, z] = Shapes[dice.roll(0, 5)];
    ImageHeader header{};
    header.num_frames = 1;
    header.x_dim = x;
    header.y_dim = y;
    header.num_slices = z;
    header.pixel_scaling = 654.0F;
    header.right_on_left = dice.roll(0, 1);
    header.anterior_to_posterior = dice.roll(0, 1);
    header.superior_to_inferior = dice.roll(0, 1);
    header.data_offset = dice.roll(0, 3);
    header.byte_order = dice.roll(0, 1);
    return header;
}

static std::vector<float> plain_pixels(const std::vector<std::uint8_t> &bytes, StoredType type,
                                       const ImageHeader &header)
{
    return type == StoredType::Float
               ? bench::plain::decode_floats(bytes, header.byte_order == 1)
               : bench::plain::decode_shorts(bytes, header.byte_order == 1,
                                             type == StoredType::SignedShort, 654.0F / 32700.0F);
}

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
    Dice dice;
    for (int round = 0; round < 300; ++round) {
        const ImageHeader header = random_header(dice);
        const auto type = static_cast<StoredType>(dice.roll(1, 3));
        const std::int32_t size = header.x_dim * header.y_dim * header.num_slices;
        const auto all = static_cast<std::int32_t>(stored_bytes(type)) * size;
        std::string data(static_cast<std::size_t>(dice.roll(0, 2) == 0 ? dice.roll(0, all) : all),
                         0);
        for (char &byte : data) {
            byte = static_cast<char>(dice.roll(1, 126)); // no NaN
        }
        test::write_file("a.img",
                         std::string(static_cast<std::size_t>(header.data_offset), 'x') + data);
        std::vector<float> pixels = plain_pixels({data.begin(), data.end()}, type, header);
        pixels.resize(static_cast<std::size_t>(size));

        StoredVolume volume = open_raw_volume("a.img", header, {1, 1, 1, 0, 0}, type);
        VolumeBox box = whole_volume(header);
        box = {dice.roll(0, box.width - 1),
               dice.roll(0, box.height - 1),
               dice.roll(0, box.depth - 1),
               0,
               0,
               0};
        box.width = dice.roll(0, 3) == 0 ? 1 : dice.roll(1, header.x_dim - box.x);
        box.height = dice.roll(1, header.y_dim - box.y);
        box.depth = dice.roll(1, header.num_slices - box.z);
        std::vector<float> found(box_size(box), -1.0F);
        read_box(volume, box, found.data());
        std::vector<float> expected;
        for (std::int32_t z = box.z; z < box.z + box.depth; ++z) {
            for (std::int32_t y = box.y; y < box.y + box.height; ++y) {
                for (std::int32_t x = box.x; x < box.x + box.width; ++x) {
                    expected.push_back(pixels[element_of(header, x, y, z)]);
                }
            }
        }
        EXPECT_TRUE(found == expected) << "round " << round;
        if (is_blank(volume, box)) {
            EXPECT_EQ(std::ranges::count(found, 0.0F), std::ssize(found)) << "round " << round;
        }
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
