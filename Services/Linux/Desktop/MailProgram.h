#pragma once

#include "Phone/Mail.h"

#include <QStringList>

/// Has xdg-email show the draft with those files attached, and waits a few seconds for what it says: false when it is
/// not installed or fails. One that goes on is showing the draft.
bool runMailProgram(const MailDraft& draft, const QStringList& files);
