#include "app/montage.h"
#include "app/palette.h"
#include "app/palette_index.h"
#include "app/parse_args.h"
#include "app/scale_bar.h"
#include "bench/plain.h"
#include "image/old_layout.h"
#include "image/raw_reader.h"
#include "tests/support/test.h"

using namespace velmorant;
using test::ending;
using test::Infinity;
using test::NotANumber;

TEST(PaletteIndex, IsTruncatedAndHeldWithinThePalette)
{
    constexpr struct {
        float value, bottom, top;
        int index;
    } cases[] = {
        {1000.0F, 0.0F, 1000.0F, 254}, {999.0F, 0.0F, 1000.0F, 253}, {3.9F, 0.0F, 1000.0F, 0},
        {1001.0F, 0.0F, 1000.0F, 254}, {-1e10F, 0.0F, 1000.0F, 0},   {0.0F, -100.0F, 900.0F, 25},
        {5.0F, 10.0F, 0.0F, 127},      {Infinity, 0.0F, 1.0F, 254},  {-Infinity, 0.0F, 1.0F, 0},
        {NotANumber, 0.0F, 1.0F, 0},   {1.0F, 0.0F, 0.0F, 254},      {0.0F, 0.0F, 0.0F, 0},
        {1.0F, 0.0F, Infinity, 0},     {1e38F, -3e38F, 3e38F, 0},    {1.0F, 0.0F, -1.0F, 0},
        {4.0F, 0.0F, 1016.0F, 1},      {3.99F, 0.0F, 1016.0F, 0},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(palette_index(row.value, {row.bottom, row.top}), row.index) << row.value;
    }
}

TEST(Montage, IsReadInBandsOfRowsWhereItLies)
{
    // More pixels than are read at a time, the last slice half of them after the end of the file.
    std::vector<float> pixels(std::size_t{300} * 200 * 3);
    for (std::size_t i = 0; i < pixels.size() - 30000; ++i) {
        pixels[i] = static_cast<float>(i * 7919 % 256);
    }
    test::write_file("a.img", test::stored_floats({pixels.begin(), pixels.end() - 30000}, true));
    ImageHeader header{};
    convert_header_old_to_new({1, 3, 1, 0, 0, 300, 200}, {1.0F, 1.0F}, header);
    const PixelMapping mapping{.rescaling = {2.0F, -1.0F, 0.0F}, .range = {-100.0F, 500.0F}};
    for (const auto &[columns, tile_width, tile_height] :
         {std::array{2, 300, 200}, {3, 310, 90}, {1, 250, 230}}) {
        VolumePixels volume(open_raw_volume("a.img", header, {1, 1, 1, 0, 0}, StoredType::Float),
                            allocate_box_buffer(header));
        const MontageGrid grid = lay_out_montage(3, columns, tile_width, tile_height);
        const auto width = static_cast<std::size_t>(columns * tile_width);
        std::vector<std::uint8_t> montage(width *
                                          static_cast<std::size_t>(grid.rows * tile_height));
        for (std::int32_t row = 0; row < grid.rows * tile_height; ++row) {
            render_montage_row(
                volume, grid, mapping, row,
                std::span(montage).subspan(static_cast<std::size_t>(row) * width, width));
        }
        EXPECT_TRUE(montage == bench::plain::render_montage(pixels, header, grid, mapping));
    }
}

TEST(ScaleBar, RunsFromTheTopOfThePaletteDownBetweenItsEnds)
{
    constexpr struct {
        std::int32_t height;
        float fraction;
        std::int32_t row;
        int index, gray;
    } cases[] = {
        {256, 0.5F, 64, 0, 0},      {256, 0.5F, 65, 252, 253},    {256, 0.5F, 128, 127, 127},
        {256, 50.0F, 0, 129, 130},  {256, 50.0F, 255, 124, 124},  {256, 0.0F, 128, 0, 0},
        {256, NotANumber, 9, 0, 0}, {256, Infinity, 9, 127, 127},
    };
    for (const auto &row : cases) {
        const ScaleBar bar = place_scale_bar(row.height, row.fraction);
        EXPECT_EQ(scale_bar_index(bar, row.row), row.index) << row.fraction << " row " << row.row;
        EXPECT_EQ(scale_bar_gray(bar, row.row), row.gray) << row.fraction << " row " << row.row;
    }
}

TEST(Palette, OnlyItsVeryLastByteMayBeMissing)
{
    const std::string bytes =
        std::string(256, '\1') + std::string(256, '\2') + std::string(256, '\3');
    for (const auto &[file, last] : {std::pair{bytes.substr(0, 767), 0}, {bytes + "ignored", 3}}) {
        test::write_file("p", file);
        load_palette("p");
        EXPECT_EQ((std::array<int, 5>{red[0], red[255], green[255], blue[254], blue[255]}),
                  (std::array{1, 1, 2, 3, last}));
    }
    test::write_file("p", bytes.substr(0, 766));
    EXPECT_EQ(ending([] { load_palette("p"); }), "status 0: Incomplete color palette\n");
}

// The arguments of a line, each in brackets.
static std::string split(const std::string &line)
{
    std::array<char *, MostParsedArguments + 1> argv{};
    const auto end = static_cast<std::size_t>(parse_args(line.c_str(), argv));
    std::string arguments;
    for (std::size_t i = 1; i < end; ++i) {
        arguments.append("[").append(argv.at(i)).append("]");
    }
    return arguments;
}

TEST(ParseArgs, SplitsAtBlanksOutsideOfQuotes)
{
    EXPECT_EQ(split("  "), "");
    EXPECT_EQ(split("  a\"b c\"d \"it's\" 'say \"x\"' "), "[ab cd][it's][say \"x\"]");
    EXPECT_EQ(split("\"\" a \"open end"), "[][a][open end]");
    EXPECT_TRUE(split("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25")
                    .ends_with("[23][24]"));
    EXPECT_EQ(ending([] { split(std::string(1024, 'x')); }), "status 0: command line too long\n");
}
