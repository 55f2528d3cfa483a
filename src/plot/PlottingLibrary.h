#pragma once

// The header of QCustomPlot needs Qt's keywords, which the program does without. No file but this
// one includes it.
#define signals Q_SIGNALS
#define slots Q_SLOTS
// A declaration cannot stand in parentheses.
// NOLINTNEXTLINE(bugprone-macro-parentheses)
#define foreach(variable, container) for (variable : container)
#include <qcustomplot.h>
#undef foreach
#undef slots
#undef signals
