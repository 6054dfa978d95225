#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

/// Why something could not be done: one line for whoever wanted it.
struct Failure {
    std::string text;
    /// The system's error number; 0 where it was not the system that refused.
    int code = 0;
};

/// What was wanted, or why there is none. True when it is there.
template <class T>
class Result {
public:
    Result(T value)
        : _content(std::in_place_index<0>, std::move(value))
    {
    }
    Result(Failure failure)
        : _content(std::in_place_index<1>, std::move(failure))
    {
    }

    explicit operator bool() const { return _content.index() == 0; }
    /// The value of a true result.
    T& operator*() { return std::get<0>(_content); }
    const T& operator*() const { return std::get<0>(_content); }
    T* operator->() { return &**this; }
    const T* operator->() const { return &**this; }
    /// Of a false result.
    const Failure& failure() const { return std::get<1>(_content); }

private:
    std::variant<T, Failure> _content;
};

/// Whether something was done or, if not, why. True when it was.
template <>
class Result<void> {
public:
    Result() = default;
    Result(Failure failure)
        : _failure(std::move(failure))
    {
    }

    explicit operator bool() const { return !_failure; }
    /// Of a false result.
    const Failure& failure() const { return *_failure; }

private:
    std::optional<Failure> _failure;
};
