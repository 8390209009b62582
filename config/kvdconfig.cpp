#include "kvdconfig.h"
#include "kvdcurve.h"
#include "kvdevent.h"
#include "kvdmeasurefile.h"
#include "kvdshell.h"
#include "qaresboolean.h"
#include "qaresgroup.h"
#include "qaresint.h"
#include "qaresrgb.h"
#include "qaresstring.h"
#include "studiointerface.h"

#include <QDir>
#include <QFile>
#include <QTextStream>

#include <memory>

namespace {

// Marks a ratio curve in the view file: the prefix followed by the measure key.
const QString EditedMetric = QStringLiteral("_EDITED_METRIC_");

// Dates are written as seconds from the local 1970-01-01 00:00:00 and read back as
// seconds since the epoch in UTC. The two are deliberately not symmetric: outside UTC a
// stored date-time comes back moved by the zone's offset, and the files already written
// depend on this.
QString encodeDate(const QDateTime& value)
{
    // Wall-clock seconds, no zone conversion: the date and time as shown, counted as if
    // both ends were UTC, so that a summer date is not an hour off in a zone with
    // daylight saving.
    const QDateTime naive(value.date(), value.time(), Qt::UTC);
    return QString::number(static_cast<int>(naive.toSecsSinceEpoch()), 10);
}

QDateTime decodeDate(const QString& text)
{
    // A negative or malformed count is read as 0, 1970-01-01.
    return QDateTime::fromSecsSinceEpoch(qint64(text.toUInt(nullptr, 10)));
}

QString local8Bit(const QString& text)
{
    return QString::fromLocal8Bit(text.toLocal8Bit());
}

QString latin1(const QString& text)
{
    return QString::fromLatin1(text.toLatin1());
}

QAResRGB* colorNode(const char* name, const QColor& color)
{
    const QRgb rgb = color.rgb();
    return new QAResRGB(QString::fromLatin1(name), qRed(rgb), qGreen(rgb), qBlue(rgb));
}

QColor nodeColor(const QAResRGB* node)
{
    return QColor(qBound(0, node->red(), 255), qBound(0, node->green(), 255),
                  qBound(0, node->blue(), 255));
}

// Links nodes into a group in order: the first becomes its first child, every later one
// the next sibling of the one before.
class ChildLinker
{
public:
    explicit ChildLinker(QAResGroup* group) : m_group(group) {}
    template <typename Node> Node* add(Node* node)
    {
        if (m_last)
            m_last->setNext(node);
        else
            m_group->addChild(node);
        m_last = node;
        return node;
    }

private:
    QAResGroup* m_group;
    QARes* m_last = nullptr;
};

// Reads a group's children by position; each take answers null when the next child is
// missing or of another kind.
class ChildReader
{
public:
    explicit ChildReader(const QAResGroup* group) : m_next(group->firstChild()) {}
    bool atEnd() const { return m_next == nullptr; }
    QAResString* string() { return take(&QARes::toResString); }
    QAResInt* integer() { return take(&QARes::toResInt); }
    QAResRGB* rgb() { return take(&QARes::toResRGB); }
    QAResBoolean* boolean() { return take(&QARes::toResBoolean); }

private:
    template <typename Node> Node* take(Node* (QARes::*as)())
    {
        Node* node = m_next ? (m_next->*as)() : nullptr;
        if (node)
            m_next = node->next();
        return node;
    }

    QARes* m_next = nullptr;
};

// The leading string entries of a group, numbered from 0; the first entry of another
// kind ends them.
KVDDefinition stringEntries(const QAResGroup* group)
{
    KVDDefinition definition;
    int key = 0;
    for (QARes* node = group->firstChild(); node && node->toResString(); node = node->next())
        definition.insert(key++, node->toResString()->value());
    return definition;
}

} // namespace

KVDConfig::KVDConfig(const Questions& questions, bool perUserView)
    : questions(questions), m_perUserView(perUserView)
{
}

KVDConfig::~KVDConfig()
{
    definitions.clear();
    users.clear();
}

QString KVDConfig::ConfigPath(const QString& dir) const
{
    // The per-user name is kept for a per-user view, which no viewer uses.
    if (m_perUserView)
        return dir + QLatin1String("/KVD") + KVDShell::user() + QLatin1String(".cfg");
    return dir + QLatin1String("/KVD.cfg");
}

