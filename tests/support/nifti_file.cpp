#include "tests/support/nifti_file.h"

#include "tests/support/test.h"

namespace test
{

namespace
{

enum Kind { Byte = 1, Int16 = 2, Int32 = 4, Int64 = 8, Float = 14, Double = 18 };

// Where a field begins, and what it consists of.
struct Place {
    std::size_t offset;
    Kind kind;
};

} // namespace

std::string nifti_bytes(const NiftiFile &file)
{
    const bool first = file.version == 1;
    std::string bytes(first ? 348 : 540, '\0');
    const auto put = [&](const Place &in_1, const Place &in_2, const std::vector<double> &values) {
        const Place &place = first ? in_1 : in_2;
        std::vector<std::int64_t> words;
        for (const double value : values) {
            words.push_back(place.kind == Float
                                ? std::bit_cast<std::int32_t>(static_cast<float>(value))
                            : place.kind == Double ? std::bit_cast<std::int64_t>(value)
                                                   : static_cast<std::int64_t>(value));
        }
        const std::string stored = stored_integers(words, place.kind % 10, file.big);
        bytes.replace(place.offset, stored.size(), stored);
    };
    const auto length = static_cast<double>(bytes.size());
    std::vector<double> dim{static_cast<double>(file.size.size())};
    dim.insert(dim.end(), file.size.begin(), file.size.end());
    std::vector<double> rows;
    for (const auto &row : file.sform) {
        rows.insert(rows.end(), {row[0], row[1], row[2], -10.0});
    }
    put({0, Int32}, {0, Int32}, {length});
    put({40, Int16}, {16, Int64}, dim);
    put({70, Int16}, {12, Int16}, {static_cast<double>(file.datatype)});
    put({76, Float}, {104, Double}, {file.spacing.begin(), file.spacing.end()});
    put({108, Float}, {168, Int64}, {file.pair ? 0 : length + 4});
    put({112, Float}, {176, Double}, {file.slope, file.intercept});
    put({123, Byte}, {500, Int32}, {static_cast<double>(file.units)});
    put({252, Int16}, {344, Int32},
        {static_cast<double>(file.qform_code), static_cast<double>(file.sform_code)});
    put({256, Float}, {352, Double}, {file.quaternion.begin(), file.quaternion.end()});
    put({280, Float}, {400, Double}, rows);
    const std::string magic = std::string(file.pair ? "ni" : "n+") + std::to_string(file.version);
    bytes.replace(first ? 344 : 4, 3, magic);
    if (!first) {
        bytes.replace(8, 4, "\r\n\x1A\n");
    }
    return bytes + (file.pair ? "" : std::string(4, '\0') + file.data);
}

} // namespace test
