// nifti-to-raw: makes a raw image with its text header from a NIfTI image. See nifti-to-raw(1).

#include "image/output_check.h"
#include "nifti/conversion.h"
#include "nifti/unfinished_image.h"
#include "prefs/error_report.h"
#include "prefs/ordinary_run.h"
#include "prefs/regular_file.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <getopt.h>
#include <unistd.h>

using namespace velmorant;

namespace
{

struct Request {
    const char *input;
    std::string output;
    std::string_view form;        // "sform", "qform", or empty: where both agree
    std::string_view orientation; // for an image that states none
};

} // namespace

static constexpr int WrongArguments = 2;

static void print_usage(std::FILE *file)
{
    std::fputs(
        "Usage: nifti-to-raw [OPTIONS] IMAGE.nii[.gz] OUTPUT.img\n"
        "Makes a raw image, OUTPUT.img with its text header OUTPUT.hdr, from a NIfTI image.\n"
        "\n"
        "  --form sform|qform     which of the two orientations counts, where they differ\n"
        "  --orientation LETTERS  where the stored axes lead, as in RAS, where the image doesn't "
        "say\n"
        "  --help, --version\n",
        file);
}

static int refuse_arguments(const char *reason)
{
    std::fprintf(stderr, "nifti-to-raw: %s\n", reason);
    print_usage(stderr);
    return WrongArguments;
}

// The affine that counts.
static Affine choose_affine(const NiftiImage &image, const Request &request)
{
    if (!image.sform && !image.qform) {
        if (request.orientation.empty()) {
            print_error_message(3, "no orientation in ", request.input,
                                ": say with --orientation where its axes lead");
        }
        return affine_from_letters(request.orientation, image.spacing).value();
    }
    if (!request.orientation.empty()) {
        print_error_message(2, "an orientation of its own in ", request.input);
    }
    const std::optional<Affine> &wanted = request.form == "qform" ? image.qform : image.sform;
    if (!request.form.empty() && !wanted) {
        print_error_message(2, "no such orientation in ", request.input);
    }
    return wanted ? *wanted : *image.qform;
}

static AxisOrder choose_axes(const NiftiImage &image, const Request &request)
{
    const std::optional<AxisOrder> order = find_axis_order(choose_affine(image, request));
    if (!order) {
        print_error_message(2, "no usable orientation in ", request.input);
    }
    if (request.form.empty() && image.sform && image.qform) {
        const std::optional<AxisOrder> other = find_axis_order(*image.qform);
        if (!other || axis_letters(*other) != axis_letters(*order)) {
            print_error_message(3, "two orientations in ", request.input,
                                ": say with --form which one counts");
        }
    }
    for (const double size : order->pixel_size) {
        // What a text header can state, in mm with six decimals.
        if (!(size >= 1e-6 && size <= 1e6)) {
            print_error_message(2, "illegal pixel size in ", request.input);
        }
    }
    return *order;
}

// Goes to the beginning of the terminal's line, and empties it.
static constexpr const char *ClearLine = "\r\033[K";

// A line that changes while the frames of a series are read, where somebody may look at it.
static void show_progress(const char *doing, std::int32_t frame, std::int32_t frames)
{
    static const bool shown = frames > 1 && isatty(STDERR_FILENO) == 1;
    if (!shown) {
        return;
    }
    static bool began = false;
    if (!began) {
        // A complaint, the only thing that standard output holds by now, takes the line's place.
        std::setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
        std::fputs(ClearLine, stdout);
        began = true;
    }
    std::fprintf(stderr, "%snifti-to-raw: %s frame %d of %d", ClearLine, doing, frame, frames);
}

static const char *element_name(StoredType type)
{
    switch (type) {
    case StoredType::SignedShort:
        return "signed 16-bit integers";
    case StoredType::UnsignedShort:
        return "unsigned 16-bit integers";
    case StoredType::Float:
        break;
    }
    return "floats";
}

