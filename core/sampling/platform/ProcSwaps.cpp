#include "core/sampling/platform/ProcSwaps.hpp"

namespace ostrivane {

bool ProcSwaps::areAllMemory(std::string_view text) {
    bool any = false;
    for (std::size_t line = text.find('\n'); line < text.size(); line = text.find('\n', line)) {
        const std::string_view area = text.substr(++line);
        if (area.empty())
            break;
        if (!area.starts_with("/dev/zram"))
            return false;
        any = true;
    }
    return any;
}

} // namespace ostrivane
