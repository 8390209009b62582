#ifndef QARESBOOLEAN_H
#define QARESBOOLEAN_H

#include "qares.h"

class QAResBoolean : public QARes
{
public:
    QAResBoolean(const QString& name, bool value) : QARes(Boolean, name), m_value(value) {}
    bool value() const { return m_value; }

private:
    bool m_value;
};

#endif
