#include "app/model/SessionBusAddress.hpp"

#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace ostrivane {
namespace {

void makeSocket(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    std::ranges::copy(path, address.sun_path);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
}

TEST(SessionBusAddress, isWhatTheEnvironmentTells) {
    EXPECT_EQ(sessionBusAddress({.address = "unix:path=/a;tcp:host=b,port=1", .runtimeFolder = "/nowhere"}),
              "unix:path=/a;tcp:host=b,port=1");
    EXPECT_EQ(sessionBusAddress({}), std::nullopt);
}

TEST(SessionBusAddress, neverStartsABus) {
    EXPECT_EQ(sessionBusAddress({.address = "autolaunch:"}), std::nullopt);
    EXPECT_EQ(sessionBusAddress({.address = ";autolaunch:scope=*user;;unix:path=/a;autolaunch:"}), "unix:path=/a");
}

TEST(SessionBusAddress, isElseTheSocketOfTheUsersBus) {
    const TemporaryFolder folder;
    const std::string odd = folder.file("a b,c;d");
    std::filesystem::create_directory(odd);
    EXPECT_EQ(sessionBusAddress({.runtimeFolder = odd}), std::nullopt);
    folder.write("bus", "no socket");
    EXPECT_EQ(sessionBusAddress({.runtimeFolder = folder.path()}), std::nullopt);

    makeSocket(odd + "/bus");
    const std::string expected = "unix:path=" + folder.file("a%20b%2cc%3bd") + "/bus";
    EXPECT_EQ(sessionBusAddress({.runtimeFolder = odd}), expected);
    EXPECT_EQ(sessionBusAddress({.address = "autolaunch:", .runtimeFolder = odd}), expected);
    EXPECT_EQ(sessionBusAddress({.address = "unix:path=/a", .runtimeFolder = odd}), "unix:path=/a");
    EXPECT_EQ(sessionBusAddress({.runtimeFolder = std::filesystem::relative(odd).string()}), std::nullopt);
}

} // namespace
} // namespace ostrivane
