#include "cli/Timeline.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace ostrivane::cli {

namespace {

/// Seconds that the piece has in common with `start` to `end`.
double overlap(const Piece& piece, double start, double end) {
    return std::max(0.0, std::min(piece.start + piece.length, end) - std::max(piece.start, start));
}

/// A damaged file may hold anything.
bool isUsable(const Piece& piece) {
    return piece.length > 0 && std::isfinite(piece.value) && std::isfinite(piece.highest);
}

} // namespace

Period lastOf(HistoryRange range, Date now) {
    return {now + -seconds(range), now};
}

std::vector<std::optional<double>> means(const std::vector<Piece>& pieces, const Period& period, int count) {
    struct Sum {
        double value = 0;
        double seconds = 0;
    };
    std::vector<Sum> sums(static_cast<std::size_t>(std::max(count, 0)));
    const double step = period.seconds() / count;
    for (const Piece& piece : pieces) {
        if (!isUsable(piece) || overlap(piece, period.start.seconds, period.end.seconds) <= 0)
            continue;
        const double from = std::max(0.0, (piece.start - period.start.seconds) / step);
        for (auto index = static_cast<std::size_t>(from); index < sums.size(); ++index) {
            const double start = period.start.seconds + static_cast<double>(index) * step;
            if (start >= piece.start + piece.length)
                break;
            const double weight = overlap(piece, start, start + step);
            sums[index].value += piece.value * weight;
            sums[index].seconds += weight;
        }
    }
    std::vector<std::optional<double>> parts;
    parts.reserve(sums.size());
    for (const Sum& sum : sums)
        parts.push_back(sum.seconds > 0 ? std::optional(sum.value / sum.seconds) : std::nullopt);
    return parts;
}

std::optional<Extremes> extremes(const std::vector<Piece>& pieces, const Period& period) {
    std::optional<Extremes> found;
    for (const Piece& piece : pieces) {
        if (!isUsable(piece) || overlap(piece, period.start.seconds, period.end.seconds) <= 0)
            continue;
        if (!found)
            found = {.mean = 0, .lowest = piece.value, .highest = piece.highest};
        found->lowest = std::min(found->lowest, piece.value);
        found->highest = std::max(found->highest, piece.highest);
    }
    if (found)
        found->mean = means(pieces, period, 1).front().value_or(0);
    return found;
}

double coverage(const std::vector<Piece>& pieces, const Period& period) {
    double covered = 0;
    double until = period.start.seconds;
    for (const Piece& piece : pieces) {
        covered += overlap(piece, until, period.end.seconds);
        until = std::max(until, piece.start + piece.length);
    }
    return covered;
}

} // namespace ostrivane::cli
