#include "ecat/image_reader.h"

#include "ecat/blocks.h"
#include "ecat/directory_index.h"
#include "ecat/headers.h"
#include "ecat/matrix_number.h"
#include "ecat/plane_order.h"
#include "image/image_geometry.h"
#include "image/stored_volume.h"
#include "prefs/end_run.h"
#include "prefs/error_report.h"
#include "prefs/file_handle.h"
#include "prefs/regular_file.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

namespace velmorant
{

namespace
{

// A file and the part of its directory that is known, for the time of one call.
struct OpenStudy {
    explicit OpenStudy(const char *file_name);
    std::int32_t close();

    FileHandle file;
    DirectoryIndex directory;
};

// What the matrices of a file have in common, 0 before the first is read.
struct CommonGeometry {
    float pixel_size; // cm
    std::int32_t x_dim;
    std::int32_t y_dim;
};

} // namespace

static FileHandle open_to_read(const char *file_name)
{
    FileHandle file(mat_open(file_name, "rb"));
    if (!file) {
        print_error_message(2, "can't open ", file_name);
    }
    return file;
}

OpenStudy::OpenStudy(const char *file_name) : file(open_to_read(file_name)), directory(file.get())
{
}

std::int32_t OpenStudy::close()
{
    return mat_close(file.release());
}

// The directory entry of a matrix, or null, said in a line that is not ended.
static const MatDirEntry *find_or_say(OpenStudy &study, const ImageMatrix &matrix)
{
    const MatDirEntry *entry = study.directory.find(
        mat_numcod(matrix.frame, matrix.plane, matrix.gate, matrix.data, matrix.bed));
    if (entry == nullptr) {
        std::printf("matrix (%d,%d,%d,%d,%d) not found...", matrix.frame, matrix.plane, matrix.gate,
                    matrix.data, matrix.bed);
    }
    return entry;
}

static bool differ(double a, double b)
{
    return std::fabs(a - b) > 1e-20;
}

// Ends the run where a matrix doesn't go with the one visited before it.
static void check_subheader(const MatImageSubheader &subheader, const CommonGeometry &previous)
{
    const auto pixel_size = static_cast<double>(subheader.pixel_size);
    const auto previous_size = static_cast<double>(previous.pixel_size);
    if (pixel_size <= 0.0) {
        print_error_message(1, "illegal pixel size in the subheader");
    }
    if (differ(previous_size, 0.0) && differ(previous_size, pixel_size)) {
        print_error_message(1, "inconsistent pixel size among frames");
    }
    if (subheader.x_dimension < 1 || subheader.y_dimension < 1) {
        print_error_message(1, "illegal dimensions");
    }
    if ((previous.x_dim != 0 && previous.x_dim != subheader.x_dimension) ||
        (previous.y_dim != 0 && previous.y_dim != subheader.y_dimension)) {
        print_error_message(1, "inconsisten dimensions among frames");
    }
}

// Takes over what the matrix's subheader says. False where the directory lacks the matrix.
static bool visit_matrix(OpenStudy &study, const ImageMatrix &matrix, CommonGeometry &geometry)
{
    const MatDirEntry *entry = find_or_say(study, matrix);
    if (entry == nullptr) {
        std::puts("\nCHECK A POSSIBLE PROBLEM IN THE MAIN HEADER...\n"
                  "THE PROGRAM MAY FAIL IN THE FURTHER PROCESSING...");
        return false;
    }
    MatImageSubheader subheader{};
    mat_read_image_subheader(study.file.get(), entry->first_block, subheader);
    check_subheader(subheader, geometry);
    geometry = {subheader.pixel_size, subheader.x_dimension, subheader.y_dimension};
    return true;
}

static bool promises_matrices(const ImageHeader &header)
{
    return header.num_frames >= 1 && header.num_slices >= 1 && header.num_gates >= 1 &&
           header.num_beds >= 0;
}

// Visits every matrix that the header promises. A damaged header may promise thousands of millions;
// the file's own matrices bound the visit.
static CommonGeometry visit_matrices(OpenStudy &study, const ImageHeader &promised)
{
    const ImageMatrix counts = shorten_runs({.frame = promised.num_frames,
                                             .plane = promised.num_slices,
                                             .gate = promised.num_gates,
                                             .data = 1,
                                             .bed = promised.num_beds + 1});
    CommonGeometry geometry{};
    if (!promises_matrices(promised)) {
        return geometry;
    }
    for (std::int32_t bed = 0; bed < counts.bed; ++bed) {
        for (std::int32_t frame = 1; frame <= counts.frame; ++frame) {
            for (std::int32_t plane = 1; plane <= counts.plane; ++plane) {
                for (std::int32_t gate = 1; gate <= counts.gate; ++gate) {
                    if (!visit_matrix(study, {frame, plane, gate, 0, bed}, geometry)) {
                        return geometry;
                    }
                }
            }
        }
    }
    return geometry;
}

std::int32_t read_header_cti6(const char *file_name, ImageHeader &header)
{
    OpenStudy study(file_name);
    MatMainHeader main_header{};
    mat_read_main_header(study.file.get(), main_header);
    header.num_frames = main_header.num_frames;
    header.num_slices = main_header.num_planes;
    header.num_gates = main_header.num_gates == 0 ? 1 : main_header.num_gates;
    header.num_data = 0;
    header.num_beds = main_header.num_bed_positions;

    const CommonGeometry geometry = visit_matrices(study, header);
    header.x_dim = geometry.x_dim;
    header.y_dim = geometry.y_dim;
    header.pixel_size_x = header.pixel_size_y = 10.0F * geometry.pixel_size;
    header.slice_thickness = 10.0F * main_header.plane_separation;
    header.right_on_left = 1;
    header.anterior_to_posterior = 1;
    header.superior_to_inferior = 1;
    header.data_offset = 0;
    header.byte_order = 1;
    return study.close();
}

static constexpr std::int32_t PixelsPerBlock = BlockBytes / sizeof(std::int16_t);

std::int32_t unread_pixels_cti6(const ImageHeader &header)
{
    return checked_plane_size(header) % PixelsPerBlock;
}

StoredPart locate_plane(std::FILE *stream, std::int64_t file_bytes, const MatDirEntry &entry,
                        const ImageHeader &header)
{
    MatImageSubheader subheader{};
    mat_read_image_subheader(stream, entry.first_block, subheader);
    const std::int32_t blocks = checked_plane_size(header) / PixelsPerBlock;
    // A block that was read has a number with room for one more.
    return {.offset = mat_locate_blocks(file_bytes, entry.first_block + 1, blocks),
            .elements = std::int64_t{blocks} * PixelsPerBlock,
            .factor = subheader.scale_factor,
            .rest = 0.0F * subheader.scale_factor};
}

StoredVolume unopened_volume_cti6(const char *file_name, const ImageHeader &header,
                                  std::endian byte_order)
{
    const std::int32_t size = checked_plane_size(header);
    StoredVolume volume{
        .file = nullptr,
        .name = file_name,
        .header = header,
        .type = StoredType::SignedShort,
        .byte_order = byte_order,
        .part_pixels = size,
        .parts = {},
        .short_read = BlockReadError,
        .buffer = allocate_read_buffer(2 * static_cast<std::uint64_t>(size), "in-plane buffer")};
    ImageHeader &stored = volume.header;
    stored.right_on_left = stored.anterior_to_posterior = stored.superior_to_inferior = 1;
    return volume;
}

// Opens the planes from the first one's coordinates to the last frame and bed, and in each volume
// to the last plane, as one volume. line_end: what ends the line about a missing plane.
static StoredVolume open_planes(const char *file_name, const ImageHeader &header,
                                const ImageMatrix &first, std::int32_t last_frame,
                                std::int32_t last_bed, std::endian byte_order, const char *line_end)
{
    StoredVolume volume = unopened_volume_cti6(file_name, header, byte_order);
    OpenStudy study(file_name);
    std::FILE *stream = study.file.get();
    const std::int64_t file_bytes = bytes_to_read(stream);
    const auto add_plane = [&](const ImageMatrix &plane) {
        const MatDirEntry *entry = find_or_say(study, plane);
        if (entry == nullptr) {
            std::fputs(line_end, stdout);
            end_run(-1);
        }
        const StoredPart part = locate_plane(stream, file_bytes, *entry, header);
        // Planes without pixels need no part. There may be any number of them.
        if (volume.part_pixels > 0) {
            volume.parts.push_back(part);
        }
    };
    visit_planes(first, {.frame = last_frame, .plane = header.num_slices, .bed = last_bed},
                 add_plane);
    volume.file = std::move(study.file);
    if (volume.parts.size() > std::numeric_limits<std::int32_t>::max()) {
        print_error_message(1, "more planes than a volume can have");
    }
    volume.header.num_slices = static_cast<std::int32_t>(volume.parts.size());
    return volume;
}

StoredVolume open_volume_cti6(const char *file_name, const ImageHeader &header,
                              const ImageMatrix &selector)
{
    return open_planes(file_name, header, selector, selector.frame, selector.bed,
                       std::endian::little, "");
}

static std::int32_t read_planes(StoredVolume volume, float *pixels)
{
    read_box(volume, whole_volume(volume.header), pixels);
    return mat_close(volume.file.release());
}

std::int32_t read_image_planes_cti6(const char *file_name, float *pixels, const ImageHeader &header,
                                    const ImageMatrix &selector)
{
    return read_planes(open_volume_cti6(file_name, header, selector), pixels);
}

std::int32_t read_image_planes_cti6_swap_byte_order(const char *file_name, float *pixels,
                                                    const ImageHeader &header,
                                                    const ImageMatrix &selector)
{
    return read_planes(open_planes(file_name, header, selector, selector.frame, selector.bed,
                                   std::endian::big, ""),
                       pixels);
}

std::int32_t read_image_matrix_cti6(const char *file_name, float *pixels, const ImageHeader &header,
                                    const ImageMatrix &selector)
{
    return read_planes(open_planes(file_name, header, selector, header.num_frames, header.num_beds,
                                   std::endian::little, "\n"),
                       pixels);
}

} // namespace velmorant
