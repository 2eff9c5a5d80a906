#pragma once

#include "core/sampling/platform/Command.hpp"
#include "core/sampling/platform/Commands.hpp"

namespace ostrivane {

/// The tools of the machine that the program runs on, each as a child process.
class ChildCommands final : public Commands {
public:
    std::optional<std::string> run(const std::string& path, const std::vector<std::string>& arguments,
                                   double timeout) override {
        return Command::run(path, arguments, timeout);
    }
};

} // namespace ostrivane
