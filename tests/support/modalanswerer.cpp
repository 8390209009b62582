#include "modalanswerer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>

ModalAnswerer::ModalAnswerer(QObject* parent) : QObject(parent)
{
    m_timer.setInterval(5);
    connect(&m_timer, &QTimer::timeout, this, &ModalAnswerer::poll);
    m_timer.start();
}

void ModalAnswerer::push(const Answer& answer)
{
    m_answers.append(answer);
}

void ModalAnswerer::poll()
{
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal || !modal->isVisible())
        return;
    if (modal == m_last) {
        // An answer that did not close its widget (a disabled button, say) must fail the
        // test, not hang it.
        if (++m_stuckPolls < 200)
            return;
        ++m_unexpected;
        m_seen.append(QLatin1String("stuck|") + modal->metaObject()->className());
        dismiss(modal);
        m_last = nullptr;
        return;
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
        m_seen.append(QLatin1String(modal->metaObject()->className()) + QLatin1Char('|') +
                      modal->windowTitle());
    }
    if (m_answers.isEmpty()) {
        ++m_unexpected;
        dismiss(modal);
    } else {
        m_answers.takeFirst()(modal);
    }
    // The same dialog object may be run again; it counts as new once it was hidden.
    if (!modal->isVisible())
        m_last = nullptr;
}

void ModalAnswerer::dismiss(QWidget* modal)
{
    if (auto* dialog = qobject_cast<QDialog*>(modal))
        dialog->reject();
    else
        modal->close();
}

ModalAnswerer::Answer ModalAnswerer::click(const QString& text)
{
    return [text](QWidget* modal) {
        for (QAbstractButton* button : modal->findChildren<QAbstractButton*>()) {
            if (button->text().remove(QLatin1Char('&')) == text && button->isVisible()) {
                button->click();
                return;
            }
        }
        qWarning("ModalAnswerer: no button \"%s\" in %s", qPrintable(text),
                 modal->metaObject()->className());
        if (auto* dialog = qobject_cast<QDialog*>(modal))
            dialog->reject();
    };
}

ModalAnswerer::Answer ModalAnswerer::type(const QString& name, const QString& text,
                                          const Answer& then)
{
    return [name, text, then](QWidget* modal) {
        if (auto* edit = modal->findChild<QLineEdit*>(name))
            edit->setText(text);
        else
            qWarning("ModalAnswerer: no line edit %s", qPrintable(name));
        then(modal);
    };
}
