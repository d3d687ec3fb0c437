#include "nifti/nifti_data.h"

#include "prefs/error_report.h"

#include <algorithm>
#include <cstdio>

#include <nifti2_io.h>
#include <zlib.h>

namespace velmorant
{

void NiftiData::Close::operator()(gzFile_s *open_file) const
{
    gzclose(open_file);
}

[[noreturn]] static void report_damage(const NiftiImage &image)
{
    print_error_message(2, "too short for its header, or damaged: ", image.data_path.c_str());
}

// What isn't said to be compressed is not given to zlib, which would go by its first bytes.
NiftiData::NiftiData(const NiftiImage &whole)
    : image(whole), unread(volume_bytes(whole) * whole.frames), buffer(std::size_t{1} << 20U)
{
    bool found = false;
    if (image.compressed) {
        compressed.reset(gzopen(image.data_path.c_str(), "rb"));
        if (compressed == nullptr) {
            print_error_message(2, "can't open ", image.data_path.c_str());
        }
        found = gzseek(compressed.get(), image.data_offset, SEEK_SET) >= 0;
    } else {
        plain = open_or_report(image.data_path.c_str(), "rb");
        found = fseeko(plain.get(), image.data_offset, SEEK_SET) == 0;
    }
    if (!found) {
        report_damage(image);
    }
}

// Reads what follows the values, after which zlib knows about the sum.
static void read_rest(gzFile_s *file, std::span<std::uint8_t> room, const NiftiImage &image)
{
    int count = 0;
    do {
        count = gzread(file, room.data(), static_cast<unsigned>(room.size()));
    } while (count > 0);
    int error = Z_OK;
    gzerror(file, &error);
    if (count < 0 || error != Z_OK) {
        report_damage(image);
    }
}

static std::size_t read_some(gzFile_s *file, std::span<std::uint8_t> room)
{
    return static_cast<std::size_t>(
        std::max(0, gzread(file, room.data(), static_cast<unsigned>(room.size()))));
}

// The last time it asks for a byte too many: zlib tells that a file ends too early only when it is asked
// for something that it hasn't got.
void NiftiData::fill()
{
    const std::int64_t half = static_cast<std::int64_t>(buffer.size()) / 2;
    const auto needed = static_cast<std::size_t>(std::min(unread, half));
    const bool last = unread <= half;
    const std::span<std::uint8_t> room = std::span(buffer).first(needed + (last ? 1 : 0));
    const std::size_t count = image.compressed
                                  ? read_some(compressed.get(), room)
                                  : std::fread(room.data(), 1, room.size(), plain.get());
    if (count < needed || needed == 0) {
        report_damage(image);
    }
    held = room.first(needed);
    unread -= static_cast<std::int64_t>(needed);
    if (last && image.compressed) {
        read_rest(compressed.get(), std::span(buffer).subspan(buffer.size() / 2 + 1), image);
    }
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
