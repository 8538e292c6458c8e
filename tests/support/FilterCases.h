#pragma once

#include "LXAdjustmentProcessing.h"
#include "ReferenceFilters.h"

#include <QtCore/QReadWriteLock>

#include <climits>
#include <functional>
#include <limits>
#include <string>
#include <vector>

/// The input of a run, as images.
struct FilterImages {
    explicit FilterImages(const Reference::FilterInput& in);

    LXImageRGBA32i image, selection;
    QRect selectionRect;
    QPoint selectionOffset;
};

struct FilterResult {
    std::vector<LXImageRGBA32i> images;
    QPoint offset;
};

/// What the caller of a filter owns: locks, flag and caches. It listens to the filter, checks that
/// it may take the locks meanwhile, and can stop it.
class FilterCaller {
public:
    FilterCaller() : FilterCaller(nullptr) {}
    /// With the cancel lock and flag of another.
    explicit FilterCaller(FilterCaller* shared);
    FilterCaller(const FilterCaller&) = delete;
    FilterCaller& operator=(const FilterCaller&) = delete;

    /// Connects to both signals.
    void Watch(LXAdjustmentProcessing& filter);
    /// Sets the flag under the lock, as an application does.
    void Cancel();
    /// Both locks can be taken for writing.
    bool LocksAreFree();

private:
    QReadWriteLock m_ownLock;
    bool m_ownFlag = false;

public:
    QReadWriteLock& cancelLock;
    bool& cancelFlag;
    QReadWriteLock cacheLock;
    double cachedRadius = std::numeric_limits<double>::quiet_NaN();
    LXImageRGBA32i cachedResult{0, 0}, cachedUniformNoise{0, 0}, cachedGaussianNoise{0, 0};
    const LXImageRGBA32i* cache = nullptr; ///< the one that the last run used, if any

    int cancelAt = INT_MAX;  ///< the flag is set in this call of ProgressChanged
    std::vector<int> ranges; ///< the maxima
    std::vector<int> values;
    std::function<void(int)> atProgress; ///< what else is done in ProgressChanged
};

/// A filter with its parameters: the run, and what it is to do.
struct FilterCase {
    std::string name;
    std::function<FilterResult(const FilterImages&, FilterCaller&)> run;
    std::function<Reference::Plan(const Reference::FilterInput&)> plan;
};

/// All filters, with whatever makes a difference. None draws noise: that differs from run to run.
const std::vector<FilterCase>& FilterCases();
/// Without a selection, and with selections in the image, beyond its and their own borders, and
/// without pixels.
const std::vector<Reference::FilterInput>& FilterInputs();

FilterResult RunHighPass(const FilterImages& in, FilterCaller& caller,
                         const LXHighPassProcessing::Params& params);
FilterResult RunAddNoise(const FilterImages& in, FilterCaller& caller,
                         const LXAddNoiseProcessing::Params& params);

/// Equal in all images, the offset, the signals and what is in the cache.
testing::AssertionResult SameRun(const FilterResult& result, const FilterCaller& caller,
                                 const Reference::Plan& plan, const std::vector<int>& reported);
/// A run of the filter that is stopped after so many reports does what its plan does, leaves its
/// arguments as they were, and the locks free.
void CheckRun(const FilterCase& filter, const Reference::FilterInput& in, FilterCaller& caller,
              int stop = INT_MAX);
