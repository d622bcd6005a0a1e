#include "boxsim/pty/PseudoTerminal.h"

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace vantor::boxsim {

namespace {

void require(bool done, const char* what) {
    if (!done) throw std::system_error(errno, std::generic_category(), what);
}

/// No echo, no line editing, no translation.
void makeRaw(int descriptor) {
    termios settings{};
    require(tcgetattr(descriptor, &settings) == 0, "tcgetattr");
    settings.c_iflag = 0;
    settings.c_oflag = 0;
    settings.c_lflag = 0;
    settings.c_cflag = CS8 | CREAD | CLOCAL;
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    cfsetispeed(&settings, B9600);
    cfsetospeed(&settings, B9600);
    require(tcsetattr(descriptor, TCSANOW, &settings) == 0, "tcsetattr");
}

}  // namespace

PseudoTerminal::PseudoTerminal(RealTimeLoop& loop, Receiver receiver)
    : loop_(loop), receiver_(std::move(receiver)) {}

PseudoTerminal::~PseudoTerminal() {
    close();
}

void PseudoTerminal::open(const std::filesystem::path& link) {
    close();
    try {
        master_ = posix_openpt(O_RDWR | O_NOCTTY);
        require(master_ >= 0, "posix_openpt");
        require(grantpt(master_) == 0 && unlockpt(master_) == 0, "unlockpt");
        const char* const name = ptsname(master_);
        require(name != nullptr, "ptsname");
        path_ = name;
        keeper_ = ::open(name, O_RDWR | O_NOCTTY);
        require(keeper_ >= 0, name);
        makeRaw(keeper_);
        require(fcntl(master_, F_SETFL, O_NONBLOCK) == 0, "fcntl");
        makeLink(link);
    } catch (...) {
        close();
        throw;
    }
    loop_.watch(master_, [this] { readable(); });
}

void PseudoTerminal::makeLink(const std::filesystem::path& link) {
    if (link.empty()) return;
    // Only a link is replaced, never a file of the user's.
    if (std::filesystem::is_symlink(link)) std::filesystem::remove(link);
    std::filesystem::create_symlink(path_, link);
    link_ = link;
}

void PseudoTerminal::close() {
    if (master_ >= 0) {
        loop_.unwatch(master_);
        ::close(master_);
        master_ = -1;
    }
    if (keeper_ >= 0) {
        ::close(keeper_);
        keeper_ = -1;
    }
    std::error_code ignored;
    if (!link_.empty() && std::filesystem::read_symlink(link_, ignored) == path_) {
        std::filesystem::remove(link_, ignored);
    }
    link_.clear();
    path_.clear();
}

void PseudoTerminal::readable() {
    std::array<std::uint8_t, 256> bytes{};
    const ssize_t got = ::read(master_, bytes.data(), bytes.size());
    if (got > 0) receiver_(std::span(bytes).first(static_cast<std::size_t>(got)));
}

void PseudoTerminal::write(std::uint8_t byte) const {
    if (master_ < 0) return;
    const ssize_t written = ::write(master_, &byte, 1);
    static_cast<void>(written);
}

}  // namespace vantor::boxsim
