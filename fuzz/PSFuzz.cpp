#include "core/sampling/platform/PSParser.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace ostrivane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    PSParser::parseCPUTime(text);
    // The shortest line is "1 0 0", a feed between two.
    if (PSParser::parse(text).size() > (size + 1) / 6)
        std::abort();
    return 0;
}
