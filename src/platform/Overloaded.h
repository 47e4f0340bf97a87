#pragma once
// One visitor of a variant out of several functions, one for each type.

namespace quibbits {

template <typename... F>
struct Overloaded : F... {
    using F::operator()...;
};
template <typename... F>
Overloaded(F...) -> Overloaded<F...>;  // clang 14 does not deduce aggregates

}  // namespace quibbits
