#ifndef QARESINT_H
#define QARESINT_H

#include "qares.h"

class QAResInt : public QARes
{
public:
    QAResInt(const QString& name, int value) : QARes(Int, name), m_value(value) {}
    int value() const { return m_value; }

private:
    int m_value;
};

#endif
