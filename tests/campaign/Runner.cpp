#include "Runner.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "Session.h"
#include "Table.h"

namespace vantor::campaign {

namespace {

using Clock = std::chrono::steady_clock;

/// No session takes a hundredth of it.
constexpr std::chrono::seconds kHangs{180};
constexpr int kPollMs = 1000;

/// Ctrl-C: what was played until then is reported all the same.
volatile std::sig_atomic_t interrupted = 0;

/// A child that runs every `stride`-th seed from `next` on and reports lines:
///
///     B seed                                        begins
///     V seed text                                   a violation
///     R seed struck disturbed done verdicts percent fingerprint     over
struct Worker {
    pid_t process = 0;
    int pipe = -1;
    std::uint64_t next = 0;
    std::string buffer;
    Clock::time_point since;
    bool over = false;
};

std::string oneLine(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    }
    return text;
}

[[noreturn]] void work(int pipe, std::uint64_t next, std::uint64_t end, std::uint64_t stride,
                       const std::function<void()>& enter) {
    const auto say = [pipe](const std::string& line) {
        const std::string whole = line + "\n";
        if (write(pipe, whole.data(), whole.size()) < 0) _exit(1);
    };
    enter();
    for (; next < end; next += stride) {
        const std::string seed = std::to_string(next);
        say("B " + seed);
        const Outcome outcome = runSession(planOf(next));
        for (const std::string& what : outcome.violations) say("V " + seed + " " + oneLine(what));
        std::ostringstream line;
        line << "R " << seed << ' ' << outcome.struck << ' '
             << (outcome.struck > 0 || outcome.pressed > 0) << ' ' << outcome.done << ' '
             << outcome.verdicts << ' ' << outcome.usedPercent << ' ' << outcome.fingerprint;
        say(line.str());
    }
    _exit(0);
}

class Campaign {
  public:
    Campaign(const Order& order, const std::function<void()>& enter)
        : order_(order), enter_(enter), end_(order.first + static_cast<unsigned>(order.sessions)) {}

    int run() {
        std::signal(SIGINT, [](int) { interrupted = 1; });
        workers_.resize(static_cast<std::size_t>(order_.processes));
        for (std::size_t i = 0; i < workers_.size(); ++i) {
            workers_[i].next = order_.first + i;
            begin(workers_[i]);
        }
        while (interrupted == 0 && attend()) {
        }
        for (const Worker& worker : workers_) {
            if (!worker.over) kill(worker.process, SIGKILL);
        }
        report();
        return static_cast<int>(violations_.size() + table_.neverStruck().size());
    }

  private:
    void begin(Worker& worker) {
        worker.over = worker.next >= end_;
        if (worker.over) return;
        int ends[2];
        if (pipe(ends) != 0) std::abort();
        std::fflush(nullptr);
        worker.process = fork();
        if (worker.process == 0) {
            close(ends[0]);
            std::signal(SIGINT, SIG_DFL);
            work(ends[1], worker.next, end_, workers_.size(), enter_);
        }
        close(ends[1]);
        worker.pipe = ends[0];
        worker.buffer.clear();
        worker.since = Clock::now();
    }

    /// False when all workers are through.
    bool attend() {
        std::vector<pollfd> fds;
        std::vector<Worker*> waiting;
        for (Worker& worker : workers_) {
            if (worker.over) continue;
            fds.push_back({.fd = worker.pipe, .events = POLLIN, .revents = 0});
            waiting.push_back(&worker);
        }
        if (fds.empty()) return false;
        poll(fds.data(), fds.size(), kPollMs);
        if (interrupted != 0) return false;
        for (std::size_t i = 0; i < fds.size(); ++i) {
            if (fds[i].revents != 0) listen(*waiting[i]);
            if (!waiting[i]->over && Clock::now() - waiting[i]->since > kHangs) {
                kill(waiting[i]->process, SIGKILL);
                lost(*waiting[i], "(b) hangs");
            }
        }
        return true;
    }

    void listen(Worker& worker) {
        char bytes[4096];
        const ssize_t count = read(worker.pipe, bytes, sizeof bytes);
        if (count > 0) {
            worker.buffer.append(bytes, static_cast<std::size_t>(count));
            for (auto stop = worker.buffer.find('\n'); stop != std::string::npos;
                 stop = worker.buffer.find('\n')) {
                line(worker, worker.buffer.substr(0, stop));
                worker.buffer.erase(0, stop + 1);
            }
            return;
        }
        if (worker.next >= end_) {
            close(worker.pipe);
            waitpid(worker.process, nullptr, 0);
            worker.over = true;
        } else {
            lost(worker, "crashes");
        }
    }

