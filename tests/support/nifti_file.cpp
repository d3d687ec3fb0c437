#include "tests/support/nifti_file.h"

#include "tests/support/raw_study.h"

#include <bit>

namespace test
{

namespace
{

enum class Kind { Byte = 1, Int16 = 2, Int32 = 4, Int64 = 8, Float = 14, Double = 18 };

// Where a field begins, and what it consists of.
struct Place {
    std::size_t offset;
    Kind kind;
};

// By version.
using Places = std::array<Place, 2>;

class Header
{
public:
    explicit Header(const NiftiFile &nifti)
        : bytes(nifti.version == 1 ? 348 : 540, '\0'), version(nifti.version), big(nifti.big)
    {
    }
    void put(const Places &places, const std::vector<double> &values)
    {
        const Place place = places.at(static_cast<std::size_t>(version) - 1);
        std::vector<std::int64_t> words;
        words.reserve(values.size());
        for (const double value : values) {
            words.push_back(place.kind == Kind::Float
                                ? std::bit_cast<std::int32_t>(static_cast<float>(value))
                            : place.kind == Kind::Double ? std::bit_cast<std::int64_t>(value)
                                                         : static_cast<std::int64_t>(value));
        }
        const std::string stored = stored_integers(words, static_cast<int>(place.kind) % 10, big);
        bytes.replace(place.offset, stored.size(), stored);
    }
    std::string bytes;

private:
    int version;
    bool big;
};

} // namespace

std::string nifti_bytes(const NiftiFile &file)
{
    using enum Kind;
    Header header(file);
    const double length = static_cast<double>(header.bytes.size());
    std::vector<double> dim{static_cast<double>(file.size.size())};
    dim.insert(dim.end(), file.size.begin(), file.size.end());
    header.put({{{0, Int32}, {0, Int32}}}, {length});
    header.put({{{40, Int16}, {16, Int64}}}, dim);
    header.put({{{70, Int16}, {12, Int16}}}, {static_cast<double>(file.datatype)});
    header.put({{{76, Float}, {104, Double}}}, {file.spacing.begin(), file.spacing.end()});
    header.put({{{108, Float}, {168, Int64}}}, {file.pair ? 0 : length + 4});
    header.put({{{112, Float}, {176, Double}}}, {file.slope, file.intercept});
    header.put({{{123, Byte}, {500, Int32}}}, {static_cast<double>(file.units)});
    header.put({{{252, Int16}, {344, Int32}}},
               {static_cast<double>(file.qform_code), static_cast<double>(file.sform_code)});
    header.put({{{256, Float}, {352, Double}}}, {file.quaternion.begin(), file.quaternion.end()});
    std::vector<double> rows;
    for (const auto &row : file.sform) {
        rows.insert(rows.end(), row.begin(), row.end());
        rows.push_back(-10.0);
    }
    header.put({{{280, Float}, {400, Double}}}, rows);
    const std::string magic = std::string(file.pair ? "ni" : "n+") + std::to_string(file.version);
    header.bytes.replace(file.version == 1 ? 344 : 4, 3, magic);
    if (file.version == 2) {
        header.bytes.replace(8, 4, "\r\n\x1A\n");
    }
    return header.bytes + (file.pair ? "" : std::string(4, '\0') + file.data);
}

} // namespace test
