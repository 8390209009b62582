#ifndef KVDTOOLKITSETUP_H
#define KVDTOOLKITSETUP_H

#include <QString>

// What kvd and the host program do before their application object exists, so that a
// command prints what it was asked for and its own diagnostics, never the toolkit's
// remarks about how the process was started (a missing runtime directory, a window hint
// the headless platform cannot pass on). Every other message still goes through.
namespace KvdToolkitSetup {

// Call first in main, before QApplication. Gives XDG_RUNTIME_DIR a directory of this user
// that only this user may enter (0700) unless it names one already: the one kept for the
// user under the temporary directory, or, when someone else holds that name, a fresh one
// removed again at exit if left empty. Then drops the headless platform's notice about
// size hints from the messages.
void prepare();

// Where the program finds what comes with it, from its own directory, once the
// application object exists: the directory of libkavendi.so, and the data directory that
// holds KVD_built_in.cfg. An installed tree puts them where the install rules say; a build
// tree keeps them in ../lib and ../share/kavendi, which is taken when the installed place
// is missing and that one is there.
QString libraryDirectory();
QString dataDirectory();

} // namespace KvdToolkitSetup

#endif
