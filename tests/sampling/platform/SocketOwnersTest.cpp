#include "core/sampling/platform/SocketOwners.hpp"

#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace ostrivane;

namespace {

/// Processes as a test has set them, and a count of what was read of them.
class FakeProcesses final : public DescriptorSource {
public:
    struct Process {
        std::uint64_t start = 0;
        std::map<int, SocketInode> sockets; ///< by descriptor; 0 stands for something else
        bool isHidden = false;
    };

    std::vector<std::int32_t> pids() override {
        std::vector<std::int32_t> found;
        for (const auto& [pid, process] : processes)
            found.push_back(pid);
        return found;
    }
    std::optional<std::uint64_t> startOf(std::int32_t pid) override {
        const auto found = processes.find(pid);
        return found == processes.end() ? std::nullopt : std::optional(found->second.start);
    }
    std::unique_ptr<Descriptors> open(std::int32_t pid) override {
        const auto found = processes.find(pid);
        if (found == processes.end() || found->second.isHidden)
            return nullptr;
        return std::make_unique<Links>(*this, pid);
    }

    /// Descriptors read since the last question, by process.
    std::map<std::int32_t, int> takeReads() { return std::exchange(reads, {}); }

    std::map<std::int32_t, Process> processes;

private:
    class Links final : public Descriptors {
    public:
        Links(FakeProcesses& all, std::int32_t process) : owner(all), pid(process) {}
        std::optional<int> next() override {
            const auto found = owner.processes.find(pid);
            if (found == owner.processes.end())
                return std::nullopt;
            const auto entry = found->second.sockets.upper_bound(last);
            if (entry == found->second.sockets.end())
                return std::nullopt;
            last = entry->first;
            return last;
        }
        std::optional<SocketInode> socketAt(int descriptor) override {
            ++owner.reads[pid];
            const auto found = owner.processes.find(pid);
            if (found == owner.processes.end())
                return std::nullopt;
            const auto entry = found->second.sockets.find(descriptor);
            if (entry == found->second.sockets.end() || entry->second == 0)
                return std::nullopt;
            return entry->second;
        }

    private:
        FakeProcesses& owner;
        std::int32_t pid;
        int last = -1;
    };

    std::map<std::int32_t, int> reads;
};

class SocketOwnersTest : public testing::Test {
protected:
    /// The holder of each wanted socket; -1 while it is sought, 0 when it has none.
    std::map<SocketInode, std::int32_t> holders(const std::set<SocketInode>& wanted) {
        const SocketOwnership& known = owners.refresh(SocketInodes(wanted.begin(), wanted.end()));
        std::map<SocketInode, std::int32_t> found;
        for (const SocketInode inode : wanted) {
            const auto place = known.places.find(inode);
            found[inode] = place != known.places.end() ? place->second.pid : known.sought.contains(inode) ? -1 : 0;
        }
        return found;
    }
    using Found = std::map<SocketInode, std::int32_t>;
    using Reads = std::map<std::int32_t, int>;

