#include "store/database.h"

#include "app/datafolder.h"

#include <QDebug>
#include <QMutex>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>

#include <functional>
#include <memory>

namespace {

QMutex &pathMutex()
{
    static QMutex mutex;
    return mutex;
}

// SQLite's own wait for a locked file. Qt's 5 s default, paid by every statement
// of a start, kept the window away for more than a minute; a lock that outlasts
// this is reported instead.
const char BusyTimeout[] = "QSQLITE_BUSY_TIMEOUT=200";

QString &storedPath()
{
    static QString path;
    return path;
}

// Opens a connection for one statement, hands the query to work and takes the
// connection down again, so project.db is never held open between statements.
// Connections are named after the calling thread, which keeps threads apart.
// Returns false without calling work when the file cannot be opened.
bool withConnection(const QString &dbPath, const std::function<bool(QSqlQuery &)> &work)
{
    const QString name = QString::number(quintptr(QThread::currentThreadId()));
    QSqlDatabase db = QSqlDatabase::contains(name) ? QSqlDatabase::database(name, true)
                                                   : QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    db.setDatabaseName(dbPath);
    db.setConnectOptions(QLatin1String(BusyTimeout));
    if (!db.open()) {
        db.close();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
        return false;
    }
    const QString connection = db.connectionName();
    auto query = std::make_unique<QSqlQuery>(db);
    const bool executed = work(*query);

    // The store's long-standing order, kept on purpose: close, drop the handle,
    // remove, and only then drop the query. With Qt 5.15 the query holds no
    // reference to the connection, so the removal stays silent.
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
    query.reset();
    return executed;
}

bool run(QSqlQuery &query, const QString &sql, const QVariantList &values)
{
    if (values.isEmpty())
        return query.exec(sql);
    if (!query.prepare(sql))
        return false;
    for (const QVariant &value : values) {
        // A pasted '' was empty text, never NULL; "password" is NOT NULL.
        if (value.type() == QVariant::String && value.isNull())
            query.addBindValue(QString::fromLatin1(""));
        else
            query.addBindValue(value);
    }
    return query.exec();
}

} // namespace

QString databasePath()
{
    QMutexLocker locker(&pathMutex());
    QString &path = storedPath();
    if (path.isEmpty())
        path = dataFolder() + QStringLiteral("/project.db");
    return path;
}

void setDatabasePath(const QString &path)
{
    QMutexLocker locker(&pathMutex());
    storedPath() = path;
}

bool executeSql(const QString &sql, const QString &dbPath)
{
    return executeSql(sql, QVariantList(), dbPath);
}

bool executeSql(const QString &sql, const QVariantList &values, const QString &dbPath)
{
    return withConnection(dbPath, [&](QSqlQuery &query) {
        if (run(query, sql, values))
            return true;
        // Bound values stay out of the message, so a password never reaches the log.
        qDebug() << " exe sqlstatement failure!\n detail:\ndbPath:" << dbPath << "\n error:"
                 << query.lastError().text() << "\n" << "sql statement:" << sql;
        return false;
    });
}

StoreState probeDatabase(const QString &dbPath)
{
    StoreState state = StoreState::Unreadable;
    const bool opened = withConnection(dbPath, [&](QSqlQuery &query) {
        if (query.exec(QStringLiteral("select count(*) from sqlite_master"))) {
            state = StoreState::Readable;
            return true;
        }
        // SQLITE_BUSY (5) and SQLITE_LOCKED (6): another connection holds the file.
        const QString code = query.lastError().nativeErrorCode();
        state = code == QLatin1String("5") || code == QLatin1String("6") ? StoreState::Locked : StoreState::Unreadable;
        qWarning() << "database check failed:" << dbPath << query.lastError().text();
        return true;
    });
    if (!opened)
        qWarning() << "database check failed:" << dbPath << "cannot be opened";
    return state;
}

RowList selectRows(const QString &sql, const QVariantList &values, int columns, const QString &dbPath)
{
    RowList rows;
    withConnection(dbPath, [&](QSqlQuery &query) {
        if (!run(query, sql, values))
            qDebug() << "执行错误" << sql << "  " << query.lastError().text();
        while (query.next()) {
            SqlRow row;
            for (int i = 0; i < columns; ++i)
                row.append(query.value(i));
            rows.append(row);
        }
        return true;
    });
    return rows;
}
