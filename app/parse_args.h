#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace velmorant
{

// Most arguments that `parse_args` splits.
inline constexpr std::size_t MostParsedArguments = 24;

// Splits a line of text into arguments, stored from argv[1] on, and returns their number plus one.
// Blanks separate arguments. A double or a single quote opens a stretch in which blanks belong to
// the argument and the other kind of quote is an ordinary character, up to the same quote again;
// the quotes themselves are dropped. What follows the 24th argument is left alone. The arguments
// lie in a static buffer of 1024 bytes that the next call reuses; arguments that do not fit end the
// run with "command line too long".
std::int32_t parse_args(const char *line, std::span<char *, MostParsedArguments + 1> argv);

} // namespace velmorant
