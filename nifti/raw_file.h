#pragma once

#include "image/volume_box.h"
#include "prefs/error_report.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace velmorant
{

// The data file of a raw image, whose volumes are written in boxes of any order.
//
// Boxes with few pixels along x would make very short writes. Such boxes are written turned: strips
// of a slice, each of as many rows as the buffer holds, are stored with x and y swapped, and
// `finish_volume` turns each strip where it lies in the file.
//
// The members end the run with "can't write the raw image" where the file can't be sought or read
// again. Failed writes leave their mark on the stream.
template <class Word>
class RawFile
{
public:
    // file: empty, open to write and to read. size: of a volume along x, y and z. most: words that
    // the buffer for turning may hold.
    RawFile(std::FILE *file, const std::array<std::int32_t, 3> &size, bool turns, std::int32_t most)
        : stream(file), x_dim(size[0]), y_dim(size[1]), z_dim(size[2]), turned(turns),
          strip_rows(std::clamp<std::int64_t>(most / x_dim, 1, y_dim))
    {
    }

    // The order of the words of a box: x fastest, then y, then z; where boxes are turned y, x, z.
    void write_box(const VolumeBox &box, const Word *words)
    {
        turned ? write_turned(box, words) : write_straight(box, words);
    }

    // After the boxes of a volume; the next volume follows.
    void finish_volume()
    {
        const std::int64_t end = volume + x_dim * y_dim * z_dim;
        std::vector<Word> rows(turned ? static_cast<std::size_t>(strip_rows * x_dim) : 0);
        for (std::int64_t slice = volume; turned && slice < end; slice += x_dim * y_dim) {
            for (std::int64_t y = 0; y < y_dim; y += strip_rows) {
                turn_strip(slice + y * x_dim, std::min(strip_rows, y_dim - y), rows);
            }
        }
        volume = end;
    }

private:
    void write_straight(const VolumeBox &box, const Word *words)
    {
        // Whole rows and slices that follow one another are one write.
        std::int64_t run = box.width;
        std::int64_t rows = box.height;
        std::int64_t slices = box.depth;
        if (run == x_dim) {
            run *= rows;
            rows = 1;
        }
        if (run == x_dim * y_dim) {
            run *= slices;
            slices = 1;
        }
        for (std::int64_t z = box.z; z < box.z + slices; ++z) {
            for (std::int64_t y = box.y; y < box.y + rows; ++y) {
                words = write((z * y_dim + y) * x_dim + box.x, words, run);
            }
        }
    }

    void write_turned(const VolumeBox &box, const Word *words)
    {
        const std::int64_t end = std::int64_t{box.y} + box.height;
        for (std::int64_t z = 0; z < box.depth; ++z) {
            for (std::int64_t y = box.y; y < end;) {
                const std::int64_t strip = y / strip_rows * strip_rows;
                const std::int64_t rows = std::min(strip_rows, y_dim - strip);
                const std::int64_t run = std::min(strip + rows, end) - y;
                // A box of whole columns is one write, too.
                const std::int64_t columns = run == rows && run == box.height ? box.width : 1;
                for (std::int64_t x = 0; x < box.width; x += columns) {
                    write(((box.z + z) * y_dim + strip) * x_dim + (box.x + x) * rows + y - strip,
                          words + (z * box.width + x) * box.height + y - box.y, run * columns);
                }
                y += run;
            }
        }
    }

    void turn_strip(std::int64_t first, std::int64_t height, std::vector<Word> &rows)
    {
        std::vector<Word> column(static_cast<std::size_t>(height));
        seek(first);
        for (std::int64_t x = 0; x < x_dim; ++x) {
            if (std::fread(column.data(), sizeof(Word), column.size(), stream) != column.size()) {
                report_failure();
            }
            for (std::size_t y = 0; y < column.size(); ++y) {
                rows[y * static_cast<std::size_t>(x_dim) + static_cast<std::size_t>(x)] = column[y];
            }
        }
        seek(first);
        std::fwrite(rows.data(), sizeof(Word), static_cast<std::size_t>(height * x_dim), stream);
        place = -1; // a seek has to come between writing and reading
    }

    // Writes `count` words. Returns what follows them.
    const Word *write(std::int64_t in_volume, const Word *words, std::int64_t count)
    {
        if (volume + in_volume != place) {
            seek(volume + in_volume);
        }
        std::fwrite(words, sizeof(Word), static_cast<std::size_t>(count), stream);
        place += count;
        return words + count;
    }

    void seek(std::int64_t word)
    {
        if (fseeko(stream, word * std::int64_t{sizeof(Word)}, SEEK_SET) != 0) {
            report_failure();
        }
        place = word;
    }

    [[noreturn]] static void report_failure()
    {
        print_error_message(1, "can't write the raw image");
    }

    std::FILE *stream;
    std::int64_t x_dim;
    std::int64_t y_dim;
    std::int64_t z_dim;
    bool turned;
    std::int64_t strip_rows;
    std::int64_t volume = 0; // where the volume begins, in words
    std::int64_t place = -1; // of the stream, in words; below 0 where it is to be sought
};

} // namespace velmorant
