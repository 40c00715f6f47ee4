#pragma once
// A small expected-like result type: a value, or the error that prevented it.
// Faults of input and I/O travel as values; programmer mistakes are asserts.

#include <cassert>
#include <utility>
#include <variant>

namespace rm8 {

template <class E>
struct Unexpected {
    E error;
};

template <class E>
Unexpected<E> unexpected(E error)
{
    return Unexpected<E>{std::move(error)};
}

template <class T, class E>
class Expected {
public:
    Expected(T value) : state_(std::in_place_index<0>, std::move(value)) {}
    Expected(Unexpected<E> failure) : state_(std::in_place_index<1>, std::move(failure.error)) {}

    bool hasValue() const { return state_.index() == 0; }
    explicit operator bool() const { return hasValue(); }

    T& value() { assert(hasValue()); return std::get<0>(state_); }
    const T& value() const { assert(hasValue()); return std::get<0>(state_); }
    T& operator*() { return value(); }
    const T& operator*() const { return value(); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }

    const E& error() const { assert(!hasValue()); return std::get<1>(state_); }

private:
    std::variant<T, E> state_;
};

// The result of an operation that yields nothing but may fail.
template <class E>
class Expected<void, E> {
public:
    Expected() = default;
    Expected(Unexpected<E> failure) : error_(std::move(failure.error)), failed_(true) {}

    bool hasValue() const { return !failed_; }
    explicit operator bool() const { return hasValue(); }
    const E& error() const { assert(failed_); return error_; }

private:
    E error_{};
    bool failed_ = false;
};

} // namespace rm8
