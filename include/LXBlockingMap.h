#pragma once

#include "LXExport.h"

#include <type_traits>
#include <utility>
#include <vector>

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

/// Work on the indices of a line or a tile, spread over Qt's global thread pool.

/// Neighbouring indices that one thread takes at a time: first to last - 1.
struct LXIndexRun {
    int first;
    int last;
};

/// Cuts 0 .. count - 1 into runs: enough that no thread waits long for another at the end, and each
/// long enough that handing it out costs next to nothing.
LIBIMAGE_EXPORT std::vector<LXIndexRun> LXIndexRuns(int count, int shortest = 64);

namespace LXMapDetail {

/// A functor without its type.
struct RunFunction {
    void (*call)(void* functor, const LXIndexRun& run);
    void* functor;
};

LIBIMAGE_EXPORT void BlockingMap(std::vector<LXIndexRun>& runs, const RunFunction& function);

/// Tells ThreadSanitizer that what precedes a map precedes its items, and these what follows it:
/// the locks of a Qt that was built without it are invisible to it.
struct Order {
#if defined(__SANITIZE_THREAD__)
    static void Release(char* place) {
        __tsan_release(place);
    }
    static void Acquire(char* place) {
        __tsan_acquire(place);
    }
#else
    static void Release(char*) {}
    static void Acquire(char*) {}
#endif
    char begin = 0;
    char end = 0;
};

/// Calls tell(place) when the scope is left, by an exception too.
struct AtEnd {
    void (*tell)(char*);
    char* place;

    ~AtEnd() { tell(place); }
};

} // namespace LXMapDetail

/// Calls functor(run) for each run, in no order, on the threads of the global pool and on this one,
/// and returns when all are done. They share the one functor.
///
/// An exception from the functor comes out here, when no thread is at work any more: QExceptions as
/// themselves, any other as QUnhandledException.
template <class Functor>
void LXBlockingMap(std::vector<LXIndexRun>& runs, Functor& functor) {
    struct Item {
        Functor& functor;
        LXMapDetail::Order order;

        void operator()(const LXIndexRun& run) {
            LXMapDetail::Order::Acquire(&order.begin);
            const LXMapDetail::AtEnd end{LXMapDetail::Order::Release, &order.end};
            functor(run);
        }
    } item{functor, {}};
    LXMapDetail::Order::Release(&item.order.begin);
    const LXMapDetail::AtEnd end{LXMapDetail::Order::Acquire, &item.order.end};
    LXMapDetail::BlockingMap(
        runs, {[](void* f, const LXIndexRun& run) { (*static_cast<Item*>(f))(run); }, &item});
}

namespace LXMapDetail {

template <class Functor, class = void>
struct OffersLines : std::false_type {};
template <class Functor>
struct OffersLines<Functor, std::void_t<typename Functor::LinesOf>>
    : std::is_same<typename Functor::LinesOf, Functor> {};

} // namespace LXMapDetail

/// Calls functor(i) once for each index of the runs, as LXBlockingMap does it. The functor is
/// copied for the map: what it changes in itself is gone afterwards.
template <class Functor>
void LXMapIndices(std::vector<LXIndexRun>& runs, const Functor& functor) {
    Functor copy = functor;
    const auto work = [&copy](const LXIndexRun& run) {
        if constexpr (LXMapDetail::OffersLines<Functor>::value) {
            copy.Line(run.first, run.last);
        } else {
            for (int i = run.first; i < run.last; ++i)
                copy(i);
        }
    };
    LXBlockingMap(runs, work);
}
