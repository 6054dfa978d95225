#pragma once

#include "Linux/WaitBudget.h"

#include <memory>
#include <optional>
#include <utility>

/// What was found out in a turn of the host, for the rest of that turn: whoever took most of the time to answer would
/// not answer a second time in what is left of it.
template <typename Answer>
class TurnAnswer {
public:
    explicit TurnAnswer(std::shared_ptr<const WaitBudget> budget)
        : _budget(std::move(budget))
    {
    }

    bool isKnown() const { return _answer && _turn == _budget->turn(); }

    /// Calls `ask` when it is not known.
    template <typename Ask>
    const Answer& get(Ask ask)
    {
        if (!isKnown()) {
            _answer = ask();
            _turn = _budget->turn();
        }
        return *_answer;
    }

private:
    std::shared_ptr<const WaitBudget> _budget;
    std::optional<Answer> _answer;
    unsigned _turn = 0;
};
