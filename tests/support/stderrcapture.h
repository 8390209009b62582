#ifndef STDERRCAPTURE_H
#define STDERRCAPTURE_H

#include <QByteArray>
#include <QTemporaryFile>

// Sends this process's standard error (file descriptor 2, so C stdio and Qt messages
// alike) to a temporary file from construction until text() or destruction.
class StderrCapture
{
public:
    StderrCapture();
    ~StderrCapture();
    StderrCapture(const StderrCapture&) = delete;
    StderrCapture& operator=(const StderrCapture&) = delete;

    // Restores standard error and answers what was written meanwhile.
    QByteArray text();

private:
    void restore();

    QTemporaryFile m_file;
    int m_saved = -1;
    QByteArray m_text;
};

#endif
