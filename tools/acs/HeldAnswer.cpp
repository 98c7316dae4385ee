#include "tools/acs/HeldAnswer.h"

#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace korvane::acs {

HeldAnswer::HeldAnswer(std::string transaction, std::string text, Ends ends)
    : transaction_(std::move(transaction)), text_(std::move(text)), ends_(std::move(ends)),
      decided_(::eventfd(0, EFD_CLOEXEC)) {}

HeldAnswer::~HeldAnswer() {
    ::close(decided_);
}

bool HeldAnswer::decide(std::optional<std::string> edited) {
    const std::lock_guard lock(mutex_);
    if (std::exchange(isOver_, true)) return false;
    edited_ = std::move(edited);
    ::eventfd_write(decided_, 1);
    return true;
}

Answer HeldAnswer::release() {
    {
        // From here on nobody changes the text.
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    return ends_.send(edited_);
}

void HeldAnswer::abandon() {
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    ends_.abandon();
}

} // namespace korvane::acs
