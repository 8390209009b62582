#ifndef MODALANSWERER_H
#define MODALANSWERER_H

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <functional>

class QWidget;

// Answers the modal dialogs and message boxes a test provokes, from a timer, so that no
// test blocks in a modal loop. Answers are used in the order pushed; each runs on the
// active modal widget and is expected to close it. A modal widget that appears when no
// answer is left, or that an answer left open for a second, is rejected and counted as
// unexpected.
class ModalAnswerer : public QObject
{
    Q_OBJECT

public:
    using Answer = std::function<void(QWidget*)>;

    explicit ModalAnswerer(QObject* parent = nullptr);

    void push(const Answer& answer);
    int pending() const { return int(m_answers.size()); }
    int unexpected() const { return m_unexpected; }
    // One line per modal widget met, answered or not: for a message box
    // "icon|title|text" (icon: information, warning, critical, question), for another
    // dialog "class|title".
    QStringList seen() const { return m_seen; }

    // Clicks the button whose text, without '&', is text.
    static Answer click(const QString& text);
    // Types text into the line edit named name, then answers with then.
    static Answer type(const QString& name, const QString& text, const Answer& then);

private:
    void poll();
    static void dismiss(QWidget* modal);

    QTimer m_timer;
    QList<Answer> m_answers;
    QStringList m_seen;
    QPointer<QWidget> m_last;
    int m_unexpected = 0;
    int m_stuckPolls = 0;
};

#endif
