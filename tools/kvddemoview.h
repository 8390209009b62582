#ifndef KVDDEMOVIEW_H
#define KVDDEMOVIEW_H

#include <QDate>
#include <QString>

// The saved view that makes a fresh sample repository worth opening: curves of two users
// and two measures on both value scales, a coverage ratio, three events and the last three
// months, written as the viewer saves it (KVD.cfg), with the measure definitions.
//
// A saved ratio curve finds its file again through the label of its measure, so the ratio
// comes from a measure of its own, "lines" (lines covered, lines in all), whose label is
// its key; every other measure keeps its readable label.
namespace KVDDemoView {

// Adds the lines measure of users (the first two get curves) over the days ending on end,
// then writes root/KVD.cfg. root must already hold a sample repository of those users.
// False with *error set when a file cannot be written or a curve cannot be loaded.
bool write(const QString& root, const QStringList& users, int days, const QDate& end,
           QString* error);

} // namespace KVDDemoView

#endif
