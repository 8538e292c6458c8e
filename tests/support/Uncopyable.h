#pragma once

#include <QtGui/QImage>

#include <gtest/gtest.h>

#include <new>

/// Checks that the operation, given a picture that says it is so large that no memory can hold a
/// copy and that it must detach before it touches pixels, throws std::bad_alloc and leaves it
/// shared.
template <class Operate>
void ExpectThatAPictureWhichCannotBeDetachedStays(Operate operate) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the heap of a sanitizer never says no";
#endif
    uchar bytes[4] = {}; // there are no others behind it
    QImage picture(bytes, 60000000, 200000000, QImage::Format_ARGB32);
    const QImage sharer = picture;
    EXPECT_THROW(operate(picture), std::bad_alloc);
    EXPECT_EQ(picture.constBits(), bytes);
}
