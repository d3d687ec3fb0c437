// make_phantom FOLDER [X Y SLICES [FRAMES BEDS]]: writes a made-up PET study in two raw formats.
//   FOLDER/phantom.img, .hdr        signed 16-bit, little-endian, reversed on every axis
//   FOLDER/phantom-float.img, .hdr  float, big-endian, in the standard orientation
// Without dimensions: 128 x 128 x 40, 4 frames, 2 beds. Ends with status 0, or with 1 after a
// message about its arguments. A file that can't be written is reported by the library: a line on
// standard output, and status 0.

#include "examples/phantom.h"
#include "image/allocate.h"
#include "image/image_geometry.h"
#include "image/image_header.h"
#include "image/raw_writer.h"
#include "prefs/numbers.h"

#include <array>
#include <cstdio>
#include <string>

using namespace velmorant;

// Every frame of every bed, in the order of a raw file.
static Block<float> make_study(const ImageHeader &header)
{
    const std::size_t size = checked_image_size(header);
    const auto total = static_cast<std::int32_t>(checked_volume_count(header) * size);
    Block<float> study(allocate_float(total, "phantom"));
    float *volume = study.get();
    for (std::int32_t bed = 0; bed <= header.num_beds; ++bed) {
        for (std::int32_t frame = 1; frame <= header.num_frames; ++frame) {
            phantom::fill_volume(volume, header, frame, bed);
            volume += size;
        }
    }
    return study;
}

int main(int argc, char **argv)
{
    std::array<std::int32_t, 5> sizes{128, 128, 40, 4, 2};
    if (argc != 2 && argc != 5 && argc != 7) {
        std::fputs("Usage: make_phantom FOLDER [X Y SLICES [FRAMES BEDS]]\n", stderr);
        return 1;
    }
    for (int i = 2; i < argc; ++i) {
        const std::int32_t size = text_to_int32(argv[i]);
        if (size < 1) {
            std::fprintf(stderr, "make_phantom: not a size: %s\n", argv[i]);
            return 1;
        }
        sizes.at(static_cast<std::size_t>(i) - 2) = size;
    }
    const auto [x_dim, y_dim, num_slices, frames, beds] = sizes;
    const std::string folder(argv[1]);

    ImageHeader header = phantom::describe(x_dim, y_dim, num_slices, frames, beds);
    const Block<float> study = make_study(header);
    const FormatSetting scaled_to_extreme{};

    header.data_format = 3;
    write_image_matrix_binary_multiple_float((folder + "/phantom-float.img").c_str(), study.get(),
                                             header, scaled_to_extreme, 0.0F, 0.0F);

    header.data_format = 1;
    header.byte_order = 0;
    header.right_on_left = header.anterior_to_posterior = header.superior_to_inferior = 0;
    write_image_matrix_binary_multiple((folder + "/phantom.img").c_str(), study.get(), header,
                                       scaled_to_extreme, 0.0F, 0.0F);
    return 0;
}
