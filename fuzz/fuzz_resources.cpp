// Feeds the host resource file reader arbitrary documents. Anything it accepts must be
// written back as a document that reads as the same tree.
#include "qares.h"
#include "qaresgroup.h"

#include <QByteArray>
#include <QString>
#include <QTextStream>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

QByteArray written(QARes* root)
{
    QAResGroup* group = root->toResGroup();
    if (!group)
        return QByteArray();
    QString text;
    QTextStream stream(&text);
    if (!group->write(stream, QString())) {
        std::fprintf(stderr, "fuzz_resources: a parsed tree could not be written\n");
        std::abort();
    }
    stream.flush();
    return text.toUtf8();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray document(reinterpret_cast<const char*>(data), qsizetype(size));
    std::unique_ptr<QARes> root(QARes::parse(document));
    if (!root)
        return 0;
    const QByteArray first = written(root.get());
    if (first.isEmpty())
        return 0;
    std::unique_ptr<QARes> again(QARes::parse(first));
    if (!again) {
        std::fprintf(stderr, "fuzz_resources: a written tree does not read back:\n%s\n",
                     first.constData());
        std::abort();
    }
    if (written(again.get()) != first) {
        std::fprintf(stderr, "fuzz_resources: a tree changed on its way through a file:\n%s\n",
                     first.constData());
        std::abort();
    }
    return 0;
}
