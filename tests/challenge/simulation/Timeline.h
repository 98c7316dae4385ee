#pragma once

#include "tests/challenge/simulation/Chance.h"

#include <cstdio>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace korvane::simulation {

/// Something that the application or the ACS noticed.
struct Line {
    Time at;
    std::string text;

    friend bool operator==(const Line&, const Line&) = default;
};

using Record = std::vector<Line>;

inline std::string textOf(const Line& line) {
    char time[32];
    std::snprintf(time, sizeof time, "%11.6f  ", std::chrono::duration<double>(line.at).count());
    return time + line.text;
}

/// Virtual time, one main queue whose work waits while something holds it, and everything else at once.
class Timeline {
public:
    /// Everything up to a moment, that one included.
    void runTo(Time moment) {
        while (!events_.empty() && events_.begin()->first <= moment) {
            now_ = events_.begin()->first;
            const Work work = events_.extract(events_.begin()).mapped();
            work();
            pump();
        }
        if (moment != Time::max()) now_ = moment;
    }
    /// Everything, however late.
    void runToTheEnd() { runTo(Time::max()); }

    [[nodiscard]] bool isMainHeld() const { return isMainHeld_; }

protected:
    using Work = std::function<void()>;

    [[nodiscard]] Time now() const { return now_; }
    void after(Time span, Work work) { events_.emplace(now_ + span, std::move(work)); }
    void onMain(Work work) { main_.push_back(std::move(work)); }

    /// To be the last that a piece of the main queue's work does.
    void holdMain(Time span, Work work) {
        isMainHeld_ = true;
        after(span, [this, work = std::move(work)] {
            isMainHeld_ = false;
            work();
        });
    }

    void pump() {
        while (!isMainHeld_ && !main_.empty()) {
            const Work work = std::move(main_.front());
            main_.pop_front();
            work();
        }
    }

private:
    Time now_{0};
    std::multimap<Time, Work> events_;
    std::deque<Work> main_;
    bool isMainHeld_ = false;
};

} // namespace korvane::simulation
