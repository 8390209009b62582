#ifndef QUCMVERIFICATION_H
#define QUCMVERIFICATION_H

#include <QtGlobal>

// The verification record of a component plug-in: the toolkit version and build key it
// was compiled against. Header-only on purpose: host and plug-in each compile it with
// their own toolkit, and the host refuses a plug-in whose record differs from its own.
#if defined(Q_PROCESSOR_X86_64)
#define QUCM_ARCH "x86_64"
#elif defined(Q_PROCESSOR_ARM_64)
#define QUCM_ARCH "arm64"
#else
#define QUCM_ARCH "unknown"
#endif

#define QUCM_VERIFICATION_DATA                                                                 \
    "pattern=QT_UCM_VERIFICATION_DATA\n"                                                       \
    "version=" QT_VERSION_STR "\n"                                                             \
    "flags=01\n"                                                                               \
    "buildkey=" QUCM_ARCH " linux g++ full-config\n"

#endif
