#pragma once

#include "store/portnames.h"

class QListWidget;

// Stores `name` for the current item of `list` as a port of `kind`, relabels the
// item and, for inputs, tells the other views through the signal hub. No current
// item: nothing happens. False when the store refused the name: the item keeps
// its old label and nobody is told.
bool applyPortName(QListWidget *list, PortNames *names, PortNames::Kind kind, const QString &name);
