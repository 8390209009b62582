#ifndef KVDTOOLTIP_H
#define KVDTOOLTIP_H

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>

class KVDConfig;
class KVDCurve;
class QWidget;

// Tooltips over the chart: the curve segment under the pointer gives the curve's label
// and user as a tooltip, and its date and value in the host's status bar. Works in the
// paper geometry each curve kept from its last paint.
class KVDToolTip : public QObject
{
    Q_OBJECT

public:
    // What the pointer at a paper position shows; found is false when no curve answers.
    struct Tip
    {
        bool found = false;
        bool quiet = false; // no tip and no repaint either: a flat curve whose top is 0
        QString text;   // label + " " + user
        QString status; // date + " " + label + " " + field name + " = " + value
        QDateTime date;
        double value = 0.0;
    };

    // Watches `paper` (its parent) for tooltip events. The lists stay owned by the viewer.
    KVDToolTip(QWidget* paper, QList<KVDCurve*>* curves, KVDConfig* config, QObject* group);

    Tip tipAt(const QPoint& p) const;
    // The viewer replaces its configuration when it reloads the repository.
    void setConfig(KVDConfig* config) { m_config = config; }
    // Shows the tip for p, or repaints the paper when no curve answers.
    void maybeTip(const QPoint& p);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* m_paper = nullptr;
    KVDConfig* m_config = nullptr;
    QList<KVDCurve*>* m_curves = nullptr;
};

#endif
