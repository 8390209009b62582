#ifndef MODALANSWERER_H
#define MODALANSWERER_H

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

#include <functional>

// Answers the modal dialogs and message boxes a test provokes, from a timer, so that no
// test blocks in a modal loop. Answers are used in the order pushed; each runs on the
// active modal widget and is expected to close it. A modal widget that appears when no
// answer is left, or that an answer left open for a second, is rejected and counted as
// unexpected.
class ModalAnswerer : public QObject
{
public:
    using Answer = std::function<void(QWidget*)>;

    explicit ModalAnswerer(QObject* parent = nullptr) : QObject(parent)
    {
        connect(&m_timer, &QTimer::timeout, this, &ModalAnswerer::poll);
        m_timer.start(5);
    }

    void push(const Answer& answer) { m_answers.append(answer); }
    int pending() const { return int(m_answers.size()); }
    int unexpected() const { return m_unexpected; }
    // One line per modal widget met, answered or not: for a message box
    // "icon|title|text" (icon: information, warning, critical, question), for another
    // dialog "class|title".
    QStringList seen() const { return m_seen; }

    // Clicks the button whose text, without '&', is text.
    static Answer click(const QString& text)
    {
        return [text](QWidget* modal) {
            for (QAbstractButton* button : modal->findChildren<QAbstractButton*>()) {
                if (button->text().remove('&') == text && button->isVisible())
                    return button->click();
            }
            qWarning("ModalAnswerer: no button \"%s\" in %s", qPrintable(text),
                     modal->metaObject()->className());
        };
    }
    // Types text into the line edit named name, then answers with then.
    static Answer type(const QString& name, const QString& text, const Answer& then)
    {
        return [name, text, then](QWidget* modal) {
            if (auto* edit = modal->findChild<QLineEdit*>(name))
                edit->setText(text);
            else
                qWarning("ModalAnswerer: no line edit %s", qPrintable(name));
            then(modal);
        };
    }

private:
    void poll()
    {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible())
            return;
        if (modal == m_last) {
            // An answer that did not close its widget (a disabled button, a missing one)
            // must fail the test, not hang it.
            if (++m_stuckPolls < 200)
                return;
            m_seen.append(QLatin1String("stuck|") + modal->metaObject()->className());
            m_last = nullptr;
            return dismiss(modal);
        }
        m_last = modal;
        m_stuckPolls = 0;
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            static const char* const icons[] = {"none", "information", "warning", "critical",
                                                "question"};
            const int icon = int(box->icon());
            m_seen.append(QStringLiteral("%1|%2|%3")
                              .arg(QLatin1String(icon >= 0 && icon <= 4 ? icons[icon] : "other"),
                                   box->windowTitle(), box->text()));
        } else {
            m_seen.append(QLatin1String(modal->metaObject()->className()) + '|' +
                          modal->windowTitle());
        }
        if (m_answers.isEmpty())
            dismiss(modal);
        else
            m_answers.takeFirst()(modal);
        // The same dialog object may be run again; it counts as new once it was hidden.
        if (!modal->isVisible())
            m_last = nullptr;
    }
    void dismiss(QWidget* modal)
    {
        ++m_unexpected;
        if (auto* dialog = qobject_cast<QDialog*>(modal))
            dialog->reject();
        else
            modal->close();
    }

    QTimer m_timer;
    QList<Answer> m_answers;
    QStringList m_seen;
    QPointer<QWidget> m_last;
    int m_unexpected = 0;
    int m_stuckPolls = 0;
};

#endif
