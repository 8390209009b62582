#include "stderrcapture.h"

#include <cstdio>

#include <unistd.h>

StderrCapture::StderrCapture()
{
    if (!m_file.open())
        return;
    std::fflush(stderr);
    m_saved = dup(2);
    if (m_saved >= 0 && dup2(m_file.handle(), 2) < 0) {
        close(m_saved);
        m_saved = -1;
    }
}

StderrCapture::~StderrCapture()
{
    restore();
}

void StderrCapture::restore()
{
    if (m_saved < 0)
        return;
    std::fflush(stderr);
    dup2(m_saved, 2);
    close(m_saved);
    m_saved = -1;
    m_file.seek(0);
    m_text = m_file.readAll();
}

QByteArray StderrCapture::text()
{
    restore();
    return m_text;
}
