#pragma once

#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace ostrivane {

/// A paired Bluetooth device. Battery levels in percent.
struct BluetoothDevice {
    std::string name;
    std::string address;
    std::string kind;
    bool connected = false;
    std::optional<std::int64_t> battery;
    std::optional<std::int64_t> batteryLeft;
    std::optional<std::int64_t> batteryRight;
    std::optional<std::int64_t> batteryCase;

    /// `address`, or `name` when there is none.
    const std::string& id() const { return address.empty() ? name : address; }

    friend bool operator==(const BluetoothDevice&, const BluetoothDevice&) = default;
};
BOOST_DESCRIBE_STRUCT(BluetoothDevice, (),
                      (name, address, kind, connected, battery, batteryLeft, batteryRight, batteryCase))
static_assert(describesEveryMember<BluetoothDevice>);

} // namespace ostrivane
