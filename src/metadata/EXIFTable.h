#pragma once

#include "RMEXIFElement.h"

/// What is known about each kind of EXIF field.
namespace EXIFTable {

struct Row {
    RMEXIFElement::Type kind;
    quint16 tag;
    const char* name; ///< English; through QObject::tr to whoever sees it
    const char* description;
};

/// The row of a kind; null for a number that is no kind.
const Row* Find(RMEXIFElement::Type kind);

} // namespace EXIFTable
