#include "image/allocate.h"
#include "image/image_geometry.h"
#include "image/image_header.h"
#include "image/old_layout.h"
#include "tests/support/test.h"

using namespace velmorant;
using test::ending;

// Every field has a value of its own.
static constexpr ImageHeader Distinct{101,  2,    103, 104, 105, 6,  7,  1.5F, 2.5F,
                                      3.5F, 4.5F, 12,  13,  14,  15, 16, 17};

TEST(ImageHeader, ComparesGeometryOnly)
{
    // What the comparisons with and without frames, gates, data and beds say of a changed field.
    const auto expect = [](auto field, auto change, bool with, bool without) {
        ImageHeader other{};
        copy_ImageHeader(Distinct, other);
        other.*field += change;
        EXPECT_EQ(compare_ImageHeader(Distinct, other), with);
        EXPECT_EQ(compare_ImageHeader_without_frame_gate_data_or_bed(Distinct, other), without);
    };
    using H = ImageHeader;
    for (const auto field : {&H::num_slices, &H::x_dim, &H::y_dim}) {
        expect(field, 1, false, false);
    }
    for (const auto field : {&H::num_frames, &H::num_gates, &H::num_data, &H::num_beds}) {
        expect(field, 1, false, true);
    }
    for (const auto field : {&H::pixel_size_x, &H::pixel_size_y, &H::slice_thickness}) {
        expect(field, 2.4e-7F, false, false);
    }
    expect(&H::byte_order, 1, true, true);
    expect(&H::pixel_scaling, 1.0F, true, true);
}

TEST(ImageHeader, ConvertsFromAndToTheOlderLayout)
{
    OldHeaderIntegers integers{};
    OldHeaderSizes sizes{};
    EXPECT_EQ(ending([&] { convert_header_new_to_old(Distinct, integers, sizes); }),
              "status 77: *** Warning: Inconsistent x-y pixel size ***\n");
    convert_header_new_to_old(Distinct, integers, sizes);
    ImageHeader header{};
    convert_header_old_to_new(integers, sizes, header);
    EXPECT_EQ(test::fields(header),
              test::fields({101, 2, 103, 104, 105, 6, 7, 1.5F, 1.5F, 3.5F, 0, 1, 1, 1, 0, 1, 1}));
}

TEST(ImageHeader, GeometriesThatCanNotBeHeldEndTheRun)
{
    const auto report = [](std::int32_t x_dim, std::int32_t y_dim, std::int32_t num_slices) {
        ImageHeader header{};
        convert_header_old_to_new({1, num_slices, 1, 0, 0, x_dim, y_dim}, {}, header);
        return ending([&] { checked_image_size(header); });
    };
    const std::string illegal = "status 0: illegal image dimensions ";
    EXPECT_EQ(report(0, INT_MAX, INT_MAX), "status 77: ");
    EXPECT_EQ(report(-1, 1, 0), illegal + "-1 x 1 x 0\n");
    EXPECT_EQ(report(INT_MAX, 1, 2), illegal + "2147483647 x 1 x 2\n");
    ImageHeader header = Distinct;
    header.x_dim = header.y_dim = 65536;
    header.num_slices = 0;
    EXPECT_EQ(ending([&] { checked_plane_size(header); }), illegal + "65536 x 65536 x 0\n");
    header = Distinct;
    header.num_beds = INT_MAX;
    EXPECT_EQ(ending([&] { checked_volume_count(header); }),
              "status 0: illegal number of frames and beds: 101 and 2147483647\n");
    header.num_beds = 1;
    EXPECT_EQ(checked_volume_count(header), 202U);
}

TEST(Allocators, ReportWhatTheyCanNotGet)
{
    EXPECT_NE(Block<unsigned char>(allocate_char_zero(0, "nothing")), nullptr);
    EXPECT_EQ(ending([] { allocate_int_zero(-1048576, "hist"); }),
              "status 0: can't allocate memory for hist (-4194KB)\n");
    const std::string label(300, 'l');
    EXPECT_EQ(ending([&] { allocate_float(-1, label.c_str()); }),
              "status 0: can't allocate memory for " + label.substr(0, 199) + "\n");
}
