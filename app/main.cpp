// tiffgen: turns one frame and bed of a tomographic brain image into one TIFF picture.

#include "app/banner.h"
#include "app/command_line.h"
#include "app/make_picture.h"
#include "image/image_header.h"
#include "prefs/end_run.h"
#include "prefs/preference_sets.h"
#include "prefs/process_guard.h"
#include "prefs/run_environment.h"

using namespace velmorant;

int main(int argc, char **argv)
{
    guard_process();
    sioux_setting(batch_status(), 0);
    read_command_line(&argc, &argv);
    const char *program_path = argc > 0 ? argv[0] : "tiffgen";
    const auto arguments =
        argc > 0 ? Arguments(argv + 1, static_cast<std::size_t>(argc) - 1) : Arguments();

    RunRequest request{};
    get_program_directory(program_path, request.program_directory);
    read_global_preference(request.program_directory.data());

    get_local_preference_name(program_path, request.preference_file);
    find_preference_override(arguments, request.preference_file);
    read_local_preference(request.preference_file.data());

    print_banner();
    if (arguments.size() < 3) {
        print_usage();
        end_run(-1);
    }

    read_positional_arguments(arguments, request);
    create_standard_image_matrix(request.selector);
    read_options(arguments, request);
    validate_flags();

    make_picture(request);
    batchjob();
}
