#ifndef KVDCONFIG_H
#define KVDCONFIG_H

#include <QColor>
#include <QDateTime>
#include <QList>
#include <QMap>
#include <QMultiMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class KVDCurve;
class KVDEvent;
class QAResGroup;

// A measure definition: entry 0 the display label, entries 1..N the field names.
using KVDDefinition = QMap<int, QString>;

// What the viewer knows of the open repository: measure definitions, each user's
// measures, and the view file KVD.cfg. Insertion into the dictionaries never replaces:
// a later entry under the same key hides the earlier one (value() finds the latest).
class KVDConfig : public QObject
{
    Q_OBJECT

public:
    // How a scan asks about the measures it finds without a definition. An empty
    // callable answers no, as a runner with no person to ask does.
    struct Questions
    {
        // Whether newly found measures are to be labelled now.
        std::function<bool()> configure;
        // The labels of `measure` with `count` fields: entry 0 the display label, then one
        // per field. False when the person declined.
        std::function<bool(const QString& measure, int count, KVDDefinition* labels)> labels;
    };

    // perUserView: the configuration of a per-user view (its own view file, questions
    // for the current user's files only) rather than of the shared view.
    explicit KVDConfig(const Questions& questions = {}, bool perUserView = false);
    ~KVDConfig() override;

    // Loads the installation's definitions from the host directory + "/KVD_built_in.cfg";
    // false without a host interface or when the file cannot be read (after a message).
    bool ReadConfigBuiltIn();
    // Diagnostic dump of the definitions on the warning channel.
    void DisplayConfig();
    // Lists dir's data files into users and makes sure every measure found has a
    // definition; false (with a message when interactive) when there is no data file.
    bool ScanRepository(QString dir, bool interactive);
    // Writes the view to dir/KVD.cfg; always true.
    bool StoreConfig(QString dir, QList<KVDCurve*>* curves, QDateTime start, QDateTime end,
                     int zoom, KVDCurve* firstScaleCurve, KVDCurve* secondScaleCurve,
                     QList<KVDEvent*>* events);
    // Rebuilds the view from dir/KVD.cfg: adds definitions, appends events and curves
    // (the lists own them from then on) and sets the out-values. False, after a message,
    // when the file is missing, unreadable or not as written; what was read stays.
    bool ReadConfig(QString dir, QList<KVDCurve*>* curves, QDateTime* start, QDateTime* end,
                    int* zoom, KVDCurve** firstScaleCurve, KVDCurve** secondScaleCurve,
                    QList<KVDEvent*>* events);
    // Registers "Custom" + measure as a copy of measure's definition.
    void StoreCustom(QString measure);

    QMultiMap<QString, KVDDefinition> definitions; // measure key -> definition
    QMultiMap<QString, QStringList> users;         // user -> measure keys of the user's files
    QColor color;                                  // colour of the last curve read
    QAResGroup* builtInGroup = nullptr;            // not valid after the call that set it
    bool defineFields = false;
    bool askPending = true;
    Questions questions;

private:
    // dir/KVD.cfg, or the current user's file of a per-user view.
    QString ConfigPath(const QString& dir) const;

    bool m_perUserView = false;
};

#endif
