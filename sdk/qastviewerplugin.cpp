#include "qastviewerplugin.h"

QAStViewerPlugin::QAStViewerPlugin() = default;

QAStViewerPlugin::~QAStViewerPlugin() = default;

void QAStViewerPlugin::exportHTML(const QString&, const QString&) {}

void QAStViewerPlugin::connectAccepted() {}

void QAStViewerPlugin::connectRejected() {}
