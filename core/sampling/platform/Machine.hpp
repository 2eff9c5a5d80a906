#pragma once

#include "core/sampling/platform/Graphics.hpp"
#include "core/sampling/platform/Host.hpp"
#include "core/sampling/platform/Memory.hpp"
#include "core/sampling/platform/Processor.hpp"

namespace ostrivane {

/// One machine, by subject. There are three: the one the program runs on (Linux or macOS), and one that answers from a
/// recording. Questions come from one thread at a time.
class Machine {
public:
    virtual ~Machine() = default;

    virtual Host& host() = 0;
    virtual Processor& processor() = 0;
    virtual Memory& memory() = 0;
    virtual Graphics& graphics() = 0;
};

} // namespace ostrivane
