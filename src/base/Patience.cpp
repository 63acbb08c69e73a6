#include "base/Patience.h"

#include <algorithm>

namespace tavocal {

Patience& Patience::instance() {
    static auto* const patience = new Patience;
    return *patience;
}

void Patience::end() {
    Clock::rep lasting = 0;
    endedAt.compare_exchange_strong(lasting, Clock::now().time_since_epoch().count());
}

bool Patience::isOver() const {
    const Clock::rep ended = endedAt;
    return ended != 0 &&
           Clock::now() >= Clock::time_point(Clock::duration(ended)) + bounds.underWay;
}

Patience::Clock::time_point Patience::deadline(Clock::time_point begin,
                                               std::chrono::milliseconds timeout) const {
    const Clock::time_point usual = begin + timeout;
    const Clock::rep ended = endedAt;
    if (ended == 0) {
        return usual;
    }
    const Clock::time_point end{Clock::duration(ended)};
    return std::min(usual, std::max(end + bounds.underWay, begin + bounds.later));
}

}  // namespace tavocal
