#include "catalogue/MessageTable.h"

#include <algorithm>
#include <stdexcept>

namespace vantor {

std::string MessageTable::msgText(int id) const {
    if (language != kLanguages[0].name && languageTableLoaded) {
        if (id < 0 || id > kHighestNumber) return {};
        return loaded_[static_cast<std::size_t>(id)];
    }
    const auto all = englishMessages();
    const auto found = std::lower_bound(all.begin(), all.end(), id,
                                        [](const EnglishText& row, int n) { return row.id < n; });
    return found != all.end() && found->id == id ? std::string(found->text) : std::string{};
}

void MessageTable::setLoaded(int id, std::string text) {
    if (id < 0 || id > kHighestNumber) throw std::out_of_range("Subscript out of range");
    loaded_[static_cast<std::size_t>(id)] = std::move(text);
}

void MessageTable::clearLoaded() {
    loaded_.fill({});
}

}  // namespace vantor
