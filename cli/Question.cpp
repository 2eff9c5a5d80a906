#include "cli/Question.hpp"

#include "cli/Output.hpp"
#include "core/model/Text.hpp"

#include <cstdio>
#include <iostream>
#include <string>

#include <unistd.h>

namespace ostrivane::cli {

bool canAsk() {
    const bool can = ::isatty(STDIN_FILENO) != 0;
    if (!can)
        writeError("there is no terminal to ask on; with \"--yes\" nothing is asked");
    return can;
}

bool isAgreed(std::string_view question) {
    const std::string asked = std::string(question) + " [y/N] ";
    std::fwrite(asked.data(), 1, asked.size(), stderr);
    std::string answer;
    std::getline(std::cin, answer);
    answer = Text::lowered(std::string(Text::trimmed(answer)));
    return answer == "y" || answer == "yes";
}

} // namespace ostrivane::cli
