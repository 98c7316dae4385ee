#pragma once

#include "C/Call.h"
#include "C/Handles.h"
#include "Platform/Hosted/HostedPlatform.h"
#include "Sdk/Service/ThreeDS2Service.h"

#include <atomic>
#include <memory>
#include <optional>

namespace korvane::c {

/// What a `korvane_platform` names. One at a time; made and ended on the main thread.
class PlatformObject final : public Object {
public:
    /// @throws CallError where the process has a platform.
    explicit PlatformObject(Host host);
    ~PlatformObject() override;

    /// @throws CallError on another thread than the main one, within a callback, and beside other handles.
    void requireMayGo(std::size_t others) const override;
    /// The platform ends, once nobody visits it any more.
    void go(std::shared_ptr<Object>&& self) override;

private:
    std::optional<HostedPlatform> platform_;
};

/// One call that needs the platform, which does not end before this goes. Declared before what it finds, so
/// that all of that goes first. Any thread.
class Visit {
public:
    /// @throws CallError without a platform.
    Visit();
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;
    ~Visit();

    [[nodiscard]] HostedPlatform& platform() const noexcept { return *platform_; }

    /// @throws CallError on any other thread than the main one.
    void requireMain() const;
    /// The same within a callback, which another visit of the main thread called.
    void requireOutermost() const;

    /// What a handle names.
    /// @throws CallError for one that names nothing, or something of another type.
    template <class SomeObject>
    [[nodiscard]] std::shared_ptr<SomeObject> find(const void* handle, const char* name) const {
        require(handle, name);
        auto found = Handles::shared().find<SomeObject>(handle);
        if (!found) throw CallError(KORVANE_BAD_HANDLE, std::string(name) + " names nothing of that type.");
        return found;
    }

private:
    HostedPlatform* platform_;
    bool isMain_;
};

/// What a `korvane_service` names.
class ServiceObject final : public Object {
public:
    ThreeDS2Service service;

    /// The one call that may use the service at a time.
    class Turn {
    public:
        /// @throws CallError while another thread has its turn.
        explicit Turn(ServiceObject& service) : isTaken_(service.isTaken_) {
            if (isTaken_.exchange(true))
                throw CallError(KORVANE_BAD_THREAD, "The service is in use on another thread.");
        }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        ~Turn() { isTaken_ = false; }

    private:
        std::atomic<bool>& isTaken_;
    };

private:
    std::atomic<bool> isTaken_{false};
};

/// What a `korvane_transaction` names.
class TransactionObject final : public Object {
public:
    explicit TransactionObject(std::shared_ptr<Transaction> itsTransaction)
        : transaction(std::move(itsTransaction)), request(transaction->getAuthenticationRequestParameters()) {
    }

    /// To be called before its challenge starts.
    /// @throws CallError where it has had one.
    void takeStart() {
        if (isStarted_.exchange(true))
            throw CallError(KORVANE_BAD_STATE, "The transaction has had its challenge.");
    }

    const std::shared_ptr<Transaction> transaction;
    const AuthenticationRequestParameters request;

private:
    std::atomic<bool> isStarted_{false};
};

/// What every challenge needs.
/// @throws CallError for minutes that no challenge has, and without the screens' resources.
void requireReadyForChallenge(const Visit& visit, std::int64_t minutes);

} // namespace korvane::c
