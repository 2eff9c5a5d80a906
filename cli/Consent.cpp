#include "cli/Consent.hpp"

#include "cli/Output.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <cstdio>
#include <iostream>
#include <string>

#include <unistd.h>

namespace ostrivane::cli {

bool canDecide(bool isAgreedTo) {
    if (isAgreedTo || ::isatty(STDIN_FILENO))
        return true;
    writeError("there is no terminal to ask on; with \"--yes\" nothing is asked");
    return false;
}

bool isAgreed(std::string_view question) {
    const std::string prompt = fmt::format("{} [y/N] ", question);
    std::fwrite(prompt.data(), 1, prompt.size(), stderr);
    std::string answer;
    std::getline(std::cin, answer);
    answer = Text::lowered(std::string(Text::trimmed(answer)));
    return answer == "y" || answer == "yes";
}

} // namespace ostrivane::cli
