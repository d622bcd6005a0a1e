#include "cc/SentinelMemory.h"

#include <optional>

#include "catalogue/Text.h"
#include "cc/CcLayout.h"

namespace vantor {

namespace {

constexpr std::string_view kModeCommand = "$06";
constexpr std::string_view kAttention = "\r#";
constexpr std::string_view kIdentify = "TKI";
constexpr std::string_view kWordReply = "ZZR";
constexpr std::string_view kWriteEnable = "W0030\r";
constexpr std::string_view kWriteDisable = "W0000\r";
constexpr int kVersionCharacters = 4;
constexpr int kEchoMs = 200;
constexpr int kReplyMs = 1000;
constexpr int kAfterModeMs = 200;
constexpr int kAfterAttentionMs = 50;
constexpr int kWords = 64;

// Instructions of the serial EEPROM; the word's address is added.
constexpr int kRead = 0x80;
constexpr int kWrite = 0x40;
constexpr int kErase = 0xC0;

// 1-based positions in the reply to a read: the low byte comes first.
constexpr int kLowPosition = 4;
constexpr int kHighPosition = 8;

std::string hexByte(int value) {
    return hex(static_cast<unsigned>(value), 2);
}

/// Two hexadecimal digits; nothing where a reply was cut short or spoilt.
std::optional<int> byteAt(std::string_view reply, int position) {
    const std::string_view digits = field(reply, position, 2);
    if (digits.size() != 2) return std::nullopt;
    int value = 0;
    for (const char c : digits) {
        const std::size_t digit = std::string_view("0123456789ABCDEFabcdef").find(c);
        if (digit == std::string_view::npos) return std::nullopt;
        value = 16 * value + static_cast<int>(digit < 16 ? digit : digit - 6);
    }
    return value;
}

std::optional<int> wordIn(std::string_view reply) {
    if (!reply.starts_with(kWordReply)) return std::nullopt;
    const auto low = byteAt(reply, kLowPosition);
    const auto high = byteAt(reply, kHighPosition);
    if (!low || !high) return std::nullopt;
    return *high * 256 + *low;
}

}  // namespace

bool SentinelMemory::givenUp() const {
    return state_.gather.abortFlag || !state_.link.portOpen;
}

bool SentinelMemory::sentinelCommand(std::string_view text, int lines, int timeoutMs) {
    bool complete = false;
    errors_.attempt(329, [&] { complete = exchange(text, lines, timeoutMs); });
    return complete;
}

bool SentinelMemory::exchange(std::string_view text, int lines, int timeoutMs) {
    BoxReplies& box = state_.box;
    box.replyText.clear();
    box.sentinelBuffer.clear();
    box.linesComplete = false;
    box.linesExpected = lines;
    for (const char c : text) {
        box.replyText.clear();
        box.sentinelBuffer.clear();
        link_.sendString({&c, 1});
        link_.waitFor(kEchoMs, [&] { return box.sentinelBuffer.starts_with(c) || givenUp(); });
    }
    link_.waitFor(timeoutMs, [&] { return box.linesComplete || givenUp(); });
    const bool complete = box.linesComplete;
    // The answer to the identification takes the place of its last echo.
    const bool echoed = text != kIdentify && !box.sentinelBuffer.empty();
    box.replyText = box.sentinelBuffer.substr(echoed ? 1 : 0);
    box.linesComplete = false;
    return complete;
}

bool SentinelMemory::openSentinelSession() {
    bool answered = false;
    errors_.attempt(327, [&] { answered = open(); });
    return answered;
}

bool SentinelMemory::open() {
    BoxReplies& box = state_.box;
    box.sentinelOpen = false;
    box.sentinelVersion = BoxReplies{}.sentinelVersion;
    link_.flushInput();
    const bool serial = check_.enterSerialMode(kModeCommand);
    link_.waitTicks(kAfterModeMs);
    if (serial) link_.sendString(kAttention);
    link_.waitTicks(kAfterAttentionMs);
    link_.flushInput();
    if (!serial || !sentinelCommand(kIdentify, 1, kReplyMs)) return false;
    if (box.replyText.starts_with('E')) {
        prompts_.ask({.title = state_.msgText(326),
                      .text = state_.msgText(325),
                      .icon = PromptIcon::critical});
        box.sentinelVersion = box.replyText.substr(1);
    } else {
        box.sentinelVersion = field(box.replyText, 1, kVersionCharacters);
        box.sentinelOpen = true;
    }
    return true;
}

void SentinelMemory::closeSentinelSession() {
    if (state_.box.sentinelOpen) {
        errors_.attempt(328, [this] {
            state_.box.sentinelOpen = false;
            sentinelCommand(kAttention, 1, kReplyMs);
        });
    }
    errors_.attempt(328, [this] { check_.leaveSerialMode(); });
}

void SentinelMemory::abandonSession() {
    if (!state_.box.sentinelOpen) return;
    state_.box.sentinelOpen = false;
    link_.sendString(kAttention);
}

int SentinelMemory::readSentinelWord(int address) {
    int word = -1;
    errors_.attempt(332, [&] {
        const std::string command = "M00" + hexByte(kRead + address % kWords) + "0102\r";
        state_.box.wordReadyFlag = sentinelCommand(command, 2, kReplyMs);
        // Only the end of its line may be missing.
        if (const auto reply = wordIn(state_.box.replyText)) {
            word = *reply;
            return;
        }
        state_.box.wordReadyFlag = false;
        if (state_.gather.abortFlag) return;
        prompts_.ask({.title = state_.msgText(331),
                      .text = state_.msgText(330),
                      .icon = PromptIcon::critical});
    });
    return word;
}

bool SentinelMemory::writeSentinelWord(int address, int value) {
    bool answered = false;
    errors_.attempt(333, [&] {
        const int word = address % kWords;
        if (state_.images.old[word] == value) {
            answered = true;
            return;
        }
        const std::string data = hexByte(lowByte(value)) + hexByte(highByte(value));
        sentinelCommand(kWriteEnable, 2, kReplyMs);
        sentinelCommand("W00" + hexByte(kErase + word) + "\r", 2, kReplyMs);
        sentinelCommand("W00" + hexByte(kWrite + word) + data + "\r", 2, kReplyMs);
        answered = sentinelCommand(kWriteDisable, 2, kReplyMs);
    });
    return answered;
}

}  // namespace vantor
