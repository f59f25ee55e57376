#pragma once

#include "store/database.h"

#include <QMap>
#include <QString>

// The operator's names for the device's preset slots, kept in project.db.
// The routing itself lives on the device; a slot without a row has no local
// name. Stateless like the other stores: every operation is static.
class PresetNames
{
public:
    // As many slots as the device keeps (the emulator's PresetSlots).
    static constexpr int SlotCount = 16;

    // Creates the table when project.db lacks it; the other tables are left as
    // they are.
    static void createTable();

    // Slot -> name, for every slot that has one.
    static QMap<int, QString> load();
    // A later name replaces the earlier one. False for a slot outside
    // 1..SlotCount and when project.db refused the write.
    static bool save(int slot, const QString &name);
    // Forgets the local name only; the device keeps its preset. True also when
    // the slot had no name.
    static bool remove(int slot);
};
