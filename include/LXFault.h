#pragma once

#include "LXExport.h"

#include <exception>
#include <utility>

class QString;

/// Fault reporting: log lines of one fixed shape on QMessageLogger::debug(), category "default",
/// and the guards that exported entry points wrap around their bodies.
namespace LXFault {

/// A place that logs. `line` is the fixed identity of some messages and then no line of the file.
struct Site {
    const char* date;
    const char* time;
    int line;
    const char* file;
};

/// Build date=.., time=.. Line=.., file="..". message
LIBIMAGE_EXPORT void Trace(const Site& site, const QString& message);
/// Build date=.., time=.. Unexpected exception: line=.., file="..". Exception content:".."
LIBIMAGE_EXPORT void LogException(const Site& site, const std::exception& fault);
/// Build date=.., time=.. Unexpected unknown exception: line=.., file=".."
LIBIMAGE_EXPORT void LogUnknownException(const Site& site);

/// Runs the body and gives back its result; whatever it throws is logged and goes on.
template <class Body>
auto StrictGuard(const Site& site, Body&& body) -> decltype(body()) {
    try {
        return std::forward<Body>(body)();
    } catch (const std::exception& fault) {
        LogException(site, fault);
        throw;
    } catch (...) {
        LogUnknownException(site);
        throw;
    }
}

/// The same, but a std::exception ends here, and the guard returns `fallback` in its place.
template <class Result, class Body>
Result LenientGuard(const Site& site, Result fallback, Body&& body) {
    try {
        return std::forward<Body>(body)();
    } catch (const std::exception& fault) {
        LogException(site, fault);
        return fallback;
    } catch (...) {
        LogUnknownException(site);
        throw;
    }
}

/// The lenient form for a body without a result.
template <class Body>
void LenientGuard(const Site& site, Body&& body) {
    LenientGuard(site, true, [&body] {
        std::forward<Body>(body)();
        return true;
    });
}

} // namespace LXFault

/// The place of this line, with the build stamp of its translation unit.
#define LX_SITE (LXFault::Site{__DATE__, __TIME__, __LINE__, __FILE__})
/// The same under a fixed line number.
#define LX_SITE_AT(line) (LXFault::Site{__DATE__, __TIME__, line, __FILE__})
