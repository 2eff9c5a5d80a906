#pragma once

#include "core/sampling/platform/DRMLedger.hpp"
#include "core/sampling/platform/Graphics.hpp"
#include "core/sampling/platform/linux/DRMClients.hpp"
#include "core/sampling/platform/linux/KeptFile.hpp"
#include "core/sampling/platform/linux/NVIDIAChips.hpp"
#include "core/sampling/platform/linux/RootFolder.hpp"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// Graphics chips as /sys/class/drm, /proc and NVIDIA's library tell about them.
///
/// A chip that sleeps is never touched: almost every question wakes it, and keeps it awake.
class LinuxGraphics final : public Graphics {
public:
    using Seconds = std::function<double()>;

    /// `folder` must outlive it.
    explicit LinuxGraphics(const RootFolder& folder);
    /// With a clock that never goes back and a library of a test's own.
    LinuxGraphics(const RootFolder& folder, Seconds clock, NVIDIAChips::LoadLibrary loadLibrary);

    std::vector<AcceleratorReading> accelerators() override;
    PidMap<std::uint64_t> processTimes() override;
    void setPageShown(bool shown) override { pageShown = shown; }

private:
    /// An accelerator under /sys/class/drm.
    struct Card {
        std::string node;    ///< "card0"
        std::string address; ///< on the PCI bus, or the platform's name for it
        std::string driver;
        std::optional<std::string> name;
        std::optional<KeptFile> busy; ///< this and the next two are absent where the driver has no such figure
        std::optional<KeptFile> ownMemory;
        std::optional<KeptFile> sharedMemory;
        std::optional<bool> countsShared;  ///< unknown while it has not been seen awake
        std::optional<double> sleepDelayS; ///< of doing nothing until it falls asleep; absent for one that never does
        double restsUntil = 0;             ///< seconds
        AcceleratorStatistics last;
    };

    void findCards();
    Card card(const std::string& node, const std::string& target) const;
    bool isAwake(const std::string& node);
    bool hasNoOwnMemory(const Card& card) const;
    AcceleratorStatistics statistics(Card& card, double now);
    AcceleratorStatistics asked(Card& card);
    std::optional<DRMLedger::Load> load(const Card& card) const;
    std::optional<std::uint64_t> memoryInUse(Card& card);
    void readClients(double now);

    const RootFolder& root;
    Seconds seconds;
    bool pageShown = false;
    std::vector<std::string> links; ///< cards and where they lead, as they were when `cards` were made of them
    std::vector<Card> cards;
    std::map<std::string, KeptFile> runtimeStatus; ///< by node
    std::map<std::string, bool> awake;             ///< by node; asked once a reading
    DRMClients clients;
    DRMLedger ledger;
    std::optional<double> clientsReadAt;
    NVIDIAChips nvidia;
};

} // namespace ostrivane
