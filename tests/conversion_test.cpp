// Studies that go from format to format, by the example programs and into pictures.

#include "image/format_dispatch.h"
#include "image/old_layout.h"
#include "prefs/settings.h"
#include "tests/support/test.h"
#include "tests/support/tiff.h"

using namespace velmorant;

static std::string run(const char *program, std::vector<std::string> words)
{
    words.insert(words.begin(), std::filesystem::path(program).filename());
    return test::summary(test::run_program(program, words));
}

namespace
{

struct Format {
    std::string keyword;
    std::array<std::int32_t, 3> flags; // the orientation in which it is written
    float units;                       // stored units in the extreme of what is scaled, 0 = floats
};

} // namespace

static const std::vector<Format> Formats{{"CTI6", {1, 1, 1}, 32767},
                                         {"SHORTINT2B", {0, 1, 0}, 32700},
                                         {"SHORTINT2L", {1, 0, 1}, 32700},
                                         {"FLOATB", {0, 0, 1}, 0},
                                         {"FLOATL", {1, 1, 0}, 0}};

static constexpr std::size_t PlanePixels = 256;
static constexpr float Highest = 2604.0F; // of all pixels

// One of 3 planes of 32 x 8 pixels, no two of which are alike.
static std::vector<float> make_plane(int frame, int bed, int slice)
{
    std::vector<float> pixels(PlanePixels);
    for (std::size_t i = 0; i < PlanePixels; ++i) {
        pixels[i] = static_cast<float>(1000 * frame + 400 * bed + 70 * slice) +
                    0.25F * static_cast<float>(i * static_cast<std::size_t>(slice + 1) % 257);
    }
    return pixels;
}

// Half of a stored unit, which is how far off a pixel of this plane may be, and 2 % for computing.
static float half_unit(const Format &format, const std::vector<float> &plane)
{
    const float extreme = format.keyword == "CTI6" ? std::ranges::max(plane) : Highest;
    return format.units == 0 ? 0 : 0.51F * extreme / format.units;
}

// Writes 2 frames at 2 bed positions.
static void write_study(const char *name, const Format &format)
{
    ImageHeader header{};
    convert_header_old_to_new({2, 3, 1, 0, 1, 32, 8}, {2.0F, 4.0F}, header);
    header.right_on_left = format.flags[0];
    header.anterior_to_posterior = format.flags[1];
    header.superior_to_inferior = format.flags[2];
    std::vector<float> study;
    for (const auto &[first, second] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 1}}) {
        const int frame = 1 + (format.keyword == "CTI6" ? first : second);
        const int bed = format.keyword == "CTI6" ? second : first;
        for (int slice = 0; slice < 3; ++slice) {
            const std::vector<float> plane = make_plane(frame, bed, slice);
            study.insert(study.end(), plane.begin(), plane.end());
        }
    }
    INT_MaxPixelValue = 32767;
    write_image_matrix_multiple(name, study.data(), header, create_format_setting(format.keyword),
                                0.0F, 0.0F);
}

static void expect_volume(const std::vector<float> &found, int frame, int bed, const Format &from,
                          const Format &to)
{
    for (int slice = 0; slice < 3; ++slice) {
        const std::vector<float> plane = make_plane(frame, bed, slice);
        const float tolerance = half_unit(from, plane) + half_unit(to, plane);
        float worst = 0.0F;
        for (std::size_t i = 0; i < PlanePixels; ++i) {
            const std::size_t place = static_cast<std::size_t>(slice) * PlanePixels + i;
            worst = std::max(worst, std::fabs(found[place] - plane[i]));
        }
        EXPECT_LE(worst, tolerance) << from.keyword << " to " << to.keyword << ", frame " << frame
                                    << ", bed " << bed << ", slice " << slice;
    }
}

