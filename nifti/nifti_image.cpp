#include "nifti/nifti_image.h"

#include "prefs/error_report.h"
#include "prefs/file_handle.h"
#include "prefs/regular_file.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <system_error>

#include <nifti2_io.h>

namespace velmorant
{

namespace
{

struct FreeImage {
    void operator()(nifti_image *image) const
    {
        nifti_image_free(image);
    }
};
using LibraryImage = std::unique_ptr<nifti_image, FreeImage>;

struct FreeMemory {
    void operator()(void *memory) const
    {
        std::free(memory);
    }
};
template <class Kind>
using LibraryMemory = std::unique_ptr<Kind, FreeMemory>;

struct TypeRow {
    int datatype; // as the format numbers it
    NiftiType type;
    std::size_t bytes;
};

} // namespace

static constexpr std::array TypeRows{
    TypeRow{DT_INT8, NiftiType::Int8, 1},       TypeRow{DT_UINT8, NiftiType::Uint8, 1},
    TypeRow{DT_INT16, NiftiType::Int16, 2},     TypeRow{DT_UINT16, NiftiType::Uint16, 2},
    TypeRow{DT_INT32, NiftiType::Int32, 4},     TypeRow{DT_UINT32, NiftiType::Uint32, 4},
    TypeRow{DT_INT64, NiftiType::Int64, 8},     TypeRow{DT_UINT64, NiftiType::Uint64, 8},
    TypeRow{DT_FLOAT32, NiftiType::Float32, 4}, TypeRow{DT_FLOAT64, NiftiType::Float64, 8}};

// The most that a byte of gzipped data can stand for.
static constexpr std::int64_t GreatestCompression = 1032;

namespace
{

// What the library makes of a header, and what it doesn't say any more then.
struct ReadHeader {
    LibraryImage image;
    bool swapped = false; // the data are in the byte order that the host's is not
    bool scaling_is_legal = true;
};

} // namespace

// The library takes an infinite scaling for none. A slope that is no number is used for none as well.
template <class Header>
static bool has_legal_scaling(const Header &header)
{
    const bool scaled = header.scl_slope != 0 && !std::isnan(header.scl_slope);
    return !scaled || (std::isfinite(header.scl_slope) && std::isfinite(header.scl_inter));
}

// header: in the byte order of the host. The library trusts its number of dimensions with its own memory,
// and is asked only where that number is one.
template <class Header>
static void take_header(const Header *header, const char *name,
                        nifti_image *(*convert)(Header, const char *), ReadHeader &read)
{
    if (header != nullptr && header->dim[0] >= 1 && header->dim[0] <= 7) {
        read.image.reset(convert(*header, name));
        read.scaling_is_legal = has_legal_scaling(*header);
    }
}

static ReadHeader read_header_file(const char *name)
{
    ReadHeader read;
    int version = 0;
    int swapped = 0;
    const LibraryMemory<void> any(nifti_read_header(name, &version, 0));
    if (any != nullptr && version == 1) {
        const LibraryMemory<nifti_1_header> header(nifti_read_n1_hdr(name, &swapped, 0));
        take_header(header.get(), name, nifti_convert_n1hdr2nim, read);
    } else if (any != nullptr && version == 2) {
        const LibraryMemory<nifti_2_header> header(nifti_read_n2_hdr(name, &swapped, 0));
        take_header(header.get(), name, nifti_convert_n2hdr2nim, read);
    }
    read.swapped = swapped != 0;
    return read;
}

// A pipe, say, that nobody may ever write to.
static void check_openable(const char *path)
{
    if (is_special(path)) {
        print_error_message(2, "can't open ", path);
    }
    open_or_report(path, "rb");
}

static bool is_nifti(int type)
{
    return type == NIFTI_FTYPE_NIFTI1_1 || type == NIFTI_FTYPE_NIFTI1_2 ||
           type == NIFTI_FTYPE_NIFTI2_1 || type == NIFTI_FTYPE_NIFTI2_2;
}

static bool are_same_file(const char *a, const char *b)
{
    std::error_code not_there;
    return std::filesystem::equivalent(a, b, not_there);
}

// Reads the header that belongs to the path, with the library, which looks for it under other names, too.
static ReadHeader read_with_library(const char *path)
{
    check_openable(path);
    nifti_set_debug_level(0);
    ReadHeader read;
    if (const LibraryMemory<char> name(nifti_findhdrname(path)); name != nullptr) {
        check_openable(name.get());
        read = read_header_file(name.get());
        const nifti_image *image = read.image.get();
        if (image != nullptr && is_nifti(image->nifti_type) && image->iname != nullptr &&
            image->iname_offset >= 0 &&
            (are_same_file(path, name.get()) || are_same_file(path, image->iname))) {
            check_openable(image->iname);
            return read;
        }
    }
    print_error_message(2, "no NIfTI-1 or NIfTI-2 image: ", path);
}

static const TypeRow &find_type(const nifti_image &read, const char *path)
{
    const auto *row = std::ranges::find(TypeRows, read.datatype, &TypeRow::datatype);
    if (row == TypeRows.end()) {
        print_error_message(4, "can't convert ", nifti_datatype_string(read.datatype),
                            " values: ", path);
    }
    return *row;
}

// One of the dimensions, which are stated up to the last one that matters.
static std::int64_t dimension(const nifti_image &read, std::size_t number)
{
    return read.dim[0] >= static_cast<std::int64_t>(number) ? read.dim[number] : 1;
}

static void take_dimensions(const nifti_image &read, const char *path, NiftiImage &image)
{
    for (std::size_t number = 5; number <= 7; ++number) {
        if (dimension(read, number) > 1) {
            print_error_message(2, "more than four dimensions in ", path);
        }
    }
    std::int64_t pixels = 1;
    for (std::size_t number = 1; number <= 4; ++number) {
        const std::int64_t count = dimension(read, number);
        constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
        if (count < 1 || count > most || (number < 4 && pixels > most / count)) {
            print_error_message(2, "illegal image dimensions in ", path);
        }
        if (number < 4) {
            pixels *= count;
            image.size.at(number - 1) = static_cast<std::int32_t>(count);
        } else {
            image.frames = static_cast<std::int32_t>(count);
        }
    }
}

static void take_scaling(const nifti_image &read, NiftiImage &image)
{
    const bool scaled = read.scl_slope != 0.0;
    image.slope = scaled ? read.scl_slope : 1.0;
    image.intercept = scaled ? read.scl_inter : 0.0;
}

static double millimetres(int units)
{
    if (units == NIFTI_UNITS_METER) {
        return 1000.0;
    }
    return units == NIFTI_UNITS_MICRON ? 0.001 : 1.0;
}

static Affine take_affine(const nifti_dmat44 &matrix, int units)
{
    Affine affine{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            affine.at(row).at(column) = matrix.m[row][column] * millimetres(units);
        }
    }
    return affine;
}

