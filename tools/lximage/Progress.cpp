#include "Progress.h"

#include <QtCore/QByteArray>

#include <cstdio>
#include <unistd.h>

Progress::Progress(const QString& label, int maximum)
    : m_label(label), m_visible(isatty(STDERR_FILENO) == 1), m_maximum(maximum) {
    Draw();
}

Progress::~Progress() {
    if (m_visible)
        std::fputs("\r\033[K", stderr);
}

void Progress::SetRange(int minimum, int maximum) {
    m_minimum = minimum;
    m_maximum = maximum;
    Draw();
}

void Progress::SetValue(int value) {
    m_value = value;
    Draw();
}

void Progress::Draw() {
    if (!m_visible)
        return;
    const qint64 range = qint64(m_maximum) - m_minimum;
    const qint64 done = qint64(qBound(m_minimum, m_value, qMax(m_minimum, m_maximum))) - m_minimum;
    const int percent = range > 0 ? int(done * 100 / range) : 0;
    if (percent == m_drawnPercent)
        return;
    m_drawnPercent = percent;
    constexpr int Cells = 30;
    const QByteArray bar = QByteArray(percent * Cells / 100, '#').leftJustified(Cells, '.');
    std::fprintf(stderr, "\r\033[K%s [%s] %3d %%", qUtf8Printable(m_label), bar.constData(),
                 percent);
    std::fflush(stderr);
}
