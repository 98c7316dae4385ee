#include "C/HostFunctions.h"
#include "C/Objects.h"

#include <cmath>
#include <cstdlib>

using namespace korvane;
using namespace korvane::c;

namespace {

/// The platform that a handle names, which is the one that the visit found.
HostedPlatform& platformOf(const Visit& visit, korvane_platform* handle) {
    static_cast<void>(visit.find<PlatformObject>(handle, "platform"));
    return visit.platform();
}

bool isOrientation(int orientation) {
    return orientation >= KORVANE_PORTRAIT && orientation <= KORVANE_LANDSCAPE_RIGHT;
}

bool isExtent(double points) {
    constexpr double kMost = 100'000;
    return std::isfinite(points) && points >= 0 && points <= kMost;
}

/// A reason that has no words is one all the same.
std::string failureOf(const char* error) {
    if (!error) return {};
    const std::string text = textOf(error, "error");
    return text.empty() ? "The host tells no reason." : text;
}

HostAnswer answerOf(const korvane_http_answer& given) {
    return {.status = given.status,
            .location = textIfPresent(given.location, "location"),
            .body = bytesOf(given.body, given.body_length, kMostResponseBytes, "body"),
            .error = failureOf(given.error)};
}

} // namespace

korvane_result korvane_retain(const void* handle, korvane_error* error) {
    return call(error, [&] {
        if (!Handles::shared().retain(handle)) throw CallError(KORVANE_BAD_HANDLE, "handle names nothing.");
    });
}

korvane_result korvane_release(const void* handle, korvane_error* error) {
    return call(error, [&] {
        if (handle && !Handles::shared().release(handle))
            throw CallError(KORVANE_BAD_HANDLE, "handle names nothing.");
    });
}

void korvane_free(void* text) {
    std::free(text);
}

korvane_result korvane_platform_create(const korvane_host* host, korvane_platform** platform,
                                       korvane_error* error) {
    return call(error, [&] {
        require(platform, "platform");
        const korvane_host functions = host ? copyOf(host, "host") : korvane_host{};
        auto made = std::make_shared<PlatformObject>(hostOf(functions));
        Logger::shared().setDebug(loggerOf(functions));
        *platform = Handles::shared().add<korvane_platform>(std::move(made));
    });
}

korvane_result korvane_platform_run(korvane_platform* platform, int64_t milliseconds, bool* did_run,
                                    korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        HostedPlatform& own = platformOf(visit, platform);
        visit.requireOutermost();
        constexpr Seconds kForEver{1e9};
        const Seconds limit = milliseconds < 0 ? kForEver : Seconds{static_cast<double>(milliseconds) / 1000};
        const bool didRun = own.runMain(limit);
        if (did_run) *did_run = didRun;
    });
}

korvane_result korvane_platform_trust(korvane_platform* platform, const char* pem, korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        HostedPlatform& own = platformOf(visit, platform);
        visit.requireMain();
        own.addCertificateAuthorities(textOf(pem, "pem"));
    });
}

korvane_result korvane_platform_set_screen(korvane_platform* platform, int orientation, double width,
                                           double height, korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        HostedPlatform& own = platformOf(visit, platform);
        visit.requireMain();
        if (!isOrientation(orientation)) throw CallError(KORVANE_BAD_ARGUMENT, "orientation is none.");
        if (!isExtent(width) || !isExtent(height))
            throw CallError(KORVANE_BAD_ARGUMENT, "width and height are 0 to 100000 points.");
        own.turn(static_cast<UIDeviceOrientation>(orientation), {width, height});
    });
}

korvane_result korvane_platform_set_captured(korvane_platform* platform, bool is_captured,
                                             korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        HostedPlatform& own = platformOf(visit, platform);
        visit.requireMain();
        own.setCaptured(is_captured);
    });
}

korvane_result korvane_platform_set_active(korvane_platform* platform, bool is_active, korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        HostedPlatform& own = platformOf(visit, platform);
        visit.requireMain();
        own.setActive(is_active);
    });
}

korvane_result korvane_platform_complete(korvane_platform* platform, uint64_t number,
                                         const korvane_http_answer* answer, korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        HostedPlatform& own = platformOf(visit, platform);
        if (!own.complete(number, answerOf(copyOf(answer, "answer"))))
            throw CallError(KORVANE_BAD_STATE, "Nobody waits for that exchange.");
    });
}