bool KVDConfig::ReadConfigBuiltIn()
{
    StudioInterface* host = KVDShell::host();
    if (!host)
        return false;
    const QString path = host->directory() + QLatin1String("/KVD_built_in.cfg");
    std::unique_ptr<QARes> root(QARes::read(path, false));
    QAResGroup* rootGroup = root ? root->toResGroup() : nullptr;
    if (!rootGroup) {
        KVDShell::criticalBox(tr("Unable to read Kavendi configuration file (built in).\n"));
        return false;
    }
    QARes* first = rootGroup->firstChild();
    // Refers into the parsed document, which is released below; kept for the record only.
    builtInGroup = first ? first->toResGroup() : nullptr;
    if (builtInGroup) {
        for (QARes* node = builtInGroup->firstChild(); node; node = node->next()) {
            // A later group of the same name hides the earlier one.
            if (const QAResGroup* measure = node->toResGroup())
                definitions.insert(measure->name(), stringEntries(measure));
        }
    }
    return true;
}

void KVDConfig::DisplayConfig()
{
    for (auto it = definitions.cbegin(); it != definitions.cend(); ++it) {
        for (auto entry = it->cbegin(); entry != it->cend(); ++entry) {
            qWarning("----------------");
            qWarning("%ld", long(entry.key()));
            qWarning("%s", qPrintable(entry.value()));
        }
    }
}

bool KVDConfig::ScanRepository(QString dir, bool interactive)
{
    // The name filter tells case (cov.alice.4.KVD is not a data file); only the order ignores it.
    const QStringList entries = QDir(dir).entryList(
        {QStringLiteral("*.kvd")}, QDir::Files | QDir::Dirs | QDir::Drives | QDir::CaseSensitive,
        QDir::Name | QDir::IgnoreCase);
    if (entries.isEmpty()) {
        if (interactive)
            KVDShell::criticalBox(tr("There is nothing to display.\n"));
        return false;
    }
    if (!interactive)
        return true;

    QStringList refused;
    for (const QString& entry : entries) {
        const KVDMeasureFile::Name parts = KVDMeasureFile::splitName(entry);
        const int count = parts.fieldCount;
        // A count no writer can produce would make a definition of absurd size.
        if (!KVDMeasureFile::checkFieldCount(count, nullptr)) {
            refused.append(entry);
            continue;
        }
        const QString key = parts.key();

        auto list = users.find(parts.user);
        if (list == users.end())
            users.insert(parts.user, QStringList{key});
        else
            list->append(key);

        bool ask = false;
        if (!m_perUserView) {
            // Shared view: the question is asked at most once per configuration.
            ask = askPending;
        } else if (parts.user == KVDShell::user()) {
            askPending = true;
            defineFields = false;
            ask = true;
        } else {
            askPending = false;
            defineFields = false;
        }
        if (ask && !definitions.contains(key)) {
            if (questions.configure && questions.configure())
                defineFields = true;
            askPending = false;
        }

        if (defineFields && !definitions.contains(key)) {
            KVDDefinition labels;
            if (questions.labels && questions.labels(parts.measure, count, &labels))
                definitions.insert(key, labels);
        }

        if (!definitions.contains(key)) {
            KVDDefinition definition;
            definition.insert(0, parts.measure);
            for (int i = 1; i <= count; ++i)
                definition.insert(i, tr("Field %1", "Default name of a measure field").arg(i));
            definitions.insert(key, definition);
        }
    }
    if (!refused.isEmpty())
        KVDShell::warningBox(
            tr("These files were ignored: their number of values is not between 0 and %1.\n%2\n",
               "%2 is a list of file names")
                .arg(KVDMeasureFile::MaxFields)
                .arg(refused.join(QLatin1Char('\n'))));
    return true;
}