    FakeProcesses source;
    SocketOwners::Limits limits;
    SocketOwners owners{source, limits};
};

TEST_F(SocketOwnersTest, readsDescriptorsOnlyWhereAHolderMayBe) {
    source.processes = {{10, {1, {{0, 0}, {3, 100}}}}, {20, {2, {{0, 0}, {1, 0}}}}, {30, {3, {{5, 300}}}}};
    EXPECT_EQ(holders({100, 300}), (Found{{100, 10}, {300, 30}}));
    EXPECT_EQ(source.takeReads(), (Reads{{10, 2}, {20, 2}, {30, 1}}));

    EXPECT_EQ(holders({100, 300}), (Found{{100, 10}, {300, 30}}));
    EXPECT_EQ(source.takeReads(), (Reads{{10, 1}, {30, 1}})) << "no more than whether it still holds";

    source.processes[10].sockets[4] = 101; // the holder of another socket, though not the youngest process
    EXPECT_EQ(holders({100, 101, 300}), (Found{{100, 10}, {101, 10}, {300, 30}}));
    EXPECT_EQ(source.takeReads().count(20), 0U);

    source.processes[40] = {4, {{3, 400}}};
    EXPECT_EQ(holders({100, 400}), (Found{{100, 10}, {400, 40}}));
    EXPECT_EQ(source.takeReads(), (Reads{{10, 1}, {40, 1}}));
}

TEST_F(SocketOwnersTest, aSharedSocketBelongsToTheYoungest) {
    source.processes = {{10, {5, {{3, 100}}}}, {20, {5, {{3, 100}}}}, {30, {2, {{3, 100}}}}};
    EXPECT_EQ(holders({100}), (Found{{100, 20}})) << "30 has a number that was used before; 10 began just before 20";
    source.processes[40] = {9, {{3, 100}}}; // it was born with it
    EXPECT_EQ(holders({100}), (Found{{100, 40}}));
    source.processes.erase(40);
    EXPECT_EQ(holders({100})[100], 20);
}

TEST_F(SocketOwnersTest, followsASocketThatIsHandedOn) {
    source.processes = {{10, {1, {{3, 100}}}}, {20, {2, {{0, 0}}}}};
    EXPECT_EQ(holders({100}), (Found{{100, 10}}));
    source.processes[10].sockets[3] = 0;
    source.processes[20].sockets[7] = 100;
    EXPECT_EQ(holders({100}), (Found{{100, 20}}));
    source.processes[20].sockets = {{9, 100}}; // moved within the process
    EXPECT_EQ(holders({100}), (Found{{100, 20}}));
    source.processes[20].isHidden = true;
    EXPECT_EQ(holders({100}), (Found{{100, 0}}));
}

TEST_F(SocketOwnersTest, aSocketWithoutHolderIsNotSoughtForEver) {
    source.processes = {{10, {1, {{3, 100}, {4, 0}, {5, 0}}}}, {20, {2, {{0, 0}}, true}}};
    EXPECT_EQ(holders({100, 999}), (Found{{100, 10}, {999, 0}}));
    source.takeReads();
    int searches = 0;
    for (int i = 0; i < 3 * limits.restingRefreshes; ++i) {
        holders({100, 999});
        searches += source.takeReads()[10] > 1 ? 1 : 0;
    }
    EXPECT_GE(searches, 2);
    EXPECT_LE(searches, 3);
    source.processes[20].isHidden = false;
    source.processes[20].sockets[0] = 999;
    for (int i = 0; i < limits.restingRefreshes; ++i)
        holders({100, 999});
    EXPECT_EQ(holders({100, 999})[999], 20) << "it was tried again";
}

TEST_F(SocketOwnersTest, aLaterProcessWithTheSameIdIsAnother) {
    source.processes = {{10, {1, {{3, 100}}}}};
    EXPECT_EQ(holders({100}), (Found{{100, 10}}));
    source.processes = {{10, {8, {{3, 200}, {4, 100}}}}};
    EXPECT_EQ(holders({100, 200}), (Found{{100, 10}, {200, 10}}));
    EXPECT_EQ(owners.refresh({}).processes, (PidMap<std::uint64_t>{{10, 8}}));
    source.processes.clear();
    EXPECT_EQ(holders({100, 200}), (Found{{100, 0}, {200, 0}}));
    EXPECT_TRUE(owners.refresh({}).processes.empty());
}

TEST_F(SocketOwnersTest, tensOfThousandsOfDescriptorsAreReadALittleAtATime) {
    holders({});
    source.processes[10] = {1, {}};
    for (int descriptor = 0; descriptor < 30'000; ++descriptor)
        source.processes[10].sockets[descriptor] = 0;
    source.processes[10].sockets[29'999] = 100;
    int refreshes = 1;
    for (; holders({100})[100] != 10; ++refreshes) {
        ASSERT_LT(refreshes, 30);
        EXPECT_EQ(holders({100})[100], -1) << "still sought: nobody may say that it has no holder";
        const int most = static_cast<int>(limits.effort / SocketOwners::readEffort);
        EXPECT_LE(source.takeReads()[10], 2 * most);
    }
    EXPECT_GT(refreshes, 3);
}

TEST_F(SocketOwnersTest, aServerWithThousandsOfConnectionsFindsTheNewOneAndChecksAllInTurn) {
    std::set<SocketInode> wanted;
    source.processes[10] = {1, {}};
    for (int descriptor = 0; descriptor < 2'500; ++descriptor) {
        source.processes[10].sockets[descriptor] = static_cast<SocketInode>(1000 + descriptor);
        wanted.insert(static_cast<SocketInode>(1000 + descriptor));
    }
    holders(wanted);
    source.takeReads();
    source.processes[10].sockets[2'500] = 99;
    wanted.insert(99);
    EXPECT_EQ(holders(wanted)[99], 10);
    EXPECT_LE(source.takeReads()[10], static_cast<int>(limits.checks) + 2);

    source.processes[10].sockets.erase(2'400); // closed here, and handed to somebody whom nobody may look into
    const std::size_t turns = wanted.size() / limits.checks + 1;
    for (std::size_t i = 0; i < turns; ++i)
        holders(wanted);
    EXPECT_NE(holders(wanted)[1000 + 2'400], 10);
}

TEST_F(SocketOwnersTest, aProcessThatEndsWhileItIsWalkedLeavesNothingBehind) {
    holders({});
    source.processes[10] = {1, {}};
    for (int descriptor = 0; descriptor < 10'000; ++descriptor)
        source.processes[10].sockets[descriptor] = 0;
    source.processes[10].sockets[1] = 100;
    EXPECT_EQ(holders({100}), (Found{{100, 10}}));
    source.processes.erase(10);
    EXPECT_EQ(holders({100}), (Found{{100, 0}}));
    source.processes[10] = {2, {{0, 100}}};
    EXPECT_EQ(holders({100})[100], 10) << "the walk through the ended one does not go on";
}

} // namespace
