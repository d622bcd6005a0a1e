#include "player/CommandSource.h"

#include <thread>

namespace vantor::player {

NextCommand ScriptSource::next() {
    if (position_ == commands_.size()) return NoMore{};
    return commands_.at(position_++);
}

StreamSource::StreamSource(std::istream& stream, ScriptPlace place) : place_(std::move(place)) {
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
    while (pending_.empty() && !shared_->lines.empty()) {
        const std::string line = std::move(shared_->lines.front());
        shared_->lines.pop_front();
        ParsedScript parsed = parseScript(line, place_);
        ++place_.firstLine;
        if (const auto* errors = std::get_if<std::vector<ScriptError>>(&parsed)) {
            return errors->front();
        }
        for (Command& command : std::get<std::vector<Command>>(parsed)) {
            pending_.push_back(std::move(command));
        }
    }
    if (!pending_.empty()) {
        Command command = std::move(pending_.front());
        pending_.pop_front();
        return command;
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
