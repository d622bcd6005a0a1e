#include "link/MechFamily.h"

#include <stdexcept>

namespace vantor {

MechFamily& Families::selected() const {
    MechFamily* family = current();
    if (family == nullptr)
        throw std::logic_error("No family for maker " + state_.mech.manufacturer);
    return *family;
}

}  // namespace vantor