TEST(Conversion, EveryFormatBecomesEveryOther)
{
    for (const Format &from : Formats) {
        write_study("a.img", from);
        for (const Format &to : Formats) {
            EXPECT_EQ(run(CONVERT_IMAGE, {from.keyword, "a.img", to.keyword, "b.img"}),
                      "status 0: ");
            const char *keyword = to.keyword.c_str();
            ImageHeader header{};
            read_header("b.img", header, keyword);
            // What has no orientation is in the standard one.
            const auto &flags = to.keyword == "CTI6" ? to.flags : from.flags;
            ImageHeader expected = header;
            convert_header_old_to_new({2, 3, 1, 0, 1, 32, 8}, {2.0F, 4.0F}, expected);
            expected.right_on_left = flags[0];
            expected.anterior_to_posterior = flags[1];
            expected.superior_to_inferior = flags[2];
            expected.byte_order = to.keyword.ends_with('L') ? 0 : 1;
            expected.data_format = to.units == 0 ? 3 : header.data_format;
            expected.pixel_scaling = header.pixel_scaling;
            EXPECT_EQ(test::fields(header), test::fields(expected)) << from.keyword << keyword;
            std::vector<float> volume(3 * PlanePixels);
            for (const auto &[frame, bed] : {std::pair{1, 0}, {1, 1}, {2, 0}, {2, 1}}) {
                read_image_planes("b.img", volume.data(), header, {frame, 1, 1, 0, bed}, keyword);
                expect_volume(volume, frame, bed, from, to);
            }
        }
    }
}

TEST(Conversion, FailuresHaveOrdinaryStatuses)
{
    write_study("a.img", Formats[3]);
    write_study("e.img", Formats[0]);
    const std::string raw = test::read_file("a.hdr") + test::read_file("a.img");
    std::filesystem::create_symlink("a.img", "link.img");
    std::filesystem::create_symlink("/dev/full", "full.img");
    std::filesystem::create_symlink("/dev/full", "header.hdr");
    std::filesystem::create_directory("folder.img");
    test::write_file("cut.img", test::read_file("e.img").substr(0, 5000));
    // Says in its header that it has two gates, and has one.
    std::string gated = test::read_file("e.img");
    gated[380] = 2;
    test::write_file("gated.img", gated);
    test::write_file("empty.img", std::string(1024, '\0'));
    test::write_file("zero.hdr", test::text_header());
    test::write_file("zero.img", "");
    test::write_file("beds.hdr", test::text_header("number of beds :=16\n"));
    const std::string no_gate = "matrix (1,1,2,0,0) not found...\n"
                                "CHECK A POSSIBLE PROBLEM IN THE MAIN HEADER...\n"
                                "THE PROGRAM MAY FAIL IN THE FURTHER PROCESSING...\n";
    // clang-format off
    const struct {
        int status;
        std::vector<std::string> words;
        std::string said;
    } cases[] = {
        {0, {"FLOATB", "a.img", "CTI6", "a.v"}, ""},
        {0, {"CTI6", "gated.img", "CTI6", "g"}, no_gate},
        {0, {"CTI6", "g", "CTI6", "b"}, ""},
        {0, {"FLOATB", "zero.img", "CTI6", "z"}, ""},
        {0, {"CTI6", "z", "FLOATB", "b"},
         "warning: each plane's end, short of a block of 256 pixels, is read as 0\n"},
        {1, {"FLOATB", "none.img", "CTI6", "b"}, "can't open none.hdr\n"},
        {1, {"FLOATB", "a.img", "FLOAT", "b"}, "unspecified or unsupported file format\n"},
        {1, {"floatb", "a.img", "FLOATL", "b"}, "unspecified or unsupported file format\n"},
        {1, {"FLOATB", "a.img", "CTI6", "none/b"}, "can't open none/b\n"},
        {1, {"FLOATB", "a.img", "FLOATL", "folder.img"}, "can't open folder.img\n"},
        {1, {"FLOATB", "a.img", "FLOATL", "full.img"}, "can't write full.img\n"},
        {1, {"FLOATB", "a.img", "FLOATL", "header.img"}, "can't write header.hdr\n"},
        {1, {"CTI6", "empty.img", "FLOATL", "b"}, "no pixels in empty.img\n"},
        {1, {"CTI6", "cut.img", "FLOATL", "b"}, "fread error in mat_rblk (512 expected, 0 read)...\n"},
        {1, {"FLOATB", "a.img", "CTI6", "/dev/full"},
         "fwrite error in mat_wblk (512 expected, 0 written)...\n"},
        {1, {"FLOATB", "zero.img", "SHORTINT2B", "b"}, "'pixel scaling value' not defined in b.hdr\n"},
        {1, {"FLOATB", "beds.img", "CTI6", "b"},
         "an ECAT 6 file can't hold 1 frames at 17 beds of 3 x 2 x 3 pixels\n"},
        {1, {"FLOATB", "a.img", "CTI6", "link.img"}, "the output would replace a.img\n"},
        {1, {"FLOATB", "a.img", "FLOATL", "a.v"}, "the output would replace a.hdr\n"},
        {1, {"FLOATB", "a.img", "CTI6", "a.hdr"}, "the output would replace a.hdr\n"},
        {1, {"CTI6", "e.img", "FLOATB", "o.hdr"}, "the output would replace its own header o.hdr\n"},
    };
    // clang-format on
    for (const auto &row : cases) {
        const std::string ending =
            row.status == 0 ? "status 0: "
                            : "convert_image: not converted: " + row.words[1] + "\nstatus 1: ";
        EXPECT_EQ(run(CONVERT_IMAGE, row.words), row.said + ending);
    }
    EXPECT_EQ(test::read_file("a.hdr") + test::read_file("a.img"), raw);
    EXPECT_EQ(run(CONVERT_IMAGE, {"FLOATB", "a.img", "FLOATL"}),
              "Usage: convert_image FROM-KEYWORD IMAGE TO-KEYWORD OUTPUT\nstatus 2: ");
    EXPECT_EQ(run(MAKE_PHANTOM, {"FLOATB", "none/p.img", "8", "8", "8"}),
              "can't open none/p.hdr\nmake_phantom: not made: none/p.img\nstatus 1: ");
    for (const auto &[width, beds] : {std::pair{"8", "17"}, {"32768", "1"}}) {
        EXPECT_EQ(run(MAKE_PHANTOM, {"CTI6", "p.v", width, "8", "8", "1", beds}),
                  std::string("an ECAT 6 file can't hold 1 frames at ") + beds + " beds of " +
                      width + " x 8 x 8 pixels\nmake_phantom: not made: p.v\nstatus 1: ");
    }
    EXPECT_EQ(run(MAKE_PHANTOM, {"FLOATB", "p.img", "8", "x", "8"}),
              "make_phantom: not a size: x\nstatus 2: ");
}