    void lost(Worker& worker, const std::string& how) {
        close(worker.pipe);
        int status = 0;
        waitpid(worker.process, &status, 0);
        violations_[worker.next].push_back(how + " (status " + std::to_string(status) + ")");
        count(worker.next, 0, true, false);
        worker.next += workers_.size();
        begin(worker);
    }

    void line(Worker& worker, const std::string& text) {
        worker.since = Clock::now();
        std::istringstream in(text);
        char kind = 0;
        std::uint64_t seed = 0;
        in >> kind >> seed;
        if (kind == 'V') {
            std::string what;
            std::getline(in, what);
            violations_[seed].push_back(what.substr(what.empty() ? 0 : 1));
            if (violations_[seed].size() == 1) {
                std::printf("seed %llu: %s\n", static_cast<unsigned long long>(seed),
                            violations_[seed].front().c_str());
                std::fflush(stdout);
            }
        } else if (kind == 'R') {
            int struck = 0, percent = 0, verdicts = 0;
            bool disturbed = false, done = false;
            in >> struck >> disturbed >> done >> verdicts >> percent;
            std::uint64_t fingerprint = 0;
            in >> fingerprint;
            fingerprint_ ^= fingerprint * (2 * seed + 1);
            verdicts_ += verdicts;
            if (percent > longest_) longest_ = percent;
            count(seed, struck, disturbed, done);
            worker.next = seed + workers_.size();
        }
    }

    void count(std::uint64_t seed, int struck, bool disturbed, bool done) {
        table_.add(planOf(seed), struck > 0, disturbed, done, violations_.contains(seed));
        constexpr int kNews = 250;
        if (++counted_ % kNews != 0) return;
        std::printf("%d of %d sessions, %zu with violations\n", counted_, order_.sessions,
                    violations_.size());
        std::fflush(stdout);
    }

    void report() const {
        std::printf("\n%s\n", table_.text().c_str());
        std::printf(
            "A cell: sessions / refusals / recoveries / violations.\n"
            "%d sessions from seed %llu, %d verdicts held against the mech, "
            "%d %% of a computed worst case at most, fingerprint %016llx\n",
            counted_, static_cast<unsigned long long>(order_.first), verdicts_, longest_,
            static_cast<unsigned long long>(fingerprint_));
        for (const auto& [seed, whats] : violations_) {
            std::printf("\n%s\n", inWords(planOf(seed)).c_str());
            for (const std::string& what : whats) std::printf("    %s\n", what.c_str());
            std::printf("    ./campaign --only %llu --verbose\n",
                        static_cast<unsigned long long>(seed));
        }
        for (const std::string& fault : table_.neverStruck()) {
            std::printf("never struck: %s\n", fault.c_str());
        }
        std::printf("%zu sessions with violations\n", violations_.size());
    }

    Order order_;
    const std::function<void()>& enter_;
    std::uint64_t end_;
    std::vector<Worker> workers_;
    std::map<std::uint64_t, std::vector<std::string>> violations_;
    Table table_;
    int counted_ = 0, verdicts_ = 0, longest_ = 0;
    std::uint64_t fingerprint_ = 0;
};

}  // namespace

int runCampaign(const Order& order, const std::function<void()>& enter) {
    return Campaign(order, enter).run();
}

int runOne(std::uint64_t seed, bool verbose) {
    const Plan plan = planOf(seed);
    std::printf("%s\n", inWords(plan).c_str());
    std::fflush(stdout);
    const Outcome outcome = runSession(plan);
    if (verbose) {
        for (const std::string& line : outcome.story) std::printf("  %s\n", oneLine(line).c_str());
    }
    std::printf("struck %d, pressed %d, %s, %d %% of the worst case, fingerprint %016llx\n",
                outcome.struck, outcome.pressed, outcome.done ? "done" : "not done",
                outcome.usedPercent, static_cast<unsigned long long>(outcome.fingerprint));
    for (const std::string& what : outcome.violations) {
        std::printf("VIOLATION %s\n", oneLine(what).c_str());
    }
    return static_cast<int>(outcome.violations.size());
}

}  // namespace vantor::campaign
