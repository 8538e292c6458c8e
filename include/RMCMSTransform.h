#pragma once

#include "LXExport.h"
#include "LXPixel.h"

#include <memory>

class QColor;
class RMCMSProfile;

/// The way of 32-bit pixels from one RGB profile to another, by perceptual intent. Alpha stays.
///
/// It is empty, and changes nothing, if one of the profiles is empty or not RGB, if both are equal
/// (see RMCMSProfile::operator==), or if lcms2 finds no way. Several threads may apply one
/// transform.
class LIBIMAGE_EXPORT RMCMSTransform {
public:
    /// An empty one.
    RMCMSTransform();
    RMCMSTransform(const RMCMSProfile& source, const RMCMSProfile& target);
    /// Copies share the profiles. Each builds a way of its own, from what the profiles are by then.
    RMCMSTransform(const RMCMSTransform& other);
    RMCMSTransform& operator=(const RMCMSTransform& other);
    ~RMCMSTransform();

    bool IsEmpty() const;

    void operator()(LXRGBA32i& pixel) const;
    void operator()(QColor& colour) const;
    /// What operator() does, for `count` neighbouring pixels at once: the walks over images use it.
    void TransformRun(LXRGBA32i* pixels, unsigned int count) const;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> m_p;
};
