#include "core/sampling/platform/NettopParser.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace ostrivane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    // The shortest line that counts is "\n.1,0,0".
    if (NettopParser::parse(text).size() > size / 6)
        std::abort();
    return 0;
}
