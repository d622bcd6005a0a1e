#include <array>
#include <cstdio>

#include "boxsim/qt/BenchWindow.h"

namespace vantor::boxsim {

namespace {

/// A pause after which what follows is another command.
constexpr std::chrono::milliseconds kPause{50};

std::string nameOf(std::uint8_t byte) {
    switch (byte) {
        case 6:
            return "<ACK>";
        case 10:
            return "<LF>";
        case 13:
            return "<CR>";
        case 27:
            return "<ESC>";
        default:
            break;
    }
    if (byte > 32 && byte < 127) return std::string(1, static_cast<char>(byte));
    if (byte == 32) return " ";
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "<%02X>", byte);
    return text.data();
}

}  // namespace

std::string hexDump(std::span<const std::uint8_t> cells) {
    constexpr std::size_t kPerLine = 16;
    std::string text;
    for (std::size_t at = 0; at < cells.size(); at += kPerLine) {
        std::array<char, 8> address{};
        std::snprintf(address.data(), address.size(), "%03X ", static_cast<unsigned>(at));
        text += address.data();
        for (std::size_t i = at; i < std::min(at + kPerLine, cells.size()); ++i) {
            text += ' ';
            text += "0123456789ABCDEF"[cells[i] & 0x0F];
        }
        text += '\n';
    }
    return text;
}

std::string trafficText(std::span<const WireByte> bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool turned = i == 0 || bytes[i].fromBox != bytes[i - 1].fromBox;
        const bool newLine = i > 0 && ((bytes[i - 1].fromBox && bytes[i - 1].byte == 13) ||
                                       bytes[i].at - bytes[i - 1].at > kPause);
        if (turned || newLine) {
            std::array<char, 48> head{};
            const double at = std::chrono::duration<double>(bytes[i].at).count();
            std::snprintf(head.data(), head.size(), "%s%9.3f %s ", i == 0 ? "" : "\n", at,
                          bytes[i].fromBox ? "box" : "PC ");
            text += head.data();
        }
        text += nameOf(bytes[i].byte);
    }
    return text;
}

}  // namespace vantor::boxsim
