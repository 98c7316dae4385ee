#include "tools/acs/Journal.h"

#include <algorithm>
#include <utility>

namespace korvane::acs {

void Journal::add(std::string line) {
    const std::lock_guard lock(mutex_);
    bytes_ += line.size();
    lines_.push_back(std::move(line));
    // The newest stays, however long it is.
    for (; lines_.size() > 1 && (bytes_ > kMostBytes || lines_.size() > kMostLines); ++oldest_) {
        bytes_ -= lines_.front().size();
        lines_.pop_front();
    }
}

Journal::Excerpt Journal::from(std::size_t number) const {
    constexpr std::size_t kEnough = std::size_t{1} << 20U;
    const std::lock_guard lock(mutex_);
    const std::size_t end = oldest_ + lines_.size();
    Excerpt excerpt{oldest_, std::clamp(number, oldest_, end), "["};
    for (; excerpt.next < end && excerpt.lines.size() < kEnough; ++excerpt.next) {
        if (excerpt.lines.size() > 1) excerpt.lines += ',';
        excerpt.lines += lines_[excerpt.next - oldest_];
    }
    excerpt.lines += ']';
    return excerpt;
}

std::string Journal::text() const {
    const std::lock_guard lock(mutex_);
    std::string text;
    text.reserve(bytes_);
    for (const std::string& line : lines_)
        text += line;
    return text;
}

} // namespace korvane::acs
