#include "Sdk/SecureChannel/CertificateMemo.h"

#include <algorithm>
#include <deque>
#include <mutex>

namespace korvane {

namespace {

/// Enough for two certificates each of several directory servers.
constexpr std::size_t kMost = 16;

struct Entry {
    Bytes der;
    SecCertificate certificate;
};

/// The newest entry is the first. Any thread.
class Memo {
public:
    std::optional<SecCertificate> find(ByteView der) {
        const std::lock_guard lock(mutex_);
        const auto found = std::find_if(entries_.begin(), entries_.end(), [der](const Entry& entry) {
            return std::equal(entry.der.begin(), entry.der.end(), der.begin(), der.end());
        });
        return found == entries_.end() ? std::nullopt : std::optional(found->certificate);
    }

    void add(ByteView der, const SecCertificate& certificate) {
        const std::lock_guard lock(mutex_);
        entries_.push_front({toBytes(der), certificate});
        if (entries_.size() > kMost) entries_.pop_back();
    }

private:
    std::mutex mutex_;
    std::deque<Entry> entries_;
};

} // namespace

std::optional<SecCertificate> rememberedCertificate(ByteView der) {
    static Memo memo;
    if (auto known = memo.find(der)) return known;
    auto made = SecCertificateCreateWithData(der);
    if (made) memo.add(der, *made);
    return made;
}

} // namespace korvane
