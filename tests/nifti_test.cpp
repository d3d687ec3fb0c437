// NIfTI images that become raw ones: where right and left, the values and the frames end up.

#include "image/format_dispatch.h"
#include "image/image_geometry.h"
#include "tests/support/installed.h"
#include "tests/support/nifti_file.h"
#include "tests/support/test.h"

using namespace velmorant;
using test::NiftiFile;

using Matrix = std::array<std::array<double, 3>, 3>;

static constexpr Matrix Upright{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
static constexpr Matrix Stored{{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};

// The 48 ways in which axes can be ordered and run. Columns: where a step along each stored axis leads.
static std::vector<Matrix> all_orientations()
{
    std::vector<Matrix> all;
    std::array<std::size_t, 3> lines{0, 1, 2};
    do {
        for (unsigned flips = 0; flips < 8; ++flips) {
            Matrix matrix{};
            for (std::size_t axis = 0; axis < 3; ++axis) {
                matrix.at(lines.at(axis)).at(axis) = (flips >> axis & 1U) != 0 ? -1 : 1;
            }
            all.push_back(matrix);
        }
    } while (std::ranges::next_permutation(lines).found);
    return all;
}

using Place = std::array<std::int64_t, 3>;

// A head of 40 x 3 x 2 mm, no two of whose cubic millimetres are alike: 100 towards right, 10 towards
// anterior, 1 towards superior.
static constexpr Place HeadExtent{40, 3, 2};

static std::int64_t value_at(const Place &place)
{
    return (100 * place[0] + 10 * place[1] + place[2]) % 32768;
}

// The head as somebody stores it.
static NiftiFile store_head(const Matrix &matrix, const Place &extent = HeadExtent,
                            bool big = false)
{
    const auto way = [&](std::size_t line, std::size_t axis) {
        return static_cast<std::int64_t>(matrix.at(line).at(axis));
    };
    std::vector<std::int64_t> size(3);
    Place origin{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (std::size_t line = 0; line < 3; ++line) {
            size[axis] += std::abs(way(line, axis)) * extent.at(line);
            origin.at(line) += way(line, axis) < 0 ? extent.at(line) - 1 : 0;
        }
    }
    std::vector<std::int64_t> values;
    for (std::int64_t i = 0; i < size[0] * size[1] * size[2]; ++i) {
        const Place step{i % size[0], i / size[0] % size[1], i / size[0] / size[1]};
        Place place = origin;
        for (std::size_t line = 0; line < 3; ++line) {
            place.at(line) +=
                way(line, 0) * step[0] + way(line, 1) * step[1] + way(line, 2) * step[2];
        }
        values.push_back(value_at(place));
    }
    return {.big = big,
            .size = size,
            .datatype = 4,
            .sform_code = 1,
            .sform = matrix,
            .data = test::stored_integers(values, 2, big)};
}

static ImageHeader output_header()
{
    ImageHeader header{};
    read_header("o.img", header, "SHORTINT2L");
    return header;
}

// A volume of o.img, in the standard orientation.
static std::vector<float> read_volume(std::int32_t frame = 1)
{
    const ImageHeader header = output_header();
    std::vector<float> pixels(image_size(header));
    read_image_planes("o.img", pixels.data(), header, {frame, 1, 1, 0, 0}, "SHORTINT2L");
    return pixels;
}

// What is said of an i.nii that is not converted, behind the reason, and of one that is.
static const std::string Refused = "\nnifti-to-raw: not converted: i.nii\nstatus 1: ";
static const std::string Converted = "40 x 3 x 2 pixels, 1 frame, signed 16-bit integers\n";

// Right is on the left, anterior at the top, superior first.
static std::vector<float> standard_head(const Place &extent = HeadExtent)
{
    std::vector<float> pixels;
    for (std::int64_t i = extent[0] * extent[1] * extent[2] - 1; i >= 0; --i) {
        const Place place{i % extent[0], i / extent[0] % extent[1], i / extent[0] / extent[1]};
        pixels.push_back(static_cast<float>(value_at(place)));
    }
    return pixels;
}

static std::string convert(const NiftiFile &file, const std::string &options = "")
{
    test::write_file("i.nii", test::nifti_bytes(file));
    return test::installed("nifti-to-raw " + options + " i.nii o.img");
}

TEST(NiftiOrientation, RightStaysRightInEveryOrderAndDirectionOfTheAxes)
{
    for (const Matrix &matrix : all_orientations()) {
        const std::string said = convert(store_head(matrix));
        const bool in_order = matrix[0][0] != 0 && matrix[1][1] != 0;
        EXPECT_EQ(said.find("axes reordered") == std::string::npos, in_order) << said;
        EXPECT_EQ(read_volume(), standard_head()) << said;
    }
    const double half = std::sqrt(0.5);
    const struct {
        std::array<double, 3> quaternion;
        double qfac;
        Matrix matrix;
    } turns[] = {{{0, 0, 0}, 1, Upright},
                 {{0, 0, 0}, -1, {{{1, 0, 0}, {0, 1, 0}, {0, 0, -1}}}},
                 {{0, 1, 0}, -1, {{{-1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
                 {{0.5, 0.5, 0.5}, 1, {{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}}},
                 {{-0.5, -0.5, -0.5}, -1, {{{0, 1, 0}, {0, 0, -1}, {1, 0, 0}}}},
                 {{half, half, 0}, 1, {{{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}}}};
    for (const auto &[quaternion, qfac, matrix] : turns) {
        NiftiFile file = store_head(matrix);
        file.qform_code = std::exchange(file.sform_code, 0);
        file.quaternion = quaternion;
        file.spacing[0] = qfac;
        convert(file);
        EXPECT_EQ(read_volume(), standard_head()) << "quaternion " << quaternion[0];
    }
}

TEST(NiftiOrientation, LargeImagesComeTogetherFromTheirSlabs)
{
    const Place extent{130, 100, 90};
    for (const std::size_t axes : {16U, 24U, 40U}) { // the last stored axis becomes y, and x
        convert(store_head(all_orientations()[axes], extent));
        EXPECT_TRUE(read_volume() == standard_head(extent)) << axes;
    }
#ifndef SANITIZED
    NiftiFile sparse = store_head(all_orientations()[40]);
    sparse.size = {400, 400, 300};
    test::write_file("i.nii", test::nifti_bytes(sparse));
    std::filesystem::resize_file("i.nii", 352 + 2 * 400 * 400 * 300);
    const test::Outcome outcome =
        test::run_program(INSTALLED "/bin/nifti-to-raw", {"nifti-to-raw", "i.nii", "o.img"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_LE(outcome.peak_kib, 16384);
#endif
}

TEST(NiftiOrientation, ObliqueAxesGoToTheNearestAndPixelSizesWithTheirAxes)
{
    // 2 x 3 x 4 mm: sagittal slices, nodding by 30 degrees.
    NiftiFile file = store_head({{{0, 0, -1}, {1, 0, 0}, {0, 1, 0}}});
    file.sform = {{{0, 0, -4}, {std::sqrt(3.0), -1.5, 0}, {1, 1.5 * std::sqrt(3.0), 0}}};
    EXPECT_EQ(convert(file),
              "status 0: i.nii: stored as ASL, its axes reordered for transaxial slices\n"
              "i.nii: 30.0 degrees oblique, taken along the nearest axes\no.img: " +
                  Converted);
    EXPECT_EQ(read_volume(), standard_head());
    EXPECT_FLOAT_EQ(output_header().pixel_size_x, 4.0F);
    EXPECT_FLOAT_EQ(output_header().pixel_size_y, 2.0F);
    EXPECT_FLOAT_EQ(output_header().slice_thickness, 3.0F);
    // Sheared, each axis still nearest to its own line.
    NiftiFile sheared = store_head(Stored);
    sheared.sform = {{{-.822, .42, -.077}, {.549, -.824, .213}, {.154, .381, -.974}}};
    convert(sheared);
    EXPECT_EQ(read_volume(), standard_head());
    file.units = 1;
    file.sform = {{{0, 0, -0.004}, {0.002, 0, 0}, {0, 0.003, 0}}};
    convert(file);
    EXPECT_FLOAT_EQ(output_header().slice_thickness, 3.0F);
}

TEST(NiftiOrientation, IsAskedForWhereTheFileDoesNotSayIt)
{
    NiftiFile file = store_head({{{-1, 0, 0}, {0, 1, 0}, {0, 0, 1}}});
    EXPECT_EQ(convert(file, "--orientation=LAS"), "an orientation of its own in i.nii" + Refused);
    file.qform_code = 1; // which says "RAS"
    EXPECT_EQ(convert(file),
              "two orientations in i.nii: say with --form which one counts" + Refused);
    EXPECT_FALSE(std::filesystem::exists("o.img"));
    convert(file, "--form sform");
    EXPECT_EQ(read_volume(), standard_head());
    convert(file, "--form qform");
    EXPECT_NE(read_volume(), standard_head());
    file.qform_code = file.sform_code = 0;
    EXPECT_EQ(convert(file),
              "no orientation in i.nii: say with --orientation where its axes lead" + Refused);
    file.spacing = {1, 2, 3, 4};
    convert(file, "--orientation=LAS");
    EXPECT_EQ(read_volume(), standard_head());
    EXPECT_EQ(output_header().pixel_size_y, 3.0F);
    file.sform_code = 1;
    // In a plane; and sheared so far that the nearest axes would be a mirror image.
    for (const Matrix &matrix : {Matrix{{{1, 1, 0}, {0, 0, 0}, {0, 0, 1}}},
                                 Matrix{{{.5, .3, -.1}, {.7, .3, .6}, {-.3, .1, -.6}}}}) {
        file.sform = matrix;
        EXPECT_EQ(convert(file), "no usable orientation in i.nii" + Refused);
    }
}

TEST(NiftiFiles, AreReadInEveryVersionByteOrderAndWrapping)
{
    for (const int version : {1, 2}) {
        for (const bool big : {false, true}) {
            NiftiFile file = store_head(Upright, HeadExtent, big);
            file.version = version;
            convert(file);
            EXPECT_EQ(read_volume(), standard_head());
            test::installed("gzip -f i.nii; rm o.*; nifti-to-raw i.nii.gz o.img");
            EXPECT_EQ(read_volume(), standard_head());
            file.pair = true;
            test::write_file("p.hdr", test::nifti_bytes(file));
            test::write_file("p.img", file.data);
            for (const std::string name : {"p.hdr", "p.img"}) {
                EXPECT_EQ(test::installed("rm o.*; nifti-to-raw " + name + " p.raw"),
                          "the output would replace p.hdr\nnifti-to-raw: not converted: " + name +
                              "\nstatus 1: ");
                test::installed("nifti-to-raw " + name + " o.img");
                EXPECT_EQ(read_volume(), standard_head());
            }
        }
    }
    // Values like the first bytes of a gzipped file.
    test::write_file("p.img", "\x1F\x8B" + std::string(478, '\b'));
    EXPECT_EQ(test::installed("nifti-to-raw p.img o.img"), "status 0: o.img: " + Converted);
}

static std::string integers(const std::vector<std::int64_t> &values, int bytes)
{
    return test::stored_integers(values, bytes, false);
}

TEST(NiftiValues, StayShortWhereThatIsExactAndBecomeFloatsElsewhere)
{
    const std::string shorts = "signed 16-bit integers";
    const std::string words = "unsigned 16-bit integers";
    const std::string floats = "floats";
    const double tenth = static_cast<double>(0.1F);
    // clang-format off
    const struct {
        const char *label;
        int datatype;
        double slope, intercept;
        std::string data; // four values
        std::string stored;
        std::vector<float> values;
    } rows[] = {
        {"bytes",            2, 0, 7,          integers({0, 1, 254, 255}, 1),        shorts, {0, 1, 254, 255}},
        {"a half",           4, 0.5, 0,        integers({-32768, -1, 1, 32767}, 2),  shorts, {-16384, -0.5F, 0.5F, 16383.5F}},
        {"a tenth",          4, tenth, 0,      integers({1, 3, 7, 32767}, 2),        shorts, {0.1F, 3 * 0.1F, 7 * 0.1F, 32767 * 0.1F}},
        {"too few decimals", 4, 1e-5, 0,       integers({1, 3, 7, 9}, 2),            floats, {1e-5F, 3e-5F, 7e-5F, 9e-5F}},
        {"an intercept",     4, 0.5, 16384,    integers({-32768, -1, 1, 32767}, 2),  words,  {0, 16383.5F, 16384.5F, 32767.5F}},
        {"between steps",    4, 1, 0.5,        integers({0, 1, 2, 3}, 2),            floats, {0.5F, 1.5F, 2.5F, 3.5F}},
        {"turned round",   512, -1, 0,         integers({0, 1, 32768, 65535}, 2),    words,  {0, -1, -32768, -65535}},
        {"large 32 bits",    8, 1, 0,          integers({-1, 0, 9, 32768}, 4),       floats, {-1, 0, 9, 32768}},
        {"far from 0",     768, 1, -4294900000, integers({4294900000, 4294900001, 4294900002, 4294965535}, 4), words, {0, 1, 2, 65535}},
        {"64 bits",       1024, 1, 0,          integers({-5, 0, 9, 32767}, 8),       shorts, {-5, 0, 9, 32767}},
        {"all 64 bits",   1280, 1, 0,          integers({0, 1, 9, -1}, 8),           floats, {0, 1, 9, 0x1p64F}},
        {"floats",          16, 0, 0,          test::stored_floats({1e-30F, -0.1F, 3, 1e30F}, false), floats, {1e-30F, -0.1F, 3, 1e30F}},
        {"doubles",         64, 0, 0,          integers({0x3FB999999999999A, -0x3FFC000000000000, 0, 0x7E37E43C8800759C}, 8), floats, {0.1F, -2.5F, 0, test::Infinity}},
    };
    // clang-format on
    for (const auto &row : rows) {
        NiftiFile file = store_head(Stored);
        file.version = 2;
        file.size = {4};
        file.datatype = row.datatype;
        file.slope = row.slope;
        file.intercept = row.intercept;
        file.data = row.data;
        const std::string warning =
            "nifti-to-raw: warning: 1 infinite values or no numbers in i.nii\nstatus 0: ";
        EXPECT_EQ(convert(file), (row.values[3] == test::Infinity ? warning : "status 0: ") +
                                     "o.img: 4 x 1 x 1 pixels, 1 frame, " + row.stored + "\n")
            << row.label;
        EXPECT_EQ(read_volume(), row.values) << row.label;
    }
}

TEST(NiftiFrames, FollowOneAnotherAndOneOfThemBecomesThePicture)
{
    NiftiFile file = store_head(Upright);
    file.size.push_back(3);
    std::string other = file.data;
    other[0] = 77; // the lowest, hindmost and leftmost pixel
    file.data = file.data + other + file.data;
    const std::string said = "o.img: 40 x 3 x 2 pixels, 3 frames, signed 16-bit integers";
    EXPECT_EQ(convert(file), "status 0: " + said + "\n");
    std::vector<float> expected = standard_head();
    EXPECT_EQ(read_volume(3), expected);
    expected.back() = 77;
    EXPECT_EQ(read_volume(2), expected);
    EXPECT_EQ(test::installed("tiffgen-run o.img o 0.0 -f2 >said; "
                              "tiffgen-run --format NIFTI --check-study i.nii n 0.0 -f2 >said; rm "
                              "said; cmp n.tif o.tif; "
                              "tiffgen-run --format NIFTI --check-study i.nii n 0.0 -f4; ls -A"),
              "tiffgen-run: i.nii: there is no frame 4\nstatus 0: "
              "i.nii\nn.tif\no.hdr\no.img\no.tif\n");
    // On a terminal they are counted in a line that makes room for what is said.
    SKIP_WITHOUT("script");
    const std::string clear = "\r\033[K";
    std::string counted;
    for (const char frame : {'1', '2', '3'}) {
        counted += clear + "nifti-to-raw: converting frame " + frame + " of 3";
    }
    EXPECT_EQ(test::installed("script -qec 'nifti-to-raw i.nii o.img' /dev/null"),
              "status 0: " + counted + clear + said + "\r\n");
    EXPECT_TRUE(
        test::installed("script -qec 'ulimit -f 0; nifti-to-raw i.nii o.img' /dev/null")
            .ends_with(clear + "can't write o.img\r\nnifti-to-raw: not converted: i.nii\r\n"));
}

TEST(NiftiFiles, ThatAreDamagedAreRefusedAndLeaveNothing)
{
    const std::string no_image = "no NIfTI-1 or NIfTI-2 image: i.nii";
    const std::string too_short = "too short for its header: i.nii";
    const std::string whole = test::nifti_bytes(store_head(Upright));
    const auto sized = [](const std::vector<std::int64_t> &size, int datatype = 4) {
        NiftiFile file = store_head(Upright);
        file.size = size;
        file.datatype = datatype;
        return test::nifti_bytes(file);
    };
    const std::pair<std::string, std::string> cases[] = {
        {"", no_image},
        {whole.substr(0, 348), too_short},
        {whole.substr(0, whole.size() - 1), too_short},
        {sized({32767, 32767, 1, 1}), too_short},
        {sized({32767, 32767, 3, 1}), "illegal image dimensions in i.nii"},
        {sized({2, 3, 2, 1, 2}), "more than four dimensions in i.nii"},
        {sized({40, 3, 2}, 128), "can't convert RGB24 values: i.nii"},
        {sized({40, 3, 2}, 1536), "can't convert FLOAT128 values: i.nii"},
        {"!data offset in bytes :=0\n" + std::string(400, ' '), no_image}};
    for (const auto &[bytes, reason] : cases) {
        test::write_file("i.nii", bytes);
        EXPECT_EQ(test::installed("nifti-to-raw i.nii o.img; s=$?; rm i.nii; ls -A; exit $s"),
                  reason + Refused);
    }
    // A gzipped file that was cut short, or whose sum is another.
    NiftiFile large = store_head(Upright);
    large.size = {128, 128, 3};
    large.data.resize(700000); // values, and more
    test::write_file("g.nii", test::nifti_bytes(large));
    for (const std::string damage : {"head -c -9 g.nii.gz", "head -c -1 g.nii.gz",
                                     "{ head -c -8 g.nii.gz; printf abcd; tail -c 4 g.nii.gz; }"}) {
        EXPECT_EQ(test::installed("gzip -kf g.nii; " + damage +
                                  " >i.nii.gz; nifti-to-raw i.nii.gz o.img; s=$?; ls -A; exit $s"),
                  "too short for its header, or damaged: i.nii.gz\n"
                  "nifti-to-raw: not converted: i.nii.gz\nstatus 1: g.nii\ng.nii.gz\ni.nii.gz\n")
            << damage;
    }
}

TEST(NiftiRuns, ReplaceNothingButTheOutputAndLeaveNothingHalfMade)
{
    test::write_file("i.nii", test::nifti_bytes(store_head(Upright)));
    const std::string usage = test::installed("nifti-to-raw --help").substr(10);
    EXPECT_EQ(test::installed("nifti-to-raw i.nii o"),
              "nifti-to-raw: OUTPUT needs an extension other than .hdr, as in scan.img\n" + usage +
                  "status 2: ");
    EXPECT_EQ(
        test::installed(
            "mkfifo pipe.img; cp i.nii p.hdr; ln i.nii same.img; for pair in 'i.nii i.nii' "
            "'i.nii pipe.img' 'i.nii same.img' 'i.nii no/o.img' 'pipe.img o.img' 'no.nii o.img' "
            "'i.nii p.nii' '--form=x i.nii o.img'; do nifti-to-raw $pair 2>&1 | head -n 1; done; "
            "rm pipe.img same.img p.hdr p.nii; ls -A"),
        "status 0: the output would replace i.nii\ncan't open pipe.img\n"
        "the output would replace i.nii\ncan't open no/o.img\ncan't open pipe.img\n"
        "can't open no.nii\np.nii: " +
            Converted + "nifti-to-raw: --form takes sform or qform\ni.nii\n");
    // An older image stays as it was until the new one is whole: 1 GiB of 0 takes some time.
    NiftiFile large = store_head(Upright);
    large.size = {128, 128, 128, 256};
    test::write_file("l.nii", test::nifti_bytes(large));
    EXPECT_EQ(
        test::installed(
            "truncate -s 1025M l.nii; nifti-to-raw i.nii o.img; cp o.hdr hdr; cp o.img img; "
            "(ulimit -f 1000; nifti-to-raw l.nii o.img); "
            "for signal in HUP TERM; do nifti-to-raw l.nii o.img & "
            "until ls .nifti* >/dev/null || ! kill -0 $!; do :; done; kill -$signal $!; wait $!; "
            "echo $?; done "
            "2>/dev/null; cmp o.hdr hdr; cmp o.img img; rm hdr img; "
            "umask 27; nifti-to-raw i.nii o.img; stat -c %a o.*; ls -A"),
        "can't write o.img\nnifti-to-raw: not converted: l.nii\nstatus 0: o.img: " + Converted +
            "129\n143\no.img: " + Converted + "640\n640\ni.nii\nl.nii\no.hdr\no.img\n");
}
