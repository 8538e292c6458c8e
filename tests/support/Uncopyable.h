#pragma once

#include <QtGui/QImage>

/// A picture that says it is so large that no memory can hold a copy: for those who detach it
/// before they touch its pixels. There are none behind it.
inline QImage Uncopyable(uchar* bytes) {
    return QImage(bytes, 60000000, 200000000, QImage::Format_ARGB32);
}

/// The sanitizers end the process when so much is asked for.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define LX_NEEDS_A_PLAIN_HEAP() GTEST_SKIP() << "the heap of a sanitizer never says no"
#else
#define LX_NEEDS_A_PLAIN_HEAP() static_cast<void>(0)
#endif
