#include "tests/app/model/platform/linux/FakeBus.hpp"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrivane {

namespace {

/// The system's own would start the services of who runs the test.
std::string busConfiguration(const std::string& address) {
    return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
                "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>)" +
           address +
           R"(</listen>
  <policy context="default">
    <allow user="*"/><allow own="*"/><allow send_destination="*"/><allow receive_sender="*"/>
  </policy>
</busconfig>)";
}

/// `timeout` ends the program where the test no longer can.
pid_t startBus(const std::vector<std::string>& options, int output) {
    std::vector<std::string> words = {"timeout", "120", "dbus-daemon"};
    words.insert(words.end(), options.begin(), options.end());
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t program = 0;
    if (::posix_spawnp(&program, "timeout", &actions, nullptr, arguments.data(), environ) != 0)
        program = 0;
    ::posix_spawn_file_actions_destroy(&actions);
    return program;
}

struct Output {
    std::string text;
    pid_t program = 0;
};

/// What the program says in the first place.
Output beginBus(const std::vector<std::string>& options) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return {};
    Output output;
    output.program = startBus(options, ends[1]);
    ::close(ends[1]);
    char buffer[512];
    const ssize_t count = ::read(ends[0], buffer, sizeof buffer);
    ::close(ends[0]);
    output.text.assign(buffer, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return output;
}

} // namespace

FakeBus::FakeBus(std::string place) : folder(std::move(place)) {
    const std::string configuration = folder + "/bus.conf";
    std::ofstream(configuration) << busConfiguration(address());
    const auto output = beginBus({"--config-file=" + configuration, "--print-address", "--nofork"});
    program = output.program;
    if (!output.text.starts_with("unix:"))
        throw std::runtime_error("dbus-daemon did not start");
}

FakeBus::~FakeBus() {
    if (program > 0) {
        ::kill(program, SIGTERM);
        ::waitpid(program, nullptr, 0);
    }
    std::error_code ignored;
    std::filesystem::remove(folder + "/bus", ignored);
}

bool FakeBus::canRun() {
    const auto output = beginBus({"--version"});
    int status = -1;
    return output.program > 0 && ::waitpid(output.program, &status, 0) == output.program && status == 0;
}

} // namespace ostrivane
