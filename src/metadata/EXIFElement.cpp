#include "RMEXIFElement.h"
#include "metadata/EXIFTable.h"

#include <QtCore/QObject>

class RMEXIFElement::Private {
public:
    Type type;
    QVariant value;
};

unsigned int RMEXIFElement::GetTag(Type type) {
    const EXIFTable::Row* row = EXIFTable::Find(type);
    return row ? row->tag : 0;
}

QString RMEXIFElement::GetTypeName(Type type) {
    const EXIFTable::Row* row = EXIFTable::Find(type);
    return row ? QObject::tr(row->name) : QString();
}

QString RMEXIFElement::GetDescription(Type type) {
    const EXIFTable::Row* row = EXIFTable::Find(type);
    return row ? QObject::tr(row->description) : QString();
}

RMEXIFElement::RMEXIFElement(Type type, const QVariant& value) : m_p(new Private{type, value}) {}

RMEXIFElement::RMEXIFElement(const RMEXIFElement& other) : m_p(new Private(*other.m_p)) {}

RMEXIFElement& RMEXIFElement::operator=(const RMEXIFElement& other) {
    *m_p = *other.m_p;
    return *this;
}

RMEXIFElement::~RMEXIFElement() = default;

RMEXIFElement::Type RMEXIFElement::GetType() const {
    return m_p->type;
}

QVariant RMEXIFElement::GetValue() const {
    return m_p->value;
}

void RMEXIFElement::SetValue(const QVariant& value) {
    m_p->value = value;
}

QByteArray RMEXIFElement::ToRawDataValue() const {
    return m_p->value.toByteArray();
}
