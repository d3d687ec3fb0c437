#include "prefs/preference_sets.h"

#include "prefs/error_report.h"
#include "prefs/file_handle.h"
#include "prefs/preference_file.h"
#include "prefs/run_environment.h"
#include "prefs/settings.h"
#include "prefs/whole_text.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>
#include <tuple>
#include <variant>

namespace velmorant
{

namespace
{

// A setting and its default; the type of the setting decides how it is read and written.
template <class Value, class Default = Value>
struct Setting {
    Value *variable;
    Default default_value;
};
using TextSetting = Setting<Text, const char *>;

struct PreferenceRow {
    const char *key;
    std::variant<Setting<std::int32_t>, Setting<std::int16_t>, Setting<float>, TextSetting> setting;
};

} // namespace

static constexpr PreferenceRow integer(const char *key, std::int32_t &variable, std::int32_t value)
{
    return {key, Setting<std::int32_t>{&variable, value}};
}

static constexpr PreferenceRow short_integer(const char *key, std::int16_t &variable,
                                             std::int16_t value)
{
    return {key, Setting<std::int16_t>{&variable, value}};
}

static constexpr PreferenceRow real(const char *key, float &variable, float value)
{
    return {key, Setting<float>{&variable, value}};
}

static constexpr PreferenceRow text(const char *key, Text &variable, const char *value)
{
    return {key, TextSetting{&variable, value}};
}

// Keys, settings and defaults in reading order, which is the order of the lines in a new file.
static constexpr std::array GlobalRows{
    integer("Standard Output x Dimension", STD_Xd, 128),
    integer("Standard Output y Dimension", STD_Yd, 128),
    integer("Standard Output z Dimension", STD_Zd, 60),
    real("Standard Output x Pixel Size", STD_Px, 2.25F),
    real("Standard Output y Pixel Size", STD_Py, 2.25F),
    real("Standard Output z Pixel Size", STD_Pz, 2.25F),
    real("Standard Output Acpc Level", STD_Acpc, 32.0F),
    integer("Internal x Dimension", INT_Xd, 128),
    integer("Internal y Dimension", INT_Yd, 128),
    integer("Internal z Dimension", INT_Zd, 60),
    real("Internal x Pixel Size", INT_Px, 2.25F),
    real("Internal y Pixel Size", INT_Py, 2.25F),
    real("Internal z Pixel Size", INT_Pz, 2.25F),
    real("Internal x Center", INT_X0, 63.5F),
    real("Internal y Center", INT_Y0, 63.5F),
    real("Internal z Center", INT_Z0, 0.0F),
    real("Acpc Center Offset (mm)", INT_AcpcOffset, -16.0F),
    real("Normalized Global Value", INT_Global, 1000.0F),
    real("Peak Threshold for Normalization (%volume)", INT_NormSet.peak_threshold, 0.999F),
    real("Lower Threshold for Normalization (%intensity)", INT_NormSet.lower_threshold, 0.4F),
    integer("Number of Bins for Normalization", INT_NormSet.bin_count, 1024),
    short_integer("Maximum Pixel Value in Short Integer", INT_MaxPixelValue, 32700),
    real("Index Value for Out-of-Field", INT_OutOfFieldValue, -1e10F),
    real("Check Value for Out-of-Field", INT_OutOfFieldCheck, -10000.0F),
    text("File Format", FileFormat, "FLOATB"),
};

static void read_row(const char *path, const char *key, const Setting<std::int32_t> &setting)
{
    *setting.variable = preference_int_strings(path, key, setting.default_value);
}

static void read_row(const char *path, const char *key, const Setting<std::int16_t> &setting)
{
    *setting.variable = preference_short_int_strings(path, key, setting.default_value);
}

static void read_row(const char *path, const char *key, const Setting<float> &setting)
{
    *setting.variable = preference_float_strings(path, key, setting.default_value);
}

static void read_row(const char *path, const char *key, const TextSetting &setting)
{
    preference_string_strings(path, *setting.variable, key, setting.default_value);
}

static void read_rows(const char *path, std::span<const PreferenceRow> rows)
{
    for (const PreferenceRow &row : rows) {
        std::visit([&](const auto &setting) { read_row(path, row.key, setting); }, row.setting);
    }
}

static bool exists_or_say(const char *path)
{
    if (FileHandle(std::fopen(path, "r"))) {
        return true;
    }
    std::printf("%s does not exist...\n", path);
    return false;
}

template <class Value>
static void take_default(const Setting<Value> &setting)
{
    *setting.variable = setting.default_value;
}

static void take_default(const TextSetting &setting)
{
    copy_text_or_abort(*setting.variable, setting.default_value);
}

// Creates the file with all of its lines at once, so that no other run sees a part of them. False
// where that can't be done, or where a key stands in a line before its own already (in the name of a
// folder): then a look-up has to find it there.
static bool create_set(const char *path, std::span<const PreferenceRow> rows)
{
    std::string lines;
    for (const PreferenceRow &row : rows) {
        if (test_strings(lines.c_str(), row.key)) {
            return false;
        }
        std::visit(
            [&](const auto &setting) { lines += written_line(row.key, setting.default_value); },
            row.setting);
    }
    if (!create_whole(path, lines)) {
        return false;
    }
    for (const PreferenceRow &row : rows) {
        announce_key(path, row.key);
        std::visit([](const auto &setting) { take_default(setting); }, row.setting);
    }
    return true;
}

// Creates an empty file, or opens one to append rather than to write, so that a file that merely
// can't be read, or that another run has just created, keeps its lines.
static void create_empty(const char *path)
{
    if (!FileHandle(std::fopen(path, "a"))) {
        print_error_message(2, "can't create ", path);
    }
}

static void read_set(const char *path, bool exists, std::span<const PreferenceRow> rows)
{
    if (!exists) {
        if (create_set(path, rows)) {
            return;
        }
        create_empty(path);
    }
    read_rows(path, rows);
}

static float middle(std::int32_t dimension)
{
    return static_cast<float>(std::int64_t{dimension} - 1) * 0.5F;
}

void read_global_preference(const char *directory)
{
    Text path{};
    copy_text_or_report(path, std::string(directory) + GlobalPreferenceName);
    const bool exists = exists_or_say(path.data());
    read_set(path.data(), exists, GlobalRows);
    STD_X0 = middle(STD_Xd);
    STD_Y0 = middle(STD_Yd);
    STD_Z0 = 0.0F;
}

void get_local_preference_name(const char *program_path, Text &name_out)
{
    copy_text_or_report(name_out, std::string(program_path) + ".prf");
}

static constexpr const char *PaletteName = "rainbow.plt";

static bool working_directory_leaves_room()
{
    std::error_code unknown;
    const std::string directory = std::filesystem::current_path(unknown).string();
    return !unknown && directory.size() + 1 + std::strlen(PaletteName) < std::tuple_size_v<Text>;
}

void read_local_preference(const char *path)
{
    const bool exists = exists_or_say(path);
    // Whether the file can be created is told before the working directory ends the run.
    if (!exists && !working_directory_leaves_room()) {
        create_empty(path);
    }

    Text directory{};
    Text palette{};
    get_current_directory(directory.data(), directory.size() - 1);
    copy_text_or_abort(palette, std::string(directory.data()) + PaletteName);

    read_set(path, exists,
             std::array{
                 integer("Number of NumColumns", NumColumn, 10),
                 real("Height of the Scale (% screen)", ScaleLength, 0.5F),
                 integer("Width of the Scale (pixel)", ScaleWidth, 10),
                 real("Minimal Pixel Cutoff Value", MinPixel, 0.0F),
                 text("Color Palette File", FnPalette, palette.data()),
                 integer("Color Scale Bar: 0=no, 1=yes", FlagScaleBar, 0),
                 integer("Gray Scale: 0=color, 1=gray", FlagGray, 0),
             });
}

} // namespace velmorant
