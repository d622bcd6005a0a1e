#include "player/CommandSource.h"

#include <thread>

namespace vantor::player {

NextCommand ScriptSource::next() {
    if (position_ == commands_.size()) return NoMore{};
    return commands_.at(position_++);
}

StreamSource::StreamSource(std::istream& stream) {
    std::thread([shared = shared_, &stream] {
        std::string line;
        while (std::getline(stream, line)) {
            const std::lock_guard guard(shared->lock);
            shared->lines.push_back(std::move(line));
            shared->arrived.notify_one();
        }
        const std::lock_guard guard(shared->lock);
        shared->ended = true;
        shared->arrived.notify_one();
    }).detach();
}

NextCommand StreamSource::next() {
    const std::lock_guard guard(shared_->lock);
    while (!shared_->lines.empty()) {
        const std::string line = std::move(shared_->lines.front());
        shared_->lines.pop_front();
        ParsedLine parsed = parseLine(line, ++lineNumber_);
        if (auto* command = std::get_if<Command>(&parsed)) return std::move(*command);
        if (auto* error = std::get_if<ScriptError>(&parsed)) return std::move(*error);
    }
    if (shared_->ended) return NoMore{};
    return NotYet{};
}

bool StreamSource::waitForLine(std::chrono::milliseconds limit) {
    std::unique_lock guard(shared_->lock);
    return shared_->arrived.wait_for(guard, limit,
                                     [this] { return !shared_->lines.empty() || shared_->ended; });
}

}  // namespace vantor::player
