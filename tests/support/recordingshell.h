#ifndef RECORDINGSHELL_H
#define RECORDINGSHELL_H

#include "kvdshell.h"

#include <QString>
#include <QStringList>

class StudioInterface;

// A shell for tests of the code below the window: messages are kept, one line each as
// "warning|text" or "critical|text", instead of being shown. use() installs it; it is
// uninstalled when it goes.
class RecordingShell : public KVDShell
{
public:
    explicit RecordingShell(StudioInterface* studio = nullptr) : m_studio(studio) {}
    ~RecordingShell() override
    {
        if (current() == this)
            install(nullptr);
    }

    void use() { install(this); }

    StudioInterface* studio() const override { return m_studio; }
    void warning(const QString& text) override { messages << QStringLiteral("warning|") + text; }
    void critical(const QString& text) override { messages << QStringLiteral("critical|") + text; }
    QString currentUser() const override { return user; }

    QStringList messages;
    QString user;

private:
    StudioInterface* m_studio = nullptr;
};

#endif
