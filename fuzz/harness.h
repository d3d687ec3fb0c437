#pragma once

// What the fuzzing harnesses share. A harness is one procedure, `LLVMFuzzerTestOneInput`, that
// hands an input to a piece of the package as a file or an argument would bring it. A run that
// ends, ends there: `end_run` throws in these programs.
//
// Nothing is left out of an input beforehand. What it costs is bounded as for any process, by the
// memory and the size of files that it can have.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace fuzz
{

inline std::string_view as_text(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), size};
}

// A file in the working directory, which is a folder of the harness's own. It is kept open and
// rewritten for each input.
class InputFile
{
public:
    explicit InputFile(const char *name);
    void write(std::string_view bytes) const;

private:
    int descriptor;
};

// What `end_run` and `abort_run` throw.
struct EndOfRun {
};

// Goes to the harness's own folder, where that isn't done, and sets the settings to values that let
// a run go far.
void begin_run();

// Makes a run of `procedure`, after `begin_run`.
template <class Procedure>
int make_run(Procedure procedure)
{
    begin_run();
    try {
        procedure();
    } catch (const EndOfRun &) {
        // An ending like any other.
    }
    return 0;
}

// Where the text header at the beginning of an input ends: after the line that says so, or with the
// input. What follows is pixel data.
std::size_t header_length(std::string_view input);

// Ends the process where something doesn't hold that has to.
void require(bool holds, const char *what);

} // namespace fuzz
