#include "core/sampling/platform/DRMLedger.hpp"
#include "core/sampling/platform/DRMUsage.hpp"
#include "fuzz/Require.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

using namespace ostrivane;

/// The input is two readings of one client, parted by a zero byte.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto cut = input.find('\0');
    const auto first = DRMUsage::parse(input.substr(0, cut));
    const auto second = DRMUsage::parse(cut == std::string_view::npos ? input : input.substr(cut + 1));
    DRMLedger ledger;
    std::uint64_t before = 0;
    double now = 0;
    for (const auto& usage : {first, second, first}) {
        if (!usage)
            continue;
        ledger.update({{.pid = 1, .usage = &*usage}}, now += 1);
        const std::uint64_t nanos = ledger.processTimes().at(1);
        const auto load = ledger.load(usage->device());
        require(nanos >= before);
        require(!load || (load->busiest >= 0 && load->busiest <= 1));
        before = nanos;
    }
    return 0;
}