bool KVDConfig::StoreConfig(QString dir, QList<KVDCurve*>* curves, QDateTime start, QDateTime end,
                            int zoom, KVDCurve* firstScaleCurve, KVDCurve* secondScaleCurve,
                            QList<KVDEvent*>* events)
{
    // Only the name EVENTSLIST is ever looked at by the reader; every other node is found
    // by its position, so the order below is the file format.
    std::unique_ptr<QAResGroup> root(new QAResGroup(QStringLiteral("KVDConfig"), nullptr));
    ChildLinker top(root.get());

    auto* measures = top.add(new QAResGroup(QStringLiteral("MEASURE"), nullptr));
    builtInGroup = measures;
    ChildLinker measureLinker(measures);
    for (auto it = definitions.cbegin(); it != definitions.cend(); ++it) {
        auto* group = measureLinker.add(new QAResGroup(local8Bit(it.key()), nullptr));
        ChildLinker labels(group);
        for (int key = 0; key < it->size(); ++key)
            labels.add(new QAResString(QStringLiteral("label"), latin1(it->value(key))));
    }

    if (events && !events->isEmpty()) {
        auto* list = top.add(new QAResGroup(QStringLiteral("EVENTSLIST"), nullptr));
        ChildLinker eventLinker(list);
        for (const KVDEvent* event : std::as_const(*events)) {
            // Deliberately named like the curve entries; the position tells them apart.
            auto* group = eventLinker.add(new QAResGroup(QStringLiteral("CURVE"), nullptr));
            ChildLinker fields(group);
            fields.add(new QAResString(QStringLiteral("DATE"),
                                       encodeDate(QDateTime(event->date, QTime(0, 0)))));
            fields.add(new QAResString(QStringLiteral("TEXT"), local8Bit(event->text)));
            fields.add(
                colorNode("COLOR", event->color.isValid() ? event->color : QColor(Qt::black)));
            fields.add(new QAResBoolean(QStringLiteral("VISIBLE"), event->visible));
        }
    }

    auto* scene = top.add(new QAResGroup(QStringLiteral("SCENEDATES"), nullptr));
    ChildLinker sceneLinker(scene);
    sceneLinker.add(new QAResString(QStringLiteral("START"), encodeDate(start)));
    sceneLinker.add(new QAResString(QStringLiteral("END"), encodeDate(end)));
    sceneLinker.add(new QAResInt(QStringLiteral("ZOOM"), zoom));

    auto* view = top.add(new QAResGroup(QStringLiteral("LASTVIEW"), nullptr));
    ChildLinker curveLinker(view);
    if (curves) {
        for (const KVDCurve* curve : std::as_const(*curves)) {
            auto* group = curveLinker.add(new QAResGroup(QStringLiteral("CURVE"), nullptr));
            ChildLinker fields(group);
            const QString label = curve->isRatio ? EditedMetric + curve->name : curve->name;
            fields.add(new QAResString(QStringLiteral("MEASURELABEL"), local8Bit(label)));
            fields.add(new QAResString(QStringLiteral("USER"), local8Bit(curve->user)));
            fields.add(new QAResInt(QStringLiteral("NBFIELDS"), curve->valueCount));
            fields.add(new QAResInt(QStringLiteral("FIELDNUM"), curve->field));
            fields.add(colorNode("COLOR", curve->hasColor ? curve->color : QColor(Qt::black)));
            const int scale =
                (curve == firstScaleCurve ? 1 : 0) | (curve == secondScaleCurve ? 2 : 0);
            fields.add(new QAResInt(QStringLiteral("DISPSCALE"), scale));
            if (curve->fixedScale)
                fields.add(
                    new QAResInt(QStringLiteral("SCALEY"), static_cast<int>(curve->displayMax)));
        }
    }

    // A file that cannot be written is deliberately not reported: the caller goes on.
    QFile file(ConfigPath(dir));
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        QTextStream stream(&file);
        root->write(stream, QString());
        file.close();
    }
    return true;
}

