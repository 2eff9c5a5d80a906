#pragma once

#include "core/model/SystemSnapshot.hpp"

#include <cstdint>
#include <optional>
#include <random>
#include <vector>

namespace ostrivane {

/// Months in the life of a made-up machine, one snapshot after the other. The same seed gives the same stream on every
/// system. Thin enough that two months pass in a second or two without optimisation: a working day of six hours with
/// a snapshot every 20 to 30 seconds, and nothing at night and on every seventh day.
///
/// What happens on the way, each of it often in a month:
/// - bursts of a snapshot every 2 seconds, and crowds of up to 80 applications in place of up to 7, for some minutes;
/// - gaps: the program was off, and its first snapshot has the interval 0;
/// - suspends: the interval is as long as the machine slept, or tells nothing of it;
/// - the wall clock steps by up to two hours, forward or back, so that a minute, or a quarter of an hour, comes again;
/// - intervals of 0 and below in the middle;
/// - applications come, go, come back, and are renamed; some hardly do anything, close to where they go unnoticed;
/// - graphics, battery, power (of the battery, of the sensors, of both), temperatures and fans come and go.
///
/// Figures are whole multiples of powers of two, and small enough that sums of them over months are exact in any order:
/// what is computed in two ways can be compared for equality, as long as each mean is one division. No two
/// applications ever hold the same memory, so that two that weigh the same are next to impossible.
class GeneratedSnapshots {
public:
    GeneratedSnapshots(std::uint64_t seed, Date start, int days);

    /// Valid until the next call; null once the days are over. Only `timestamp`, `interval`, the readings of the
    /// machine that the history keeps, and `applications` are filled in.
    const SystemSnapshot* next();

private:
    std::uint64_t below(std::uint64_t bound);
    bool oneIn(std::uint64_t count) { return below(count) == 0; }
    double figure(std::uint64_t bound, double unit) { return static_cast<double>(below(bound)) * unit; }

    double passTime();
    void read(std::optional<double>& reading, double least, std::uint64_t bound, double unit);
    void readMachine();
    void readSensors();
    void changeApplications();
    void readApplication(ApplicationSnapshot& app, int id);

    std::mt19937_64 random;
    SystemSnapshot snapshot;
    double elapsed = 0; ///< seconds of true time since the start
    double end = 0;
    double wallClock = 0;     ///< what it shows at `elapsed` 0
    int denseLeft = 0;        ///< snapshots left in a burst
    int crowdLeft = 0;        ///< snapshots left in a crowd
    std::vector<int> renamed; ///< how often, of each application
    std::vector<int> ids;     ///< of `snapshot.applications`
};

} // namespace ostrivane
