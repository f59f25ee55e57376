#include "store/portnamestore.h"

#include "store/database.h"

// Table names, "Infare" and the missing "Port" in InAudioName included, are the
// ones existing project.db files carry.
namespace {

bool saveName(const char *table, int port, const QString &name)
{
    return executeSql(QStringLiteral("insert or replace into %1(Port,PortName) values(%2,?)")
                          .arg(QLatin1String(table))
                          .arg(port),
                      {name}, databasePath());
}

QMap<int, QString> loadNames(const QString &sql)
{
    QMap<int, QString> names;
    const RowList rows = selectRows(sql, {}, 2, databasePath());
    for (const SqlRow &row : rows)
        names.insert(row.value(0).toInt(), row.value(1).toString());
    return names;
}

} // namespace

void PortNameStore::createPortNameTables()
{
    const QString path = databasePath();
    executeSql(QStringLiteral("create table if not exists InPortName(Port integer primary key,PortName text)"), path);
    executeSql(QStringLiteral("create table if not exists InAudioName(Port integer primary key,PortName text)"), path);
    executeSql(QStringLiteral("create table if not exists OutPortName(Port integer primary key,PortName text)"), path);
    executeSql(QStringLiteral("create table if not exists OutAudioPortName(Port integer primary key,PortName text)"),
               path);
    executeSql(QStringLiteral("create table if not exists OutInfarePortName(Port integer primary key,PortName text)"),
               path);
}

bool PortNameStore::savePortName(int port, const QString &name, int kind)
{
    // Unlike loading, an unknown kind is not taken for the video outputs.
    switch (kind) {
    case VideoInput:
        return saveName("InPortName", port, name);
    case VideoOutput:
        return saveName("OutPortName", port, name);
    case AudioInput:
        return saveName("InAudioName", port, name);
    default:
        return false;
    }
}

bool PortNameStore::saveOutAudioPortName(int port, const QString &name)
{
    return saveName("OutAudioPortName", port, name);
}

bool PortNameStore::saveOutInfarePortName(int port, const QString &name)
{
    return saveName("OutInfarePortName", port, name);
}

QMap<int, QString> PortNameStore::loadPortNames(int kind)
{
    switch (kind) {
    case VideoInput:
        return loadNames(QStringLiteral("select *from InPortName"));
    case AudioInput:
        return loadNames(QStringLiteral("select * from InAudioName"));
    default:
        return loadNames(QStringLiteral("select *from OutPortName"));
    }
}

QMap<int, QString> PortNameStore::loadOutAudioPortNames()
{
    return loadNames(QStringLiteral("select * from OutAudioPortName"));
}

QMap<int, QString> PortNameStore::loadOutInfarePortNames()
{
    return loadNames(QStringLiteral("select * from OutInfarePortName"));
}
