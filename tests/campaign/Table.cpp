#include "Table.h"

namespace vantor::campaign {

Table::Table() : cells_(faultRows().size()) {}

void Table::Cell::add(const Cell& other) {
    sessions += other.sessions;
    refusals += other.refusals;
    recoveries += other.recoveries;
    violations += other.violations;
    struck += other.struck;
}

std::string Table::Cell::text() const {
    if (sessions == 0) return "";
    std::string line;
    for (const int number : {sessions, refusals, recoveries, violations}) {
        line += (line.empty() ? "" : " / ") + std::to_string(number);
    }
    return line;
}

void Table::add(const Plan& plan, bool struck, bool disturbed, bool done, bool violated) {
    cells_.at(static_cast<std::size_t>(plan.fault))
        .at(static_cast<std::size_t>(plan.job))
        .add({.sessions = 1,
              .refusals = done ? 0 : 1,
              .recoveries = done && disturbed ? 1 : 0,
              .violations = violated ? 1 : 0,
              .struck = struck ? 1 : 0});
}

std::vector<std::string> Table::neverStruck() const {
    constexpr int kEnough = 30;
    std::vector<std::string> names;
    for (std::size_t fault = 0; fault < cells_.size(); ++fault) {
        Cell sum;
        for (const Cell& cell : cells_[fault]) sum.add(cell);
        const bool isFault = faultRows()[fault].kind.has_value();
        if (isFault && sum.sessions >= kEnough && sum.struck == 0) {
            names.emplace_back(faultRows()[fault].name);
        }
    }
    return names;
}

std::string Table::text() const {
    std::string head = "| fault |";
    std::string rule = "| --- |";
    for (int job = 0; job < kJobs; ++job) {
        head += " " + std::string(jobName(static_cast<JobKind>(job))) + " |";
        rule += " --- |";
    }
    std::string text = head + " all | struck |\n" + rule + " --- | --- |\n";
    std::array<Cell, kJobs> sums{};
    Cell all;
    const auto line = [&](std::string_view name, const std::array<Cell, kJobs>& row) {
        Cell sum;
        text += "| " + std::string(name) + " |";
        for (const Cell& cell : row) {
            text += " " + cell.text() + " |";
            sum.add(cell);
        }
        text += " " + sum.text() + " | " + std::to_string(sum.struck) + " |\n";
    };
    for (std::size_t fault = 0; fault < cells_.size(); ++fault) {
        line(faultRows()[fault].name, cells_[fault]);
        for (std::size_t job = 0; job < sums.size(); ++job) sums.at(job).add(cells_[fault].at(job));
    }
    line("**all**", sums);
    return text;
}

}  // namespace vantor::campaign
