#pragma once

// Where a run takes place, and how it ends.

#include "prefs/text.h"

#include <cstddef>

namespace velmorant
{

// Sets `directory_out` to the program path up to and including its last "/" and returns its
// characters; without a "/" it becomes empty and the result is null. The search path plays no part
// and links are not followed. More than 254 characters end the run with "file name too long: ".
char *get_program_directory(const char *program_path, Text &directory_out);

// The working directory with "/" after it.
// buffer: size + 1 bytes, because the path and its terminator may fill `size`.
// Ends the run with "can't get directory path" where the path does not fit or there is none.
char *get_current_directory(char *buffer, std::size_t size);

// Whether this is a batch job: a file BATCH_JOB_ACTIVE in the working directory can be opened.
bool batch_status();

// The normal end of a run: exit status 1. A failed run ends with 0, see `print_error_message`.
[[noreturn]] void batchjob();

// Puts a double quote before and after the text. A text of 253 characters or more ends the run
// with "strings too long to add quotation marks".
void add_quotations(Text &text);

} // namespace velmorant
