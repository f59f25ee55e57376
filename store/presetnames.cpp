#include "store/presetnames.h"

void PresetNames::createTable()
{
    // On a locked or unreadable file this fails like any statement, logged; the
    // window's account check has told the operator already.
    executeSql(QStringLiteral("create table if not exists PresetName(Slot integer primary key,Name text)"),
               databasePath());
}

QMap<int, QString> PresetNames::load()
{
    QMap<int, QString> names;
    const RowList rows = selectRows(QStringLiteral("select Slot,Name from PresetName"), {}, 2, databasePath());
    for (const SqlRow &row : rows)
        names.insert(row.value(0).toInt(), row.value(1).toString());
    return names;
}

bool PresetNames::save(int slot, const QString &name)
{
    if (slot < 1 || slot > SlotCount)
        return false;
    return executeSql(QStringLiteral("insert or replace into PresetName(Slot,Name) values(?,?)"), {slot, name},
                      databasePath());
}

bool PresetNames::remove(int slot)
{
    return executeSql(QStringLiteral("delete from PresetName where Slot=?"), {slot}, databasePath());
}
