#pragma once

#include "LXExport.h"
#include "LXImage.h"

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QReadWriteLock>
#include <QtCore/QRect>

/// What all filters have in common: their range and progress.
///
/// A filter runs on a thread of the caller's choosing, and its signals are emitted on that. Range
/// and progress may be asked for from any thread; no lock is held while a signal is emitted.
class LIBIMAGE_EXPORT LXAdjustmentProcessing : public QObject {
    Q_OBJECT

public:
    explicit LXAdjustmentProcessing(QObject* parent = nullptr);
    ~LXAdjustmentProcessing() override;

    int GetMinimumRange() const;
    int GetMaximumRange() const;
    int GetRangeValue() const;

Q_SIGNALS:
    void RangeChanged(int minimum, int maximum);
    void ProgressChanged(int value);

public Q_SLOTS:
    /// Emits RangeChanged if one of the two is new. The progress stays as it is.
    void SetRange(int minimum, int maximum);
    /// Emits ProgressChanged if the value is new, also if it is outside the range.
    void SetProgressValue(int value);

private:
    mutable QReadWriteLock m_lock;
    int m_minimum = 0;
    int m_maximum = 0;
    int m_value = 0;
};

/// A filter that can be stopped.
///
/// All filters have a `run`, or several, that takes its arguments by value and returns the result.
/// Images share their tiles, so that costs no pixels, and the caller's pictures stay as they are. A
/// run sets the range from 0 to the sum of its steps before the first one, if its header does not
/// tell otherwise, and reports each step that is done. Between two steps, and never during one, it
/// reads the flag under the lock: if it is set the run ends early. That is no error: the result is
/// what the steps so far have made of it.
///
/// What a step throws, std::bad_alloc above all, comes out of run with locks and tiles given back.
/// Filters keep nothing of a run but range and progress, and may be used again. Several may run at
/// once with one lock and flag.
///
/// Records and parameters: `selection` is a mask, whose value is in alpha, `selectionRect` the part
/// of it that is used, and `selectionOffset` what that rectangle is moved by to lie on the image.
/// An invalid selectionRect is no selection: the filter works on the whole image. Coordinates on
/// the image are limited to 2^30.
///
/// Params go to a QDataStream and come from it: a header of ASCII letters without a length, and
/// then the fields in the order of their declaration, if it is not told otherwise, a bool as an int
/// of 0 or 1. Version and byte order of numbers and colours are the stream's. Read gives false for
/// another header, with nothing but the length of the header taken from the stream and Params as
/// they were, and for a stream that ends early, with the fields set that were read. The operators
/// log such a failure, throw nothing, and set no status on the stream.
class LIBIMAGE_EXPORT LXFilter : public LXAdjustmentProcessing {
protected:
    /// Both are the caller's, and outlive the filter. The flag is written under the lock, by
    /// whoever wants to stop the run.
    LXFilter(QReadWriteLock& cancelLock, bool& cancelFlag)
        : m_cancelLock(&cancelLock), m_cancelFlag(&cancelFlag) {}

    QReadWriteLock& CancelLock() const { return *m_cancelLock; }
    const bool& CancelFlag() const { return *m_cancelFlag; }

private:
    QReadWriteLock* m_cancelLock;
    bool* m_cancelFlag;
};

/// The arguments of most filters. `reserved` is not read.
template <class FilterParams>
struct LXFilterData {
    FilterParams params;
    LXImageRGBA32i image{0, 0};
    LXImageRGBA32i reserved{0, 0};
    LXImageRGBA32i selection{0, 0};
    QRect selectionRect;
    QPoint selectionOffset;
};

/// An image and the place of its first pixel; the filter says relative to what.
struct LXImageAtOffset {
    LXImageRGBA32i image{0, 0};
    QPoint offset;
};
