// A NIfTI image, as it is and as a compressed file: header, orientation, storage and values.

#include "fuzz/harness.h"
#include "nifti/conversion.h"
#include "prefs/file_handle.h"

#include <unistd.h>

using namespace velmorant;

static void convert(const char *path)
{
    static const FileHandle output(std::fopen("o.img", "w+b"));
    const NiftiImage image = read_nifti_header(path);
    const Affine letters = affine_from_letters("LAS", image.spacing).value();
    const auto order = find_axis_order(image.sform.value_or(image.qform.value_or(letters)));
    if (!order) {
        return;
    }
    const auto quiet = [](const char * /*doing*/, std::int32_t /*frame*/) {
    };
    std::rewind(output.get());
    fuzz::require(ftruncate(fileno(output.get()), 0) == 0, "an empty file");
    const RawStorage storage = choose_storage(image, quiet);
    write_frames(image, *order, storage, output.get(), quiet);
    const ImageHeader header = describe_raw(image, *order, storage);
    fuzz::require(header.x_dim > 0 && header.y_dim > 0 && header.num_slices > 0, "dimensions");
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzz::InputFile plain("a.nii");
    static const fuzz::InputFile compressed("b.nii.gz");
    plain.write(fuzz::as_text(data, size));
    compressed.write(fuzz::as_text(data, size));
    fuzz::make_run([] { convert("a.nii"); });
    return fuzz::make_run([] { convert("b.nii.gz"); });
}
