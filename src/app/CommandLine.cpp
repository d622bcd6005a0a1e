#include "app/CommandLine.h"

#include <algorithm>

#include "catalogue/MechCatalogue.h"
#include "catalogue/Text.h"
#include "platform/PortMap.h"

namespace vantor {

namespace {

constexpr std::string_view kUsualModel = "ME111";

const MechModel* modelNamed(std::string_view code) {
    const auto models = mechModels();
    const auto found = std::find_if(models.begin(), models.end(), [&](const MechModel& model) {
        return upperCase(model.code) == upperCase(code);
    });
    return found == models.end() ? nullptr : &*found;
}

/// Walks the arguments; an option's value is the next argument or stands after "=".
class Reader {
  public:
    explicit Reader(std::span<const std::string> arguments) : arguments_(arguments) {}

    CommandLine read() {
        while (position_ < arguments_.size() && result_.error.empty()) one(arguments_[position_++]);
        return std::move(result_);
    }

  private:
    void one(std::string_view argument) {
        const auto equals = argument.find('=');
        const std::string_view name = argument.substr(0, equals);
        std::optional<std::string> value;
        if (equals != std::string_view::npos) value = argument.substr(equals + 1);

        if (name == "--folder") {
            if (const auto folder = needed(name, value)) folderGiven(*folder);
        } else if (name == "--port") {
            if (const auto text = needed(name, value)) port(*text);
        } else if (name == "--simulate") {
            simulate(value);
        } else if (argument == "--help" || argument == "-h") {
            result_.help = true;
        } else if (argument == "--version") {
            result_.version = true;
        } else {
            result_.rest.emplace_back(argument);
        }
    }

    std::optional<std::string> needed(std::string_view name, std::optional<std::string> value) {
        if (!value && position_ < arguments_.size()) value = arguments_[position_++];
        if (!value || value->empty()) {
            result_.error = std::string(name) + " needs a value";
            return std::nullopt;
        }
        return value;
    }

    void folderGiven(const std::string& folder) {
        result_.folder = std::u8string(folder.begin(), folder.end());
    }

    void port(std::string_view text) {
        if (auto parsed = PortMap::parse(text, '=')) {
            result_.ports.push_back(std::move(*parsed));
        } else {
            result_.error = "--port wants n=device with n in 1.." + std::to_string(kPorts) +
                            ", not \"" + std::string(text) + "\"";
        }
    }

    void simulate(const std::optional<std::string>& value) {
        const MechModel* model = modelNamed(value.value_or(std::string(kUsualModel)));
        // The model may be left out, so what follows is one only if it is called like one.
        if (!value && position_ < arguments_.size()) {
            if (const MechModel* next = modelNamed(arguments_[position_])) {
                model = next;
                ++position_;
            }
        }
        if (model == nullptr) {
            result_.error = "--simulate: there is no model \"" + *value + "\"";
            return;
        }
        result_.simulate = {.maker = std::string(model->maker), .model = std::string(model->code)};
    }

    std::span<const std::string> arguments_;
    std::size_t position_ = 0;
    CommandLine result_;
};

}  // namespace

CommandLine parseCommandLine(std::span<const std::string> arguments) {
    return Reader(arguments).read();
}

std::string commandLineHelp() {
    return "  --simulate [MODEL]  work with a simulated programmer box on COM1 (MODEL: "
           "ME111, ME181, ...)\n"
           "  --port n=device     COMn is this device, for example --port 5=/dev/ttyUSB0\n"
           "  --folder DIR        keep configuration, coinsets and logs there\n"
           "  --version           say which version this is\n"
           "  --help              say this\n";
}

}  // namespace vantor
