#include "store/presetnames.h"

StoreState PresetNames::createTable()
{
    const QString path = databasePath();
    // Waiting on a locked file and failing would only delay the window.
    const StoreState state = probeDatabase(path);
    if (state == StoreState::Readable)
        executeSql(QStringLiteral("create table if not exists PresetName(Slot integer primary key,Name text)"), path);
    return state;
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
