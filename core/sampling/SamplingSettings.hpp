#pragma once

namespace ostrivane {

/// How the user wants the machine to be read.
struct SamplingSettings {
    double backgroundInterval = 5;      ///< seconds between ticks with no interface visible
    double foregroundInterval = 2;      ///< seconds between ticks with some interface visible
    bool includeSystemProcesses = true; ///< figures of processes that the program may not read itself
    bool perProcessNetwork = true;      ///< traffic by process
    double idleServerThreshold = 7200;  ///< seconds without activity after which a dev server counts as idle
    bool projectDetection = true;       ///< listening sockets, working directories and projects

    friend bool operator==(const SamplingSettings&, const SamplingSettings&) = default;
};

} // namespace ostrivane
