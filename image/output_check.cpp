#include "image/output_check.h"

#include "prefs/error_report.h"

#include <filesystem>
#include <system_error>

namespace velmorant
{

void check_output(std::span<const std::string> written, std::span<const std::string> read)
{
    for (const std::string &output : written) {
        for (const std::string &input : read) {
            std::error_code not_there;
            if (std::filesystem::equivalent(output, input, not_there)) {
                print_error_message(2, "the output would replace ", input.c_str());
            }
        }
    }
    if (written.size() == 2 && written[0] == written[1]) {
        print_error_message(2, "the output would replace its own header ", written[1].c_str());
    }
}

} // namespace velmorant