std::int64_t volume_bytes(const NiftiImage &image)
{
    return std::int64_t{image.size[0]} * image.size[1] * image.size[2] *
           static_cast<std::int64_t>(image.value_bytes);
}

// Before memory is asked for, a header that promises more than the file can hold is refused.
static void check_file_size(const NiftiImage &image)
{
    const FileHandle file = open_or_report(image.data_path.c_str(), "rb");
    const std::int64_t bytes = file_size(file.get());
    const std::int64_t room = image.compressed ? bytes * GreatestCompression : bytes;
    if (image.data_offset > room ||
        (room - image.data_offset) / volume_bytes(image) < image.frames) {
        print_error_message(2, "too short for its header: ", image.data_path.c_str());
    }
}

// The library takes a negative spacing for 1.
static nifti_dmat44 qform_of(const nifti_image &read)
{
    return nifti_quatern_to_dmat44(read.quatern_b, read.quatern_c, read.quatern_d, 0.0, 0.0, 0.0,
                                   std::fabs(read.dx), std::fabs(read.dy), std::fabs(read.dz),
                                   read.qfac);
}

NiftiImage read_nifti_header(const char *path)
{
    const ReadHeader header = read_with_library(path);
    const nifti_image &read = *header.image;
    const TypeRow &type = find_type(read, path);
    NiftiImage image{};
    image.header_path = read.fname;
    image.data_path = read.iname;
    image.data_offset = read.iname_offset;
    image.compressed = nifti_is_gzfile(read.iname) != 0;
    image.swapped_bytes = header.swapped ? read.swapsize : 0;
    image.type = type.type;
    image.value_bytes = type.bytes;
    take_dimensions(read, path, image);
    if (!header.scaling_is_legal) {
        print_error_message(2, "illegal scaling in ", path);
    }
    take_scaling(read, image);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        image.spacing.at(axis) = std::fabs(read.pixdim[axis + 1]) * millimetres(read.xyz_units);
    }
    if (read.sform_code > 0) {
        image.sform = take_affine(read.sto_xyz, read.xyz_units);
    }
    if (read.qform_code > 0) {
        image.qform = take_affine(qform_of(read), read.xyz_units);
    }
    check_file_size(image);
    return image;
}

} // namespace velmorant
