#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "boxsim/Fault.h"
#include "catalogue/MechCatalogue.h"

namespace vantor::campaign {

enum class JobKind {
    coinset,        ///< run a coinset, program the mech
    wizard,         ///< one of the three wizards, then program
    promCopy,       ///< a coinset of which every coin is kept from the old PROM, then program
    clone,          ///< "Clone Coin Mech": programmed from a file before the coinset
    fromFile,       ///< memory utilities: programme from a file
    routing,        ///< memory utilities of a 435: programme the routing
    validatorTest,  ///< open the test, drop coins, go back
    utilitiesRead,  ///< memory utilities: read, look at every view, save
};
inline constexpr int kJobs = 8;
[[nodiscard]] std::string_view jobName(JobKind job);
/// The jobs that a model has.
[[nodiscard]] std::vector<JobKind> jobsOf(const MechModel& model);

/// One sort of fault as the campaign draws it.
struct FaultRow {
    std::string_view name;
    std::optional<boxsim::Fault::Kind> kind{};  ///< nothing = no fault
    std::string_view makers = "MCN";            ///< initials of those that it concerns
    bool bytes = false;                         ///< on either way of the line
    bool writes = false;                        ///< of memory, so that only some jobs know it
    int mostTimes = 1;
    bool always = false;  ///< now and then it does not end
    int lowValue = 0;
    int highValue = 0;
};
[[nodiscard]] std::span<const FaultRow> faultRows();

/// How some mechs of a model speak.
struct OwnWay {
    std::string_view model;
    std::string_view option;
    std::string_view value;
};
/// nullptr for a model whose mechs all speak alike.
[[nodiscard]] const OwnWay* ownWayOf(const MechModel& model);

/// What the user does beside the work.
struct Press {
    enum class What { cancel, exit, closeWindow, anyButton };
    What what = What::cancel;
    int step = 0;            ///< of the job
    int share = 0;           ///< of the time that the step takes undisturbed, in 10 000ths
    bool early = false;      ///< in the first second, where most is begun
    int atMs = 0;            ///< after the step began; known when the job was rehearsed
    std::uint32_t pick = 0;  ///< which of those that are there
};

/// What a seed means.
struct Plan {
    std::uint64_t seed = 0;
    const MechModel* model = nullptr;
    JobKind job = JobKind::coinset;
    int fault = 0;            ///< row of `faultRows`
    boxsim::Fault armed{};    ///< as it is given to the box, but for its moment
    int faultStep = 0;        ///< the step of the job at whose beginning the fault is armed
    int faultShare = 0;       ///< of the moments of that step at which it can strike, in 10 000ths
    bool faultEarly = false;  ///< among the first of them
    std::vector<Press> presses{};
    bool log = false;        ///< the results are logged
    bool bipolar = false;    ///< Mars: a bipolar PROM
    bool oldFile = false;    ///< the file that is saved exists already
    bool lineFeeds = false;  ///< the box ends its lines in CR LF
    bool lateReady = false;  ///< the box says that it is back at the end of the break
    bool ownWay = false;     ///< the mech speaks in the way that not all of its model do
    std::string_view language = "English";  ///< as the configuration names it
    std::string coinset{};                  ///< file name in the folder of the coinsets
    bool oneK = false;                      ///< Mars: a 1K PROM
    int wizard = 0;                         ///< 0 edit limits, 1 add or replace, 2 slug fix
    std::uint32_t detail = 0;               ///< the channel of a wizard, the words of a file

    [[nodiscard]] const FaultRow& row() const {
        return faultRows()[static_cast<std::size_t>(fault)];
    }
    [[nodiscard]] bool is(std::string_view maker) const { return model->maker == maker; }
};

/// Everything follows from the seed.
[[nodiscard]] Plan planOf(std::uint64_t seed);
/// One line for people.
[[nodiscard]] std::string inWords(const Plan& plan);

}  // namespace vantor::campaign
