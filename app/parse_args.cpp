#include "app/parse_args.h"

#include "prefs/error_report.h"

#include <array>

namespace velmorant
{

static std::array<char, 1024> ParsedText;

static void store(std::size_t &used, char character)
{
    if (used == ParsedText.size()) {
        print_error_message(1, "command line too long");
    }
    ParsedText[used++] = character;
}

// Stores one argument and its terminator, and returns what follows it in the line.
static const char *store_argument(const char *line, std::size_t &used)
{
    char quote = '\0';
    for (; *line != '\0' && (quote != '\0' || *line != ' '); ++line) {
        if (*line == quote) {
            quote = '\0';
        } else if (quote == '\0' && (*line == '"' || *line == '\'')) {
            quote = *line;
        } else {
            store(used, *line);
        }
    }
    store(used, '\0');
    return line;
}

std::int32_t parse_args(const char *line, std::span<char *, MostParsedArguments + 1> argv)
{
    std::size_t used = 0;
    std::size_t next = 1;
    while (next <= MostParsedArguments) {
        while (*line == ' ') {
            ++line;
        }
        if (*line == '\0') {
            break;
        }
        argv[next++] = ParsedText.data() + used;
        line = store_argument(line, used);
    }
    return static_cast<std::int32_t>(next);
}

} // namespace velmorant
