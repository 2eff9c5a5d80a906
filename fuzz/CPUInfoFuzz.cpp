#include "core/model/Text.hpp"
#include "core/sampling/platform/CPUInfo.hpp"
#include "core/sampling/platform/CPUList.hpp"
#include "core/sampling/platform/CoreTopology.hpp"
#include "core/sampling/platform/MachineName.hpp"
#include "fuzz/Require.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using namespace ostrivane;

namespace {

void requireName(const std::string& name) {
    require(!name.empty());
    require(name == Text::repaired(name));
}

} // namespace

/// One text as /proc/cpuinfo, as a list of processors and as what the firmware says.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    requireName(CPUInfo::brand(text, {{0, 1024}, {1, 414}}));

    const auto numbers = CPUList::parse(text).value_or(std::vector<std::int64_t>());
    require(std::is_sorted(numbers.begin(), numbers.end()));
    require(numbers.size() <= static_cast<std::size_t>(CPUList::limit));
    CoreTopology cores;
    cores.fast = {0, 1};
    if (numbers.size() < 100) // thousands of kinds would only slow the search down
        cores.online = cores.frugal = numbers;
    const CoreLayout layout = cores.layout(static_cast<std::int64_t>(cores.online.size()));
    require(layout.performance + layout.efficiency <= layout.logical);

    MachineName name;
    name.sysVendor = name.boardVendor = name.compatible = text;
    for (std::string* field : {&name.productName, &name.productVersion, &name.boardName, &name.model}) {
        requireName(name.modelIdentifier());
        requireName(name.marketingName());
        *field = text;
    }
    requireName(name.marketingName());
    return 0;
}
