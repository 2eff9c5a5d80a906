#pragma once

#include "core/sampling/platform/NVML.hpp"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace ostrivane {

/// NVIDIA's library as a test has set it. The functions carry no context, so there is one state, of the latest object.
class FakeNVML {
public:
    struct Chip {
        std::string name = "NVIDIA Test Chip";
        int result = 0; ///< of all questions about it
        unsigned percent = 0;
        std::uint64_t memoryUsed = 0;
        std::vector<NVMLLibrary::ProcessSample> samples = {}; ///< those newer than asked for are answered
    };

    FakeNVML() { state = this; }
    FakeNVML(const FakeNVML&) = delete;
    ~FakeNVML() { state = nullptr; }

    std::vector<Chip> chips{1};
    int initResult = 0;
    bool growsBetweenCalls = false; ///< more processes than were counted a moment ago
    int initialised = 0;
    int shutDown = 0;

    bool isOpen() const { return initialised > shutDown; }

    static NVMLLibrary library() {
        NVMLLibrary made;
        made.init = [] {
            if (state->initResult == 0)
                ++state->initialised;
            return state->initResult;
        };
        made.shutdown = [] {
            ++state->shutDown;
            return 0;
        };
        made.deviceCount = [](unsigned* count) {
            *count = static_cast<unsigned>(state->chips.size());
            return state->isOpen() ? 0 : 1;
        };
        made.deviceByIndex = [](unsigned index, NVMLLibrary::Device* device) {
            *device = &state->chips.at(index);
            return 0;
        };
        made.name = [](NVMLLibrary::Device device, char* text, unsigned size) {
            std::strncpy(text, chip(device).name.c_str(), size); // as long as the room: no zero at its end
            return chip(device).result;
        };
        made.utilization = [](NVMLLibrary::Device device, NVMLLibrary::Utilization* found) {
            *found = {.chip = chip(device).percent, .memory = 1};
            return chip(device).result;
        };
        made.memory = [](NVMLLibrary::Device device, NVMLLibrary::Memory* found) {
            *found = {.total = 1 << 30, .free = 5, .used = chip(device).memoryUsed};
            return chip(device).result;
        };
        made.processSamples = processSamples;
        return made;
    }

private:
    static Chip& chip(NVMLLibrary::Device device) { return *static_cast<Chip*>(device); }

    static int processSamples(NVMLLibrary::Device device, NVMLLibrary::ProcessSample* found, unsigned* count,
                              std::uint64_t since) {
        constexpr int notFound = 6, insufficientSize = 7;
        if (chip(device).result != 0)
            return chip(device).result;
        std::vector<NVMLLibrary::ProcessSample> busy;
        for (const auto& sample : chip(device).samples)
            if (sample.atMicros > since)
                busy.push_back(sample);
        if (busy.empty())
            return notFound;
        const unsigned room = found ? *count : 0;
        *count = static_cast<unsigned>(busy.size());
        if (found && state->growsBetweenCalls)
            *count += 1000;
        if (room < *count)
            return insufficientSize;
        std::ranges::copy(busy, found);
        return 0;
    }

    static inline FakeNVML* state = nullptr;
};

} // namespace ostrivane
