#pragma once

#include <QList>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QVector>

// One row of a read: exactly the columns the read asks for, in column order.
using SqlRow = QVector<QVariant>;
// Rows in the order SQLite delivers them. Empty both when nothing matched and
// when the statement failed.
using RowList = QList<SqlRow>;

// What one quick read of project.db finds.
enum class StoreState { Readable, Locked, Unreadable };

// project.db in the data folder (beside the executable, or the per-user folder
// of an installed copy), built once and then kept for the process.
QString databasePath();
// For tests and tools: points every later statement at another file. An empty
// path goes back to the file in the data folder.
void setDatabasePath(const QString &path);

// Runs one statement that returns no rows; true when it executed. A failure is
// logged with the path, the driver's error and the statement.
bool executeSql(const QString &sql, const QString &dbPath);

// The same for a statement with "?" placeholders, filled in order from values.
// Everything a user typed goes this way and never into the statement text.
// A null string is bound as empty text, as a pasted '' always was.
bool executeSql(const QString &sql, const QVariantList &values, const QString &dbPath);

// Reads the schema once, waiting no longer than the short busy timeout: Locked
// when another program holds the file, Unreadable when it cannot be opened or is
// no SQLite database at all.
StoreState probeDatabase(const QString &dbPath);

// Runs one read and collects columns 0 .. columns-1 of every row. A failed
// statement is logged and yields what was collected: nothing.
RowList selectRows(const QString &sql, const QVariantList &values, int columns, const QString &dbPath);
