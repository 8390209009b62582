#ifndef GETPIX_H
#define GETPIX_H

#include <QPixmap>

// The pixmap of a built-in XPM image, cached by name: the first call for a name decodes
// xpm, later calls with that name answer the same pixmap.
QPixmap GETPIX(const char* name, const char* const* xpm);

#endif
