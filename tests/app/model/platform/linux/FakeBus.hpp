#pragma once

#include <string>

#include <sys/types.h>

namespace ostrivane {

/// A message bus of the test's own on the socket `FOLDER/bus`. It starts no services.
class FakeBus {
public:
    explicit FakeBus(std::string folder);
    ~FakeBus();
    FakeBus(const FakeBus&) = delete;
    FakeBus& operator=(const FakeBus&) = delete;

    /// Whether this computer has the program.
    static bool canRun();

    std::string address() const { return "unix:path=" + folder + "/bus"; }

private:
    const std::string folder;
    pid_t program = 0;
};

} // namespace ostrivane
