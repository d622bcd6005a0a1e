// The real port code against a pseudo-terminal.

#include <gtest/gtest.h>
#ifndef _WIN32

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtSerialPort.h"

namespace vantor::test {
namespace {

using std::chrono::seconds;

class QtSerialPortTest : public ::testing::Test {
  protected:
    QtSerialPortTest() : master(posix_openpt(O_RDWR | O_NOCTTY)) {
        EXPECT_EQ(grantpt(master), 0);
        EXPECT_EQ(unlockpt(master), 0);
        map.assign(9, ptsname(master));
        port.setReceiver([this](std::span<const std::uint8_t> bytes) {
            received.append(bytes.begin(), bytes.end());
        });
        port.setFailureHandler([this](const std::string&) { ++failures; });
    }
    ~QtSerialPortTest() override { hangUp(); }

    void hangUp() {
        if (master >= 0) ::close(master);
        master = -1;
    }
    std::string atTheBox() const {
        std::string bytes(64, '\0');
        pollfd ready{.fd = master, .events = POLLIN, .revents = 0};
        if (poll(&ready, 1, 2000) != 1) return {};
        bytes.resize(static_cast<std::size_t>(
            std::max<ssize_t>(::read(master, bytes.data(), bytes.size()), 0)));
        return bytes;
    }
    bool pumpUntil(const std::function<bool()>& done) {
        const Micros end = loop.now() + seconds(5);
        // Something to wake up for, should nothing come.
        loop.callAfter(seconds(5), [] {});
        while (!done() && loop.now() < end) loop.pump();
        return done();
    }
    bool send(const std::string& text) {
        return port.write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    }

    QtEventLoop loop;
    int master;
    PortMap map;
    QtSerialPort port{map};
    std::string received;
    int failures = 0;
};

TEST_F(QtSerialPortTest, CarriesEveryByteBothWays) {
    ASSERT_TRUE(port.open(9).open);
    EXPECT_TRUE(send(""));
    EXPECT_TRUE(send(std::string("\x1B\x00\xFFS\r", 5)));
    EXPECT_EQ(atTheBox(), std::string("\x1B\x00\xFFS\r", 5));
    const std::string reply("C\x11\x13\x00\xFF\r\n", 7);
    ASSERT_EQ(::write(master, reply.data(), reply.size()), 7);
    EXPECT_TRUE(pumpUntil([&] { return received.size() >= reply.size(); }));
    EXPECT_EQ(received, reply);
    EXPECT_EQ(failures, 0);
    port.close();
    EXPECT_FALSE(port.isOpen());
    EXPECT_FALSE(send("S"));
}

TEST_F(QtSerialPortTest, ABreakIsNoFailureAndWhatWasThereBeforeOpeningIsGone) {
    ASSERT_TRUE(port.open(9).open);
    port.setBreak(true);
    port.setBreak(false);
    EXPECT_TRUE(send("J"));
    EXPECT_EQ(atTheBox(), "J");
    port.setBreak(true);
    port.close();
    ASSERT_EQ(::write(master, "old", 3), 3);
    ASSERT_TRUE(port.open(9).open);
    ASSERT_EQ(::write(master, "new", 3), 3);
    EXPECT_TRUE(pumpUntil([&] { return received.size() >= 3; }));
    EXPECT_EQ(received, "new");
    EXPECT_EQ(failures, 0);
}

TEST_F(QtSerialPortTest, APulledAdapterFailsOnceAndKeepsQuiet) {
    ASSERT_TRUE(port.open(9).open);
    hangUp();
    EXPECT_TRUE(pumpUntil([&] { return failures > 0; }));
    EXPECT_TRUE(pumpUntil([&] { return !port.isOpen(); }));
    // With nothing to wake it up but its own timer, the loop turns a handful of times.
    int turns = 0;
    bool over = false;
    loop.callAfter(std::chrono::milliseconds(50), [&] { over = true; });
    while (!over) {
        loop.pump();
        ++turns;
    }
    EXPECT_LT(turns, 10);
    EXPECT_EQ(failures, 1);
    EXPECT_FALSE(send("S"));
    port.close();
}

TEST_F(QtSerialPortTest, SaysWhyAPortDoesNotOpenAndWhichDevicesAreThere) {
    const QtPortDirectory directory(map);
    EXPECT_TRUE(directory.describe(9).present);
    EXPECT_EQ(directory.describe(9).device, map.device(9));
    EXPECT_EQ(directory.describe(30).device, "");
    map.assign(10, "/dev/vantor-no-such-port");
    EXPECT_FALSE(directory.describe(10).present);
    for (const int number : {10, 30}) {
        const SerialPort::OpenResult result = port.open(number);
        EXPECT_FALSE(result.open || port.isOpen()) << number;
        EXPECT_NE(result.reason, "") << number;
    }
}

}  // namespace
}  // namespace vantor::test
#endif