bool KVDConfig::ReadConfig(QString dir, QList<KVDCurve*>* curves, QDateTime* start, QDateTime* end,
                           int* zoom, KVDCurve** firstScaleCurve, KVDCurve** secondScaleCurve,
                           QList<KVDEvent*>* events)
{
    std::unique_ptr<QARes> root(QARes::read(ConfigPath(dir), false));
    QAResGroup* rootGroup = root ? root->toResGroup() : nullptr;
    if (!rootGroup) {
        KVDShell::criticalBox(tr("Unable to read Kavendi configuration file.\n"));
        return false;
    }
    // From here on a fault stops reading; what was read stays with the caller.
    auto fail = [] {
        KVDShell::warningBox(tr("Unable to read Kavendi configuration file.\n"));
        return false;
    };

    QAResGroup* measures =
        rootGroup->firstChild() ? rootGroup->firstChild()->toResGroup() : nullptr;
    if (!measures)
        return fail();
    builtInGroup = measures;
    for (QARes* node = measures->firstChild(); node; node = node->next()) {
        const QAResGroup* group = node->toResGroup();
        // Definitions already known (built in or scanned) win over the file's.
        if (group && !definitions.contains(group->name()))
            definitions.insert(group->name(), stringEntries(group));
    }

    QARes* current = measures;
    QAResGroup* eventList = current->next() ? current->next()->toResGroup() : nullptr;
    if (eventList && eventList->name() == QLatin1String("EVENTSLIST")) {
        for (QARes* node = eventList->firstChild(); node; node = node->next()) {
            const QAResGroup* group = node->toResGroup();
            if (!group)
                return fail();
            ChildReader entry(group);
            const QAResString* date = entry.string();
            const QAResString* text = date ? entry.string() : nullptr;
            const QAResRGB* color = text ? entry.rgb() : nullptr;
            const QAResBoolean* visible = color ? entry.boolean() : nullptr;
            if (!visible)
                return fail();
            auto* event =
                new KVDEvent(decodeDate(date->value()).date(), text->value(), visible->value());
            event->color = nodeColor(color);
            event->hasColor = true;
            if (events)
                events->append(event);
            else
                delete event;
        }
        current = eventList;
    }

    QAResGroup* scene = current->next() ? current->next()->toResGroup() : nullptr;
    if (!scene)
        return fail();
    ChildReader sceneReader(scene);
    const QAResString* startNode = sceneReader.string();
    if (!startNode)
        return fail();
    const QDateTime savedStart = decodeDate(startNode->value());
    *start = savedStart;
    const QAResString* endNode = sceneReader.string();
    if (!endNode)
        return fail();
    const QDateTime savedEnd = decodeDate(endNode->value());
    *end = savedEnd;
    const QAResInt* zoomNode = sceneReader.integer();
    if (!zoomNode)
        return fail();
    *zoom = zoomNode->value();

    QAResGroup* view = scene->next() ? scene->next()->toResGroup() : nullptr;
    for (QARes* node = view ? view->firstChild() : nullptr; node; node = node->next()) {
        const QAResGroup* group = node->toResGroup();
        if (!group)
            return fail();
        ChildReader entry(group);
        const QAResString* label = entry.string();
        const QAResString* user = label ? entry.string() : nullptr;
        const QAResInt* valueCount = user ? entry.integer() : nullptr;
        const QAResInt* fieldNumber = valueCount ? entry.integer() : nullptr;
        const QAResRGB* color = fieldNumber ? entry.rgb() : nullptr;
        const QAResInt* scale = color ? entry.integer() : nullptr;
        if (!scale)
            return fail();
        const QAResInt* scaleY = nullptr;
        if (!entry.atEnd()) {
            scaleY = entry.integer();
            if (!scaleY)
                return fail();
        }

        const QDateTime before = *start;
        const QString measure = label->value();
        const int count = valueCount->value();
        const int field = fieldNumber->value();
        KVDCurve* curve = nullptr;
        if (measure.size() > EditedMetric.size() && measure.startsWith(EditedMetric)) {
            // A ratio curve: a field over the field half the value count further, both of
            // the file named by the entry 0 of the measure's definition.
            const QString fileKey = definitions.value(measure.mid(EditedMetric.size())).value(0);
            curve = new KVDCurve(dir, fileKey, field, count, user->value(), *start, *end);
            KVDCurve denominator(dir, fileKey, field + count / 2, count, user->value(), *start,
                                 *end);
            curve->DIV(denominator);
            curve->fixedScale = true;
        } else {
            curve = new KVDCurve(dir, measure, field, count, user->value(), *start, *end);
        }
        curve->color = nodeColor(color);
        curve->hasColor = true;
        this->color = curve->color;
        if (scaleY) {
            curve->displayMax = scaleY->value();
            curve->fixedScale = true;
        }

        // The new curve's points count from its first record, which is now *start:
        // bring the curves read before to the same origin.
        const qint64 moved = before.secsTo(*start);
        if (curves) {
            for (KVDCurve* other : std::as_const(*curves)) {
                other->MoveX(-moved);
                other->firstDate = *start;
                other->endDate = *end;
            }
        }

        // A measure without records gives no curve, silently.
        if (curves && curve->hasPoints()) {
            curves->append(curve);
            if (scale->value() == 1 || scale->value() == 3)
                *firstScaleCurve = curve;
            if (scale->value() == 2 || scale->value() == 3)
                *secondScaleCurve = curve;
        } else {
            delete curve;
        }
    }

    // Show exactly the stored range, whatever range the curves' files needed.
    root.reset();
    const qint64 back = savedStart.secsTo(*start);
    *start = savedStart;
    *end = savedEnd;
    if (curves) {
        for (KVDCurve* curve : std::as_const(*curves)) {
            curve->MoveX(back);
            curve->firstDate = savedStart;
            curve->endDate = savedEnd;
            curve->span = double(savedStart.secsTo(savedEnd));
        }
    }
    return true;
}

void KVDConfig::StoreCustom(QString measure)
{
    KVDDefinition custom = definitions.value(measure);
    custom.insert(0, QLatin1String("Custom") + measure);
    definitions.insert(QLatin1String("Custom") + measure, custom);
}
