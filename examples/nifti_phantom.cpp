#include "examples/nifti_phantom.h"

#include "image/flip_image.h"
#include "image/image_geometry.h"
#include "prefs/error_report.h"
#include "prefs/numbers.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include <nifti2_io.h>

using namespace velmorant;

namespace phantom
{

namespace
{

struct FreeImage {
    void operator()(nifti_image *image) const
    {
        nifti_image_free(image); // with its data and names
    }
};
using LibraryImage = std::unique_ptr<nifti_image, FreeImage>;

} // namespace

static constexpr double Step = 0.002; // kBq/ml

static void place_in_space(nifti_image &image, const ImageHeader &header)
{
    const std::array<double, 3> spacing{static_cast<double>(header.pixel_size_x),
                                        static_cast<double>(header.pixel_size_y),
                                        static_cast<double>(header.slice_thickness)};
    image.dx = image.pixdim[1] = spacing[0];
    image.dy = image.pixdim[2] = spacing[1];
    image.dz = image.pixdim[3] = spacing[2];
    image.xyz_units = NIFTI_UNITS_MM;
    image.sform_code = NIFTI_XFORM_SCANNER_ANAT;
    image.sto_xyz = {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        // The middle of the volume is where all coordinates are 0.
        image.sto_xyz.m[axis][axis] = spacing.at(axis);
        image.sto_xyz.m[axis][3] =
            -spacing.at(axis) * static_cast<double>(image.dim[axis + 1] - 1) / 2.0;
    }
    image.sto_xyz.m[3][3] = 1.0;
}

void write_nifti(const char *image, float *study, const ImageHeader &header)
{
    const std::array<std::int64_t, 8> dim{4, header.x_dim, header.y_dim, header.num_slices,
                                          header.num_frames};
    const LibraryImage made(nifti_make_new_nim(dim.data(), DT_INT16, 1));
    if (made == nullptr || nifti_set_filenames(made.get(), image, 0, 1) != 0) {
        print_error_message(2, "can't write ", image);
    }
    place_in_space(*made, header);
    made->scl_slope = Step;
    flip_image_multiframe(study, header, 0, 0, 0);
    auto *values = static_cast<std::int16_t *>(made->data);
    for (std::int32_t i = 0; i < checked_study_size(header); ++i) {
        values[i] = static_cast<std::int16_t>(
            truncate_to_int32(static_cast<double>(study[i]) / Step + 0.5));
    }
    nifti_image_write(made.get());
    // Which doesn't say whether it could.
    if (LibraryImage(nifti_image_read(image, 1)) == nullptr) {
        print_error_message(2, "can't write ", image);
    }
}

} // namespace phantom
