#pragma once

class QWidget;

// The window's first use of project.db: creates the account tables and, when the
// file is locked by another program or cannot be read, says so in one message
// over `parent`. Returns whether the file could be read.
bool openAccountStore(QWidget *parent = nullptr);
