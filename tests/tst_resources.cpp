#include "qaresboolean.h"
#include "qaresgroup.h"
#include "qaresint.h"
#include "qaresrgb.h"
#include "qaresstring.h"
#include "testenv.h"

#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

#include <memory>

// The host resource files: the tree written is the tree read, whatever the names and
// texts hold, and anything else reads as nothing.
class TstResources : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString writeTree(const QAResGroup& root, const QString& name,
                      const QString& prefix = QString())
    {
        const QString path = m_dir.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return QString();
        QTextStream stream(&file);
        return root.write(stream, prefix) ? path : QString();
    }

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        QVERIFY2(m_dir.isValid(), "a temporary directory is needed");
    }

    void roundTrip_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << QStringLiteral("Coverage");
        QTest::newRow("empty") << QString();
        QTest::newRow("markup") << QStringLiteral("a < b && c > \"d\" 'e' </string>");
        QTest::newRow("line breaks") << QStringLiteral("first\nsecond\r\nthird\ttab");
        QTest::newRow("outer blanks") << QStringLiteral("  padded  ");
        QTest::newRow("latin-1") << QStringLiteral("Déjà vu à l'école, ÿ ß Ø");
        QTest::newRow("entity look-alike") << QStringLiteral("&amp; &#10; &lt;");
    }

    void roundTrip()
    {
        QFETCH(QString, text);
        QAResGroup root(QStringLiteral("KVDConfig"), nullptr);
        auto* group = new QAResGroup(text, &root);
        auto* s = new QAResString(text, text);
        group->addChild(s);
        auto* i = new QAResInt(QStringLiteral("ZOOM"), -2147483647 - 1);
        s->setNext(i);
        auto* c = new QAResRGB(QStringLiteral("COLOR"), 0, 128, 255);
        i->setNext(c);
        auto* b = new QAResBoolean(QStringLiteral("VISIBLE"), true);
        c->setNext(b);
        new QAResGroup(QStringLiteral("empty"), &root);

        const QString path = writeTree(root, QStringLiteral("round.cfg"));
        QVERIFY2(!path.isEmpty(), "writing the tree failed");
        std::unique_ptr<QARes> read(QARes::read(path, true));
        QVERIFY2(read, "the written file did not read back");
        QAResGroup* readRoot = read->toResGroup();
        QVERIFY(readRoot);
        QCOMPARE(readRoot->name(), QStringLiteral("KVDConfig"));
        QAResGroup* g = readRoot->firstChild()->toResGroup();
        QVERIFY2(g, "first child should be the group");
        QCOMPARE(g->name(), text);
        QARes* node = g->firstChild();
        QCOMPARE(node->toResString()->name(), text);
        QCOMPARE(node->toResString()->value(), text);
        node = node->next();
        QCOMPARE(node->toResInt()->value(), -2147483647 - 1);
        node = node->next();
        QCOMPARE(node->toResRGB()->red(), 0);
        QCOMPARE(node->toResRGB()->green(), 128);
        QCOMPARE(node->toResRGB()->blue(), 255);
        node = node->next();
        QCOMPARE(node->toResBoolean()->value(), true);
        QVERIFY2(!node->next(), "no node after the boolean");
        QAResGroup* empty = g->next()->toResGroup();
        QVERIFY2(empty && !empty->firstChild() && !empty->next(), "empty group kept, last");
    }

    void prefixOnEveryLine()
    {
        QAResGroup root(QStringLiteral("r"), nullptr);
        root.appendChild(new QAResString(QStringLiteral("multi"), QStringLiteral("a\nb")));
        const QString path = writeTree(root, QStringLiteral("prefixed.cfg"), QStringLiteral("# "));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray stripped;
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line.isEmpty())
                continue;
            QVERIFY2(line.startsWith("# "), line.constData());
            stripped += line.mid(2) + '\n';
        }
        std::unique_ptr<QARes> read(QARes::parse(stripped));
        QVERIFY2(read && read->toResGroup()->firstChild(), "the unprefixed lines are the document");
        QCOMPARE(read->toResGroup()->firstChild()->toResString()->value(), QStringLiteral("a\nb"));
    }

    void malformedReadsAsNothing_data()
    {
        QTest::addColumn<QString>("file");
        for (const char* name :
             {"truncated.cfg", "crossed.cfg", "binary.cfg", "unknown-element.cfg", "no-name.cfg",
              "bad-int.cfg", "bad-bool.cfg", "bad-rgb.cfg", "stray-text.cfg", "empty.cfg",
              "entities.cfg", "two-roots.cfg", "does-not-exist.cfg"})
            QTest::newRow(name) << TestEnv::dataFile(QStringLiteral("res/") + QLatin1String(name));
    }

    void malformedReadsAsNothing()
    {
        QFETCH(QString, file);
        std::unique_ptr<QARes> read(QARes::read(file, false));
        QVERIFY2(!read, qPrintable(file + QStringLiteral(" should read as null")));
    }

    void largeTreesNeitherOverflowNorLeak()
    {
        // Deep nesting and long sibling chains are walked iteratively.
        const int depth = 20000;
        QByteArray deep;
        for (int k = 0; k < depth; ++k)
            deep += "<group name=\"g\">";
        deep += "<int name=\"leaf\">7</int>";
        for (int k = 0; k < depth; ++k)
            deep += "</group>";
        std::unique_ptr<QARes> tree(QARes::parse(deep));
        QVERIFY2(tree, "deeply nested document should parse");
        QARes* node = tree.get();
        int levels = 0;
        while (QAResGroup* g = node->toResGroup()) {
            node = g->firstChild();
            ++levels;
        }
        QCOMPARE(levels, depth);
        QCOMPARE(node->toResInt()->value(), 7);

        QAResGroup wide(QStringLiteral("wide"), nullptr);
        QARes* last = nullptr;
        for (int k = 0; k < 200000; ++k) {
            auto* n = new QAResInt(QStringLiteral("n"), k);
            if (last)
                last->setNext(n);
            else
                wide.addChild(n);
            last = n;
        }
        const QString path = writeTree(wide, QStringLiteral("wide.cfg"));
        std::unique_ptr<QARes> back(QARes::read(path, false));
        QVERIFY2(back, "a wide tree should read back");
        int count = 0;
        for (QARes* n = back->toResGroup()->firstChild(); n; n = n->next())
            ++count;
        QCOMPARE(count, 200000);
    }
};

QTEST_GUILESS_MAIN(TstResources)
#include "tst_resources.moc"
