#pragma once

#include "Platform/Export.h"
#include "Platform/Native/SystemPlatform.h"

#include <functional>
#include <memory>

namespace korvane {

/// The headless platform: the services of the operating system, without a screen. While it lives it is the
/// platform of the process. The thread that makes it is the main queue's, until another runs that. Its end
/// ends all exchanges, waits for the work that runs on its queues and drops the rest.
class KORVANE_EXPORT HeadlessPlatform final : public SystemPlatform {
public:
    HeadlessPlatform();
    ~HeadlessPlatform() override;

    /// Runs the main queue's work on the calling thread until `stopMain()`. One thread at a time.
    void runMain();

    /// As `runMain`, until `isDone` says true: it is asked before the first and after each piece of work.
    void runMainUntil(const std::function<bool()>& isDone);

    /// Ends `runMain()`, or the next one if none runs. Any thread.
    void stopMain();

    /// Holds the device in another way: its screen has that size from now on, and the application is told.
    /// Main queue only.
    void turn(UIDeviceOrientation orientation, CGSize screen);

private:
    struct Parts;

    std::unique_ptr<Parts> parts_;
    Installation installation_;
};

} // namespace korvane
