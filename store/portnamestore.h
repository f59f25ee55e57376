#pragma once

#include <QMap>
#include <QString>

// Names the operator gave to ports, one table per kind of port in project.db.
// A port without a row has no name of its own and shows its default label.
// Stateless like the account store: every operation is static.
class PortNameStore
{
public:
    // Kind codes of savePortName and loadPortNames.
    enum Kind { VideoInput = 0, VideoOutput = 1, AudioInput = 2 };

    static void createPortNameTables();

    // Kinds 0, 1 and 2; any other kind writes nothing. A later name for the same
    // port replaces the earlier one; an empty name is stored as empty text.
    // True when the name reached project.db.
    static bool savePortName(int port, const QString &name, int kind);
    static bool saveOutAudioPortName(int port, const QString &name);
    static bool saveOutInfarePortName(int port, const QString &name);

    // Kind 0 and 2 read their tables; every other kind reads the video outputs.
    static QMap<int, QString> loadPortNames(int kind);
    static QMap<int, QString> loadOutAudioPortNames();
    static QMap<int, QString> loadOutInfarePortNames();
};
