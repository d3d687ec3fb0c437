#include "companions/ecat_study.h"

#include "ecat/directory.h"
#include "ecat/headers.h"
#include "ecat/image_reader.h"
#include "ecat/matrix_number.h"
#include "image/format_dispatch.h"
#include "image/image_geometry.h"
#include "image/stored_volume.h"
#include "prefs/file_handle.h"
#include "prefs/regular_file.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace velmorant
{

namespace
{

struct EcatStudy {
    FileHandle file;
    std::int64_t blocks; // whole ones in the file
    MatMainHeader main_header;
    // How many of each coordinate the main header promises.
    ImageMatrix promised;
    std::unordered_map<std::uint32_t, MatDirEntry> matrices; // by number
    std::optional<MatImageSubheader> first; // of the first plane that has a readable one
    // The first blocks of the planes that were looked at, each with its last.
    std::map<std::int64_t, std::int64_t> occupied;
};

// Frames that follow one another, of one bed.
struct Frames {
    std::int32_t first;
    std::int32_t last;
    std::int32_t bed;
};

// What can be wrong with a plane, in the order in which it is looked for.
enum PlaneFault : std::size_t { Missing, Cut, Unlike, Shared };
constexpr std::array PlaneFaults{" missing", " not wholly in the file",
                                 " of no size, or of another than the first",
                                 " in the blocks of others"};

// How many planes of a volume share a fault, and which is the first.
struct FaultCount {
    std::int32_t planes = 0;
    std::int32_t first_plane = 0;
    bool operator==(const FaultCount &) const = default;
};
using VolumeFaults = std::array<FaultCount, PlaneFaults.size()>;

} // namespace

// Of matrices with the same number the first counts, as in `mat_lookup`.
static void read_matrices(StudyReport &report, EcatStudy &study)
{
    DirectoryWalk walk(study.file.get());
    for (DirectoryBlock block{};;) {
        const std::int32_t next = walk.next_block_number();
        if (next < FirstDirectoryBlock || next > study.blocks) {
            report_fault(report, "the directory goes on in block " + std::to_string(next) +
                                     ", which is not in the file");
            return;
        }
        if (!walk.read_next(block)) {
            return;
        }
        for (const MatDirEntry &entry : block.entries) {
            study.matrices.try_emplace(static_cast<std::uint32_t>(entry.matrix_number), entry);
        }
    }
}

static EcatStudy open_study(StudyReport &report)
{
    EcatStudy study{};
    study.file = open_or_report(report.image, "rb");
    study.blocks = file_size(study.file.get()) / static_cast<std::int64_t>(BlockBytes);
    mat_read_main_header(study.file.get(), study.main_header);
    const MatMainHeader &header = study.main_header;
    study.promised = {.frame = header.num_frames,
                      .plane = header.num_planes,
                      .gate = header.num_gates == 0 ? 1 : header.num_gates,
                      .data = 1,
                      .bed = header.num_bed_positions + 1};
    read_matrices(report, study);
    return study;
}

// Whether each plane that the main header promises has a number of its own; says what is wrong.
static bool check_promise(StudyReport &report, const ImageMatrix &promised)
{
    if (promised.gate > 1) {
        report_fault(report, "it is gated, which tiffgen doesn't show");
    }
    if (promised.frame < 1 || promised.plane < 1 || promised.gate < 1 || promised.bed < 1) {
        report_fault(report, "the main header promises no planes");
        return false;
    }
    constexpr std::int32_t MostGates = 64;
    if (!are_distinct(promised.frame, promised.plane, promised.bed - 1) ||
        promised.gate > MostGates) {
        report_fault(report,
                     "more than the 4096 frames, 256 planes, 64 gates and 16 beds that have "
                     "numbers of their own");
        return false;
    }
    return true;
}

// As many blocks of a plane's data as are read.
static std::int64_t data_blocks(const MatImageSubheader &subheader)
{
    const std::int64_t bytes = std::int64_t{2} * subheader.x_dimension * subheader.y_dimension;
    return bytes / static_cast<std::int64_t>(BlockBytes);
}

static bool has_size_of(const MatImageSubheader &subheader, const MatImageSubheader &first)
{
    return subheader.x_dimension >= 1 && subheader.y_dimension >= 1 && subheader.pixel_size > 0 &&
           subheader.x_dimension == first.x_dimension &&
           subheader.y_dimension == first.y_dimension && subheader.pixel_size == first.pixel_size;
}

// False where another plane has one of the blocks.
static bool occupy(EcatStudy &study, std::int64_t first_block, std::int64_t last_block)
{
    const auto next = study.occupied.upper_bound(last_block);
    if (next != study.occupied.begin() && std::prev(next)->second >= first_block) {
        return false;
    }
    study.occupied.emplace(first_block, last_block);
    return true;
}

static const MatDirEntry *find_matrix(const EcatStudy &study, const ImageMatrix &plane)
{
    const auto found = study.matrices.find(
        mat_numcod(plane.frame, plane.plane, plane.gate, plane.data, plane.bed));
    return found == study.matrices.end() ? nullptr : &found->second;
}

static std::optional<PlaneFault> find_fault(EcatStudy &study, const ImageMatrix &plane)
{
    const MatDirEntry *entry = find_matrix(study, plane);
    if (entry == nullptr) {
        return Missing;
    }
    const std::int64_t first_block = entry->first_block;
    if (first_block <= FirstDirectoryBlock || first_block > study.blocks) {
        return Cut;
    }
    MatImageSubheader subheader{};
    mat_read_image_subheader(study.file.get(), entry->first_block, subheader);
    if (!study.first) {
        study.first = subheader;
    }
    if (!has_size_of(subheader, *study.first)) {
        return Unlike;
    }
    const std::int64_t last_block = first_block + data_blocks(subheader);
    if (last_block > study.blocks || last_block > entry->last_block) {
        return Cut;
    }
    if (!occupy(study, first_block, last_block)) {
        return Shared;
    }
    return std::nullopt;
}

// A plane counts once, with the first fault of its gates.
static VolumeFaults find_faults(EcatStudy &study, const Volume &volume)
{
    VolumeFaults faults{};
    for (std::int32_t plane = 1; plane <= study.promised.plane; ++plane) {
        std::optional<PlaneFault> fault;
        for (std::int32_t gate = 1; gate <= study.promised.gate && !fault; ++gate) {
            fault = find_fault(study, {volume.frame, plane, gate, 0, volume.bed});
        }
        if (fault) {
            FaultCount &count = faults.at(*fault);
            count.first_plane = count.planes == 0 ? plane : count.first_plane;
            ++count.planes;
        }
    }
    return faults;
}

static std::string frames_name(const Frames &frames)
{
    return frames.first == frames.last
               ? volume_name({frames.first, frames.bed})
               : "frames " + std::to_string(frames.first) + " to " + std::to_string(frames.last) +
                     ", bed " + std::to_string(frames.bed);
}

// Says what is wrong with the volumes of frames that follow one another.
static void report_faults(StudyReport &report, const EcatStudy &study, const Frames &frames,
                          const VolumeFaults &faults)
{
    for (std::size_t fault = 0; fault < faults.size(); ++fault) {
        const FaultCount &count = faults.at(fault);
        if (count.planes > 0) {
            report_fault(report, frames_name(frames) + ": " + std::to_string(count.planes) +
                                     " of " + std::to_string(study.promised.plane) + " planes" +
                                     PlaneFaults.at(fault) + ", the first is plane " +
                                     std::to_string(count.first_plane));
        }
    }
}

// The volumes in which nothing is wrong, in the program's order. Says what is wrong with the
// others, at once for frames that follow one another and lack the same.
static std::vector<Volume> find_whole_volumes(StudyReport &report, EcatStudy &study)
{
    std::vector<Volume> whole;
    for (std::int32_t bed = 0; bed < study.promised.bed; ++bed) {
        Frames alike{1, 1, bed};
        VolumeFaults faults = find_faults(study, {1, bed});
        for (std::int32_t frame = 1; frame <= study.promised.frame; ++frame) {
            if (faults == VolumeFaults{}) {
                whole.push_back({frame, bed});
            }
            alike.last = frame;
            const bool is_last = frame == study.promised.frame;
            const VolumeFaults next =
                is_last ? VolumeFaults{} : find_faults(study, {frame + 1, bed});
            if (is_last || next != faults) {
                report_faults(report, study, alike, faults);
                alike.first = frame + 1;
            }
            faults = next;
        }
    }
    return whole;
}

static ImageHeader describe_study(const EcatStudy &study)
{
    ImageHeader header{};
    create_standard_image_header(header);
    header.num_frames = study.promised.frame;
    header.num_slices = study.promised.plane;
    header.num_gates = study.promised.gate;
    header.num_beds = study.promised.bed - 1;
    header.slice_thickness = 10.0F * study.main_header.plane_separation;
    if (study.first) {
        header.x_dim = study.first->x_dimension;
        header.y_dim = study.first->y_dimension;
        header.pixel_size_x = header.pixel_size_y = 10.0F * study.first->pixel_size;
    }
    return header;
}

// Measures the whole volumes, one after the other.
static void report_ranges(StudyReport &report, EcatStudy &study, const ImageHeader &header,
                          const std::vector<Volume> &whole)
{
    StoredVolume stored = unopened_volume_cti6(report.image, header, std::endian::little);
    const std::int64_t bytes = study.blocks * static_cast<std::int64_t>(BlockBytes);
    stored.file = std::move(study.file);
    for (const Volume &volume : whole) {
        stored.parts.clear();
        for (std::int32_t plane = 1; plane <= header.num_slices; ++plane) {
            const MatDirEntry *entry = find_matrix(study, {volume.frame, plane, 1, 0, volume.bed});
            stored.parts.push_back(locate_plane(stored.file.get(), bytes, *entry, header));
        }
        report_range(report, volume, measure_volume(stored));
    }
}

void check_ecat_study(StudyReport &report)
{
    EcatStudy study = open_study(report);
    const bool promised = check_promise(report, study.promised);
    const std::vector<Volume> whole =
        promised ? find_whole_volumes(report, study) : std::vector<Volume>{};
    const ImageHeader header = describe_study(study);
    report_geometry(report, header);
    std::fprintf(report.facts, "gates: %d\n", header.num_gates);
    if (!promised) {
        return;
    }
    check_image_geometry(header, report.image);
    const std::int32_t unread = unread_pixels(header, report.keyword);
    if (unread > 0) {
        std::fprintf(report.facts, "pixels at the end of each plane that are read as 0: %d\n",
                     unread);
    }
    if (!whole.empty()) {
        report_ranges(report, study, header, whole);
    }
}

} // namespace velmorant
