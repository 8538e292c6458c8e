#include "LXTextHelper.h"

LXTextHelper::LXTextHelper(float maxSegmentLength) : m_maxSegmentLength(maxSegmentLength) {}

void LXTextHelper::SetText(const QString& text) {
    m_text = text;
    m_textPathDirty = m_heavyPathDirty = true;
}

void LXTextHelper::SetFont(const QFont& font) {
    m_font = font;
    m_textPathDirty = m_heavyPathDirty = true;
}

void LXTextHelper::SetColor(const QColor& color) {
    m_color = color;
}

void LXTextHelper::SetStyle(int style) {
    m_style = style;
}

void LXTextHelper::SetOrientation(bool orientation) {
    m_orientation = orientation;
}

void LXTextHelper::SetBend(double bend) {
    m_bend = bend;
}

void LXTextHelper::SetHDistortion(double distortion) {
    m_hDistortion = distortion;
}

void LXTextHelper::SetVDistortion(double distortion) {
    m_vDistortion = distortion;
}

void LXTextHelper::SetTransform(const QMatrix4x4& transform) {
    m_transform = transform;
}

void LXTextHelper::SetRenderHint(QPainter::RenderHint hint, bool on) {
    m_renderHints[hint] = on;
}

void LXTextHelper::SetRenderMode(int mode) {
    if (mode != 1 && mode != 2)
        return;
    // By its number, as Qt calls the last of them obsolete.
    constexpr auto highQualityAntialiasing = static_cast<QPainter::RenderHint>(8);
    for (const QPainter::RenderHint hint :
         {QPainter::Antialiasing, QPainter::TextAntialiasing, QPainter::SmoothPixmapTransform,
          highQualityAntialiasing})
        SetRenderHint(hint, mode == 2);
}
