#include "LXAdjustmentProcessing.h"

#include <QtCore/QReadLocker>
#include <QtCore/QWriteLocker>

LXAdjustmentProcessing::LXAdjustmentProcessing(QObject* parent) : QObject(parent) {}

LXAdjustmentProcessing::~LXAdjustmentProcessing() = default;

int LXAdjustmentProcessing::GetMinimumRange() const {
    const QReadLocker locker(&m_lock);
    return m_minimum;
}

int LXAdjustmentProcessing::GetMaximumRange() const {
    const QReadLocker locker(&m_lock);
    return m_maximum;
}

int LXAdjustmentProcessing::GetRangeValue() const {
    const QReadLocker locker(&m_lock);
    return m_value;
}

void LXAdjustmentProcessing::SetRange(int minimum, int maximum) {
    {
        const QWriteLocker locker(&m_lock);
        if (minimum == m_minimum && maximum == m_maximum)
            return;
        m_minimum = minimum;
        m_maximum = maximum;
    }
    Q_EMIT RangeChanged(minimum, maximum);
}

void LXAdjustmentProcessing::SetProgressValue(int value) {
    {
        const QWriteLocker locker(&m_lock);
        if (value == m_value)
            return;
        m_value = value;
    }
    Q_EMIT ProgressChanged(value);
}
