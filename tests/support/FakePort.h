#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/EventLoop.h"
#include "platform/SerialPort.h"

namespace vantor::test {

/// A port that records what is sent and answers from rules, some time later.
class FakePort final : public SerialPort {
  public:
    explicit FakePort(EventLoop& loop) : loop_(loop) {}

    // --- knobs
    bool openable = true;
    bool takesData = true;
    /// What every write so far said, joined; breaks appear as "<break>" and "</break>".
    std::string sent;
    std::vector<std::string> writes;
    int discards = 0;
    /// Answers what no rule answers, after 5 ms; empty = silence.
    std::function<std::string(std::string_view)> responder;
    int openedNumber = 0;

    /// Every write equal to `request` is answered with `reply` after `delayMs`; several rules for
    /// one request answer one after the other, the last one for ever.
    void answer(std::string request, std::string reply, int delayMs = 5) {
        rules_[std::move(request)].push_back({std::move(reply), delayMs});
    }
    /// From now on `request` stays without an answer.
    void forget(const std::string& request) { rules_.erase(request); }
    /// Bytes from the box, after `delayMs`.
    void receive(std::string bytes, int delayMs = 0) {
        loop_.callAfter(std::chrono::milliseconds(delayMs), [this, bytes = std::move(bytes)] {
            if (receiver_) {
                receiver_({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
            }
        });
    }
    void fail(const std::string& reason) {
        if (failure_) failure_(reason);
    }

    OpenResult open(int portNumber) override {
        openedNumber = portNumber;
        open_ = openable;
        return {open_, open_ ? "" : "no such port"};
    }
    void close() override { open_ = false; }
    [[nodiscard]] bool isOpen() const override { return open_; }
    [[nodiscard]] bool write(std::span<const std::uint8_t> bytes) override {
        if (!open_ || !takesData) return false;
        std::string text(bytes.begin(), bytes.end());
        sent += text;
        writes.push_back(text);
        const auto rule = rules_.find(text);
        if (rule != rules_.end()) {
            const Reply reply = rule->second.front();
            if (rule->second.size() > 1) rule->second.erase(rule->second.begin());
            receive(reply.bytes, reply.delayMs);
        } else if (responder) {
            const std::string reply = responder(text);
            if (!reply.empty()) receive(reply, 5);
        }
        return true;
    }
    void setBreak(bool on) override { sent += on ? "<break>" : "</break>"; }
    void discardInput() override { ++discards; }
    void setReceiver(Receiver receiver) override { receiver_ = std::move(receiver); }
    void setFailureHandler(FailureHandler handler) override { failure_ = std::move(handler); }

  private:
    struct Reply {
        std::string bytes;
        int delayMs = 0;
    };

    EventLoop& loop_;
    bool open_ = false;
    std::map<std::string, std::vector<Reply>> rules_;
    Receiver receiver_;
    FailureHandler failure_;
};

}  // namespace vantor::test
