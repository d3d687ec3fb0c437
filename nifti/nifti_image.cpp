#include "nifti/nifti_image.h"

#include "companions/regular_file.h"
#include "prefs/error_report.h"
#include "prefs/file_handle.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include <nifti2_io.h>
#include <zlib.h>

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

// What the library makes of a header of either version. It trusts the number of dimensions with its
// own memory, and is asked only where that number is one.
template <class Header>
static LibraryImage convert_header(const Header *header, const char *name,
                                   nifti_image *(*convert)(Header, const char *))
{
    const bool sound = header != nullptr && header->dim[0] >= 1 && header->dim[0] <= 7;
    return LibraryImage(sound ? convert(*header, name) : nullptr);
}

// Swapped: whether the header, which is in the byte order of the host by now, and so the data are in the
// other one.
static LibraryImage read_header_of(const char *name, bool &swapped)
{
    int version = 0;
    const LibraryMemory<void> any(nifti_read_header(name, &version, 0));
    int other_order = 0;
    LibraryImage read;
    if (any != nullptr && version == 1) {
        const LibraryMemory<nifti_1_header> header(nifti_read_n1_hdr(name, &other_order, 0));
        read = convert_header(header.get(), name, nifti_convert_n1hdr2nim);
    } else if (any != nullptr && version == 2) {
        const LibraryMemory<nifti_2_header> header(nifti_read_n2_hdr(name, &other_order, 0));
        read = convert_header(header.get(), name, nifti_convert_n2hdr2nim);
    }
    swapped = other_order != 0;
    return read;
}

static LibraryImage read_with_library(const char *path, bool &swapped)
{
    if (is_special(path)) {
        print_error_message(2, "can't open ", path);
    }
    open_or_report(path, "rb");
    nifti_set_debug_level(0);
    const LibraryMemory<char> name(nifti_findhdrname(path));
    LibraryImage read(name == nullptr ? nullptr : read_header_of(name.get(), swapped));
    const bool known =
        read != nullptr &&
        (read->nifti_type == NIFTI_FTYPE_NIFTI1_1 || read->nifti_type == NIFTI_FTYPE_NIFTI1_2 ||
         read->nifti_type == NIFTI_FTYPE_NIFTI2_1 || read->nifti_type == NIFTI_FTYPE_NIFTI2_2);
    if (!known || read->iname == nullptr || read->iname_offset < 0) {
        print_error_message(2, "no NIfTI-1 or NIfTI-2 image: ", path);
    }
    return read;
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

static void take_scaling(const nifti_image &read, const char *path, NiftiImage &image)
{
    const bool scaled = read.scl_slope != 0.0;
    image.slope = scaled ? read.scl_slope : 1.0;
    image.intercept = scaled ? read.scl_inter : 0.0;
    if (!std::isfinite(image.slope) || !std::isfinite(image.intercept)) {
        print_error_message(2, "illegal scaling in ", path);
    }
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

static std::int64_t volume_bytes(const NiftiImage &image)
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

NiftiImage read_nifti_header(const char *path)
{
    bool swapped = false;
    const LibraryImage read = read_with_library(path, swapped);
    const TypeRow &type = find_type(*read, path);
    NiftiImage image{};
    image.data_path = read->iname;
    image.data_offset = read->iname_offset;
    image.compressed = nifti_is_gzfile(read->iname) != 0;
    image.swapped_bytes = swapped ? read->swapsize : 0;
    image.type = type.type;
    image.value_bytes = type.bytes;
    take_dimensions(*read, path, image);
    take_scaling(*read, path, image);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        image.spacing.at(axis) = std::fabs(read->pixdim[axis + 1]) * millimetres(read->xyz_units);
    }
    if (read->sform_code > 0) {
        image.sform = take_affine(read->sto_xyz, read->xyz_units);
    }
    if (read->qform_code > 0) {
        image.qform = take_affine(read->qto_xyz, read->xyz_units);
    }
    check_file_size(image);
    return image;
}

void NiftiData::Close::operator()(gzFile_s *open_file) const
{
    gzclose(open_file);
}

static void report_damage(const NiftiImage &image)
{
    print_error_message(2, "too short for its header, or damaged: ", image.data_path.c_str());
}

// What isn't compressed is read as it is.
NiftiData::NiftiData(const NiftiImage &whole)
    : image(whole), file(gzopen(image.data_path.c_str(), "rb")),
      unread(volume_bytes(image) * image.frames), buffer(std::size_t{1} << 20U)
{
    if (file == nullptr) {
        print_error_message(2, "can't open ", image.data_path.c_str());
    }
    if (gzseek(file.get(), image.data_offset, SEEK_SET) < 0) {
        report_damage(image);
    }
}

// The last time it asks for a byte too many: only then zlib looks at the sum, and tells that the file ends
// too early.
void NiftiData::fill()
{
    const auto size = static_cast<std::int64_t>(buffer.size());
    const bool last = unread < size;
    const std::int64_t wanted = last ? unread + 1 : size / 2;
    const int count = gzread(file.get(), buffer.data(), static_cast<unsigned>(wanted));
    int error = Z_OK;
    gzerror(file.get(), &error);
    const std::int64_t needed = last ? unread : wanted;
    if (count < needed || error != Z_OK) {
        report_damage(image);
    }
    held = std::span(buffer).first(static_cast<std::size_t>(needed));
    unread -= needed;
}

void NiftiData::read(std::span<std::uint8_t> bytes)
{
    for (std::span<std::uint8_t> rest = bytes; !rest.empty();) {
        if (held.empty()) {
            fill();
        }
        const std::size_t count = std::min(rest.size(), held.size());
        std::ranges::copy(held.first(count), rest.begin());
        held = held.subspan(count);
        rest = rest.subspan(count);
    }
    if (image.swapped_bytes > 1) {
        const auto values = static_cast<std::int64_t>(bytes.size() / image.value_bytes);
        nifti_swap_Nbytes(values, image.swapped_bytes, bytes.data());
    }
}

} // namespace velmorant
