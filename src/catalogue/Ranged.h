#pragma once

#include <array>
#include <cstddef>
#include <stdexcept>

namespace vantor {

/// An array whose indexes run First..Last, as the field counts channels and parameters. A wrong
/// index throws std::out_of_range, which is a reported error and never damaged memory.
template <class T, int First, int Last>
class Ranged {
    static_assert(First <= Last);

  public:
    static constexpr int kFirst = First;
    static constexpr int kLast = Last;

    constexpr T& operator[](int index) { return items_[checked(index)]; }
    constexpr const T& operator[](int index) const { return items_[checked(index)]; }

    constexpr void fill(const T& value) { items_.fill(value); }
    constexpr auto begin() { return items_.begin(); }
    constexpr auto end() { return items_.end(); }
    constexpr auto begin() const { return items_.begin(); }
    constexpr auto end() const { return items_.end(); }

    friend constexpr bool operator==(const Ranged&, const Ranged&) = default;

  private:
    static constexpr std::size_t checked(int index) {
        if (index < First || index > Last) throw std::out_of_range("Subscript out of range");
        return static_cast<std::size_t>(index - First);
    }

    std::array<T, static_cast<std::size_t>(Last - First + 1)> items_{};
};

}  // namespace vantor
