#ifndef QARESSTRING_H
#define QARESSTRING_H

#include "qares.h"

class QAResString : public QARes
{
public:
    QAResString(const QString& name, const QString& value) : QARes(String, name), m_value(value) {}
    QString value() const { return m_value; }

private:
    QString m_value;
};

#endif
