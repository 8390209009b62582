#ifndef KVDSELECTION_H
#define KVDSELECTION_H

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QDateTime>
#include <QList>
#include <QString>

#include <memory>

class KVDHeadlessHost;
class KVDView;

// What kvd render and kvd export draw from: a repository, its saved view and/or chosen
// curves, and a shown range. The chart is built by the viewer's own code with kvd as a
// headless host, and nothing is ever written back into the repository.
class KVDSelection
{
public:
    // One --curve KEY:USER:FIELD.
    struct Curve
    {
        QString key;
        QString user;
        int field = 0;
    };

    KVDSelection();
    ~KVDSelection();
    KVDSelection(const KVDSelection&) = delete;
    KVDSelection& operator=(const KVDSelection&) = delete;

    // The options text of the usage both commands print.
    static QString optionsHelp();
    void addOptions(QCommandLineParser& parser) const;
    // Checks the option values; false with a message for the user.
    bool read(const QCommandLineParser& parser, QString* error);
    // Installs the headless host, loads the repository into view as start-up does but
    // without storing it, restores the saved view (--view, or no --curve), adds the
    // curves and sets the range, also on a chart without curves. False with a message
    // when anything named is missing or is not a regular file (R/KVD.cfg);
    // what the viewer would show in a box has gone to standard error by then. The host
    // stays installed until this object goes, so view must go first.
    bool apply(KVDView* view, QString* error);

    // A date YYYY-MM-DD (at 00:00) or YYYY-MM-DDTHH:MM:SS in local time; invalid otherwise.
    static QDateTime parseTime(const QString& text);

private:
    bool addCurve(KVDView* view, const Curve& curve, QString* error) const;

    QCommandLineOption m_root;
    QCommandLineOption m_view;
    QCommandLineOption m_curve;
    QCommandLineOption m_from;
    QCommandLineOption m_to;
    QCommandLineOption m_builtin;

    QString m_rootPath;
    QString m_builtinPath;
    bool m_savedView = false;
    QList<Curve> m_curves;
    QDateTime m_start;
    QDateTime m_end;
    std::unique_ptr<KVDHeadlessHost> m_host;
};

#endif
