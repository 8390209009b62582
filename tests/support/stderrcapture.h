#ifndef STDERRCAPTURE_H
#define STDERRCAPTURE_H

#include <QByteArray>
#include <QTemporaryFile>

#include <cstdio>

#include <unistd.h>

// Sends this process's standard error (file descriptor 2, so C stdio and Qt messages
// alike) to a temporary file from construction until text() or destruction.
class StderrCapture
{
public:
    StderrCapture()
    {
        std::fflush(stderr);
        if (m_file.open())
            m_saved = dup(2);
        if (m_saved >= 0)
            dup2(m_file.handle(), 2);
    }
    ~StderrCapture() { text(); }
    StderrCapture(const StderrCapture&) = delete;
    StderrCapture& operator=(const StderrCapture&) = delete;

    // Restores standard error and answers what was written meanwhile.
    QByteArray text()
    {
        if (m_saved >= 0) {
            std::fflush(stderr);
            dup2(m_saved, 2);
            close(m_saved);
            m_saved = -1;
            m_file.seek(0);
            m_text = m_file.readAll();
        }
        return m_text;
    }

private:
    QTemporaryFile m_file;
    int m_saved = -1;
    QByteArray m_text;
};

#endif
