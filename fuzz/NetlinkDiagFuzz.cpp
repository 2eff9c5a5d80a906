#include "core/sampling/platform/NetlinkDiag.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

using namespace ostrivane;
using NetlinkDiag::Dump;
using NetlinkDiag::Transport;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::uint32_t sequence = 1;
    constexpr std::size_t shortestSocket = 16 + 72;
    for (const Transport transport : {Transport::tcp, Transport::udp}) {
        Dump dump(transport, sequence);
        dump.take(std::as_bytes(std::span(data, size)));
        if (dump.sockets().size() > size / shortestSocket)
            std::abort();
    }
    return 0;
}
