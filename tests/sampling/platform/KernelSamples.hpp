#pragma once

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The fixtures' kernel records, and what holds of each of their decoders.
namespace ostrivane {

/// A record laid out by a compiler from the system's headers, and what it holds.
struct KernelSample {
    std::vector<std::byte> record;
    boost::json::object expect;

    std::uint64_t value(const char* name) const { return expect.at(name).to_number<std::uint64_t>(); }
};

inline boost::json::value fixtureJSON(std::string_view name) {
    std::ifstream file(std::string(OSTRIVANE_FIXTURES "/macos/").append(name));
    return boost::json::parse(std::string(std::istreambuf_iterator<char>(file), {}));
}

inline std::vector<std::byte> fromHex(std::string_view digits) {
    std::vector<std::byte> bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<std::byte>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16)));
    return bytes;
}

inline KernelSample kernelSample(std::string_view name) {
    const auto all = fixtureJSON("kernel-records.json");
    for (const auto& one : all.as_array())
        if (one.at("name").as_string() == name)
            return {fromHex(one.at("hex").as_string()), one.at("expect").as_object()};
    return {};
}

/// Whether `decode` gives nothing for each beginning of `record`, and the same for it with more behind it.
template <class Decode>
void expectNeedsAllOf(const std::vector<std::byte>& record, Decode decode) {
    const auto whole = decode(std::span<const std::byte>(record));
    ASSERT_TRUE(whole);
    for (std::size_t length = 0; length < record.size(); ++length) {
        const std::vector<std::byte> cut(record.begin(), record.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_FALSE(decode(std::span<const std::byte>(cut))) << length;
    }
    auto grown = record;
    grown.resize(record.size() + 24, std::byte{0xFF});
    EXPECT_EQ(decode(std::span<const std::byte>(grown)), whole);
}

} // namespace ostrivane
