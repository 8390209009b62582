#ifndef USERINFO_H
#define USERINFO_H

#include <QString>

// Reports message on standard error as "Quillon - Kavendi: <message>\n" (translated in
// the context "Display Info"). The composed text is used as the printf format itself,
// so a per-cent sign in message is interpreted: callers rely on that being kept.
void user_info(const QString& message);

#endif