static void print_report(std::FILE *report, const Request &request, const ImageHeader &header,
                         const AxisOrder &order)
{
    if (order.source != std::array<std::size_t, 3>{0, 1, 2}) {
        std::fprintf(report, "%s: stored as %s, its axes reordered for transaxial slices\n",
                     request.input, axis_letters(order).c_str());
    }
    if (order.tilt >= 0.05) {
        std::fprintf(report, "%s: %.1f degrees oblique, taken along the nearest axes\n",
                     request.input, order.tilt);
    }
    std::fprintf(report, "%s: %d x %d x %d pixels, %d %s, %s\n", request.output.c_str(),
                 header.x_dim, header.y_dim, header.num_slices, header.num_frames,
                 header.num_frames == 1 ? "frame" : "frames",
                 element_name(static_cast<StoredType>(header.data_format)));
}

static void convert(const Request &request, std::FILE *report)
{
    const std::string header_name = header_path(request.output);
    const NiftiImage image = read_nifti_header(request.input);
    check_output(std::vector{request.output, header_name},
                 std::vector{image.header_path, image.data_path});
    const AxisOrder order = choose_axes(image, request);
    const auto progress = [&](const char *doing, std::int32_t frame) {
        show_progress(doing, frame, image.frames);
    };
    UnfinishedImage output(request.output);
    const RawStorage storage = choose_storage(image, progress);
    const std::size_t not_finite = write_frames(image, order, storage, output.data(), progress);
    const ImageHeader header = describe_raw(image, order, storage);
    output.finish(header, storage.type);
    std::fflush(stdout); // the end of the line that shows the progress
    if (not_finite > 0) {
        std::fprintf(stderr, "nifti-to-raw: warning: %zu infinite values or no numbers in %s\n",
                     not_finite, request.input);
    }
    print_report(report, request, header, order);
}

static int run(const Request &request)
{
    if (header_path(request.output).empty()) {
        return refuse_arguments("OUTPUT needs an extension other than .hdr, as in scan.img");
    }
    std::FILE *report = begin_ordinary_run("nifti-to-raw: not converted: ", request.input);
    for (const std::string &path : {request.output, header_path(request.output)}) {
        if (is_special(path.c_str())) {
            print_error_message(2, "can't open ", path.c_str());
        }
    }
    convert(request, report);
    if (std::fclose(report) != 0) {
        print_error_message(1, "can't write to standard output");
    }
    return end_ordinary_run();
}

int main(int argc, char **argv)
{
    enum Option { Form = 1, Orientation, Help, Version };
    const option options[] = {{"form", required_argument, nullptr, Form},
                              {"orientation", required_argument, nullptr, Orientation},
                              {"help", no_argument, nullptr, Help},
                              {"version", no_argument, nullptr, Version},
                              {}};
    Request request{};
    for (int found = 0; (found = getopt_long(argc, argv, "", options, nullptr)) != -1;) {
        switch (found) {
        case Form:
            request.form = optarg;
            if (request.form != "sform" && request.form != "qform") {
                return refuse_arguments("--form takes sform or qform");
            }
            break;
        case Orientation:
            request.orientation = optarg;
            if (!affine_from_letters(request.orientation, {1.0, 1.0, 1.0})) {
                return refuse_arguments(
                    "--orientation takes one letter each of RL, AP and SI, as in RAS");
            }
            break;
        case Help:
            print_usage(stdout);
            return std::fflush(stdout) == 0 ? 0 : 1;
        case Version:
            std::printf("nifti-to-raw (Velmorant) %s\n", VELMORANT_VERSION);
            return std::fflush(stdout) == 0 ? 0 : 1;
        default:
            print_usage(stderr);
            return WrongArguments;
        }
    }
    if (argc - optind != 2) {
        return refuse_arguments("takes an image and an output");
    }
    request.input = argv[optind];
    request.output = argv[optind + 1];
    return run(request);
}
