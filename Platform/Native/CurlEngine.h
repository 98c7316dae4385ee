#pragma once

#include "Platform/Native/CurlHandles.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace korvane {

/// A request that an engine carries. Its functions are called on the engine's thread.
class CurlJob {
public:
    CurlJob(const CurlJob&) = delete;
    CurlJob& operator=(const CurlJob&) = delete;
    virtual ~CurlJob() = default;

    /// @return the handle to run, or null if the job has ended already.
    virtual CURL* begin() = 0;

    /// libcurl has ended the handle.
    virtual void end(CURLcode code) = 0;

    /// The handle is out of libcurl's hands and may be freed.
    virtual void release() = 0;

    /// The network ends before the job did, or had ended before it began. On any thread.
    virtual void drop() = 0;

protected:
    CurlJob() = default;
};

/// All transfers of a platform on one thread, which the first of them starts. What came of them is told there
/// as well, and not by threads that may all be waiting for it. Connections are kept for the next request to
/// the same server under the same trust. Any thread.
class CurlEngine {
public:
    CurlEngine();
    CurlEngine(const CurlEngine&) = delete;
    CurlEngine& operator=(const CurlEngine&) = delete;

    /// Calls `stop()`.
    ~CurlEngine();

    void start(std::shared_ptr<CurlJob> job);

    /// Stops a job's transfer, if it still runs.
    void abandon(std::shared_ptr<CurlJob> job);

    /// Calls `work` on the engine's thread, after what it was told before; at once where that thread has
    /// ended or cannot be made. It must not block.
    void call(std::function<void()> work);

    /// Drops all transfers, does what it was told and waits for the thread; what is started later is dropped.
    /// Not on the engine's thread.
    void stop();

private:
    using Command = std::function<void()>;

    [[nodiscard]] bool tell(Command command);
    [[nodiscard]] bool hasThread();
    void run();
    bool obey();
    void add(const std::shared_ptr<CurlJob>& job);
    void cancel(const std::shared_ptr<CurlJob>& job);
    void remove(CURL* handle);
    void collectEnded();

    std::mutex mutex_;
    std::vector<Command> commands_;
    bool isStopped_ = false;
    std::thread thread_;

    CurlMulti multi_;
    /// On the engine's thread alone.
    std::map<CURL*, std::shared_ptr<CurlJob>> running_;
};

} // namespace korvane
