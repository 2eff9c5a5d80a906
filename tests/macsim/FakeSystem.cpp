#include "tests/macsim/FakeSystem.hpp"

#include "tests/macsim/FakeParts.hpp"

#include <boost/json.hpp>

#include <charconv>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <utility>

namespace macsim {

namespace {

std::vector<std::string> recordedFaults;
std::set<std::string, std::less<>> refusals;

} // namespace

void reset() {
    refusals.clear();
    resetBundles();
    resetPreferences();
    resetRegistry();
    resetMach();
    resetSysctls();
    resetProcesses();
}

void restart() {
    reset();
    recordedFaults.clear();
    forgetObjects();
    forgetIOObjects();
    forgetMach();
    forgetQueues();
}

std::ostream& operator<<(std::ostream& out, const Balance& held) {
    return out << held.objects << " objects, " << held.ioObjects << " io objects, " << held.vmBuffers << " buffers, "
               << held.hostPorts << " host ports, " << held.queues << " queues";
}

Balance balance() {
    return {liveObjects(), liveIOObjects(), liveVMBuffers(), liveHostPorts(), liveQueues()};
}

void fault(std::string what) {
    recordedFaults.push_back(std::move(what));
}

const std::vector<std::string>& faults() {
    return recordedFaults;
}

void refuse(std::string call) {
    refusals.insert(std::move(call));
}

bool refused(std::string_view call) {
    return refusals.contains(call);
}

boost::json::value fixture(std::string_view name) {
    const auto path = std::string(OSTRIVANE_FIXTURES "/macos/") + std::string(name);
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("no fixture " + path);
    return boost::json::parse(std::string(std::istreambuf_iterator<char>(file), {}));
}

std::vector<std::byte> recordNamed(std::string_view name) {
    static const auto records = fixture("kernel-records.json");
    for (const auto& record : records.as_array())
        if (record.at("name").as_string() == name)
            return bytesOfHex(record.at("hex").as_string());
    throw std::runtime_error("no record " + std::string(name));
}

std::vector<std::byte> bytesOfHex(std::string_view digits) {
    std::vector<std::byte> bytes;
    for (std::size_t i = 0; i + 2 <= digits.size(); i += 2) {
        unsigned value = 0;
        std::from_chars(digits.data() + i, digits.data() + i + 2, value, 16);
        bytes.push_back(static_cast<std::byte>(value));
    }
    return bytes;
}

} // namespace macsim
