#pragma once

#include "core/model/SystemSnapshot.hpp"

#include <string>
#include <vector>

/// The words of the terminal for a machine's figures. Everything is safe to print; what could not be read is said to be
/// unavailable.
namespace ostrivane::cli::MachineText {

/// The machine's name, with its model identifier where that says more.
std::string machine(const SystemSnapshot& snapshot);

/// The instant in the user's time zone: "2026-11-21 14:05:09".
std::string time(Date date);

/// "up 4h 50m".
std::string uptime(const CPUSnapshot& cpu);

/// "16 cores: 8 performance, 8 efficiency"; only the count where the kinds are not known.
std::string cores(const CPUSnapshot& cpu);

/// "23%".
std::string usage(const CPUSnapshot& cpu);

/// "user 18%, system 5%, idle 77%".
std::string load(const CPUSnapshot& cpu);

/// "1.42, 1.10, 0.87".
std::string loadAverages(const CPUSnapshot& cpu);

/// "P", "E" or " ".
std::string mark(CoreLoad::Kind kind);

/// "11.3 GB of 31.0 GB (36%)".
std::string used(const MemorySnapshot& memory);

/// A part of the memory and its size.
struct Part {
    std::string name;
    std::uint64_t bytes = 0;
};
std::vector<Part> parts(const MemorySnapshot& memory);

/// "Normal, 57% available".
std::string pressure(const MemorySnapshot& memory);

/// "256 MB of 8.00 GB, 20 pages/s in, 0 pages/s out"; "none" without swap.
std::string swap(const MemorySnapshot& memory);

} // namespace ostrivane::cli::MachineText