// The pictures of two volumes of the phantom in a format, one after the other.
static std::vector<int> phantom_pictures(const std::string &keyword)
{
    EXPECT_EQ(run(MAKE_PHANTOM, {keyword, "p.img", "64", "64", "6", "2", "2"}), "status 0: ");
    test::write_file("GLOBAL.prf", "File Format:= \"" + keyword + "\"\n");
    std::vector<int> bytes;
    for (const auto &options : {std::array{"0.0", "-f2", "-b0"}, {"30", "-f1", "-b1"}}) {
        const std::string said =
            run(TIFFGEN, {"p.img", "p", options[0], options[1], options[2], "-g1", "-X3"});
        EXPECT_TRUE(said.starts_with("status 1: ")) << said;
        EXPECT_NE(said.find("\nXD= 64;YD= 64;SL= 6;PX=3.400;PY=3.400;PZ=24.000;F= 2;B=1\nMax="),
                  std::string::npos)
            << said;
        const test::Picture picture = test::read_picture("p.tif");
        EXPECT_EQ(picture.width, 192);
        bytes.insert(bytes.end(), picture.bytes.begin(), picture.bytes.end());
    }
    return bytes;
}

TEST(Conversion, ThePhantomHasTheSamePicturesInEveryFormat)
{
    test::write_file("rainbow.plt", std::string(768, 'p'));
    const std::vector<int> expected = phantom_pictures("FLOATB");
    EXPECT_EQ(*std::ranges::max_element(expected), 254);
    EXPECT_EQ(phantom_pictures("FLOATL"), expected);
    for (const char *keyword : {"CTI6", "SHORTINT2B", "SHORTINT2L"}) {
        const std::vector<int> found = phantom_pictures(keyword);
        ASSERT_EQ(found.size(), expected.size());
        int worst = 0;
        for (std::size_t i = 0; i < found.size(); ++i) {
            worst = std::max(worst, std::abs(found[i] - expected[i]));
        }
        EXPECT_LE(worst, 1) << keyword;
    }
}
