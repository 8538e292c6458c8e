#pragma once

#include <QtCore/QString>

/// A one-line bar on standard error, if that is a terminal; otherwise nothing. The line is wiped
/// when the object goes.
class Progress {
public:
    /// A bar from 0 to `maximum`, at 0.
    Progress(const QString& label, int maximum);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Values outside the range show the nearer end; an empty range shows no progress.
    void SetRange(int minimum, int maximum);
    void SetValue(int value);

private:
    void Draw();

    const QString m_label;
    const bool m_visible;
    int m_minimum = 0;
    int m_maximum;
    int m_value = 0;
    int m_drawnPercent = -1;
};
