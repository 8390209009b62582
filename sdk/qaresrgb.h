#ifndef QARESRGB_H
#define QARESRGB_H

#include "qares.h"

// A colour as three components from 0 to 255.
class QAResRGB : public QARes
{
public:
    QAResRGB(const QString& name, int red, int green, int blue)
        : QARes(RGB, name), m_red(red), m_green(green), m_blue(blue)
    {
    }
    int red() const { return m_red; }
    int green() const { return m_green; }
    int blue() const { return m_blue; }

private:
    int m_red;
    int m_green;
    int m_blue;
};

#endif
